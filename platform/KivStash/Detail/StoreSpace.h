// Which octets of a store are free.
#ifndef KIVSTASH_STORESPACE_H
#define KIVSTASH_STORESPACE_H

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace KivStash {

// The writer's own books: nothing of them is in the store, so nobody can spoil
// them there.  Takes the smallest free piece that is large enough, joins what
// becomes free with its free neighbours.  Offsets and sizes are multiples of
// Stash::storeUnit.  One thread.
class StoreSpace {
 public:
  // All from `begin` to `limit` is free.
  StoreSpace(std::size_t begin, std::size_t limit) noexcept
      : end_(begin), limit_(limit), used_(begin) {}

  // Octets in use.
  std::size_t used() const noexcept { return used_; }

  // Takes `size` octets, which must not be 0; nothing if there is no piece of that
  // size.
  std::optional<std::size_t> take(std::size_t size);
  // The same, behind all that is in use.
  std::optional<std::size_t> takeAtEnd(std::size_t size) noexcept;
  // Gives back what was taken, in one piece.  Should there be no memory to note it
  // in, the piece is lost to the store, nothing else.
  void release(std::size_t offset, std::size_t size) noexcept;

 private:
  using Pieces = std::map<std::size_t, std::size_t>;  // offset, size

  void pieceAdd(std::size_t offset, std::size_t size);
  void pieceDel(Pieces::iterator piece) noexcept;

  Pieces pieces_;                                         // no two touch, none touches end_
  std::set<std::pair<std::size_t, std::size_t>> bySize_;  // the same: size, offset
  std::size_t end_;
  const std::size_t limit_;
  std::size_t used_;
};

}  // namespace KivStash

#endif
