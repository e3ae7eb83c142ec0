#include "tools/bgp-communities/Input.h"

#include <algorithm>
#include <cstddef>

namespace CommTool {

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
