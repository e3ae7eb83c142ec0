// The free-space map of a store.
//
// Implementation detail of KivStash::StoreWriter; include KivStash/StoreWriter.h.
#ifndef KIVSTASH_DETAIL_STORESPACE_H
#define KIVSTASH_DETAIL_STORESPACE_H

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace KivStash {

// A best-fit allocator of octet ranges: it takes the smallest free piece that is large enough, and
// merges a released piece with its free neighbours. The map is in the writer's own memory and no
// part of it is in the store, so no other process can damage it. Costs O(log n) in the number of
// free pieces. Offsets and sizes are multiples of Stash::storeUnit. One thread.
class StoreSpace {
 public:
  // Everything from `begin` to `limit` is free.
  StoreSpace(std::size_t begin, std::size_t limit) noexcept
      : end_(begin), limit_(limit), used_(begin) {}

  // Octets in use, with those before `begin`.
  std::size_t used() const noexcept { return used_; }

  // Allocates `size` octets, which must not be 0, and returns their offset; nothing if no free
  // piece is large enough. Throws std::bad_alloc, and has allocated nothing then.
  std::optional<std::size_t> take(std::size_t size);
  // Allocates `size` octets behind everything in use, although pieces before may be free.
  std::optional<std::size_t> takeAtEnd(std::size_t size) noexcept;
  // Releases one whole allocation. If there is no memory to record the free piece, the piece stays
  // unused as long as the store exists; nothing else is affected.
  void release(std::size_t offset, std::size_t size) noexcept;

 private:
  using Pieces = std::map<std::size_t, std::size_t>;  // offset, size

  void pieceAdd(std::size_t offset, std::size_t size);
  void pieceDel(Pieces::iterator piece) noexcept;

  // The free pieces before end_, by offset and by size. Invariant: both have the same pieces, no
  // two pieces are adjacent, and no piece ends at end_.
  Pieces pieces_;
  std::set<std::pair<std::size_t, std::size_t>> bySize_;  // size, offset
  std::size_t end_;                                       // everything from here on is free
  const std::size_t limit_;
  std::size_t used_;
};

}  // namespace KivStash

#endif
