#include "tools/bgp-communities/output/TextOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace CommTool {

// The block is given up before it is written, so that nothing is written twice after an exception.
void TextOutput::flush() {
  const std::string_view text(block_.get(), used_);
  used_ = 0;
  write(text);
}

// The text does not fit behind the text in the block. A text longer than a whole block is written
// directly.
void TextOutput::appendLong(std::string_view text) {
  flush();
  if (text.size() > blockSize) {
    write(text);
  } else {
    append(text);
  }
}

// A write may be partial, for example to a pipe, or interrupted by a signal.
void TextOutput::write(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t written = ::write(fd_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE) {
      throw ClosedPipe();
    } else if (errno != EINTR) {
      throw CannotWrite(std::strerror(errno));
    }
  }
}

}  // namespace CommTool
