#include "tools/bgp-communities/input/Input.h"

#include <algorithm>
#include <cstddef>

namespace CommTool {

// Most records lie within one block and are returned in place. A record across a block boundary is
// gathered piece by piece: resizing to `count` at once would let a header with a false length
// allocate megabytes.
Octets Input::take(std::size_t count) {
  while (block_.empty() && nextBlock()) {
  }
  if (block_.size() >= count) {
    const Octets taken = block_.first(count);
    block_ = block_.subspan(count);
    return taken;
  }
  gathered_.clear();
  do {
    const std::size_t piece = std::min(count - gathered_.size(), block_.size());
    gathered_.insert(gathered_.end(), block_.begin(), block_.begin() + std::ptrdiff_t(piece));
    block_ = block_.subspan(piece);
  } while (gathered_.size() < count && nextBlock());
  return gathered_;
}

// Replaces the current block. Returns false at the end of the stream, and keeps the reason if the
// end is early. The decompressor is created here, since the constructor must not read: reading can
// fail as damage, which is not a failure to open.
bool Input::nextBlock() {
  if (ended_) {
    return false;
  }
  block_ = {};
  try {
    if (!stream_) {
      stream_ = decompressorOf(file_);
    }
    block_ = stream_->next();
  } catch (const Malformed& reason) {
    damage_ = reason.what();
  }
  ended_ = block_.empty();
  return !ended_;
}

}  // namespace CommTool
