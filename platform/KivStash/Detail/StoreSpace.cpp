#include "KivStash/Detail/StoreSpace.h"

#include <iterator>
#include <new>

namespace KivStash {

// The rest of the piece is added before the piece is deleted, because only adding can throw. During
// that time the pieces overlap, which nothing observes.
std::optional<std::size_t> StoreSpace::take(std::size_t size) {
  const auto found = bySize_.lower_bound({size, 0});
  if (found == bySize_.end()) return takeAtEnd(size);
  const auto [pieceSize, offset] = *found;
  if (pieceSize > size) pieceAdd(offset + size, pieceSize - size);
  pieceDel(pieces_.find(offset));
  used_ += size;
  return offset;
}

// For directory blocks, whose offsets must ascend, and for pieces larger than every free one.
std::optional<std::size_t> StoreSpace::takeAtEnd(std::size_t size) noexcept {
  if (size > limit_ - end_) return std::nullopt;
  used_ += size;
  end_ += size;
  return end_ - size;
}

// Merges with the free piece before, then with the one behind. A piece that ends at end_ is not
// recorded; instead end_ moves back, so a store that becomes empty can be filled as at the start.
void StoreSpace::release(std::size_t offset, std::size_t size) noexcept {
  used_ -= size;
  const auto next = pieces_.lower_bound(offset);
  if (next != pieces_.begin()) {
    const auto before = std::prev(next);
    if (before->first + before->second == offset) {
      offset = before->first;
      size += before->second;
      pieceDel(before);
    }
  }
  if (next != pieces_.end() && offset + size == next->first) {
    size += next->second;
    pieceDel(next);
  }
  if (offset + size == end_) {
    end_ = offset;
    return;
  }
  try {
    pieceAdd(offset, size);
  } catch (const std::bad_alloc&) {
    // The piece is not recorded and therefore never taken again.
  }
}

// Adds to both maps or, if the second insertion throws, to none.
void StoreSpace::pieceAdd(std::size_t offset, std::size_t size) {
  const auto piece = pieces_.emplace(offset, size).first;
  try {
    bySize_.emplace(size, offset);
  } catch (...) {
    pieces_.erase(piece);
    throw;
  }
}

void StoreSpace::pieceDel(Pieces::iterator piece) noexcept {
  bySize_.erase({piece->second, piece->first});
  pieces_.erase(piece);
}

}  // namespace KivStash
