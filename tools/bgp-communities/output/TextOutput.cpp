#include "tools/bgp-communities/TextOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace CommTool {

void TextOutput::flush() {
  const std::string_view text(block_.get(), used_);
  used_ = 0;
  write(text);
}

void TextOutput::appendLong(std::string_view text) {
  flush();
  if (text.size() > blockSize) {
    write(text);
  } else {
    append(text);
  }
}

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
