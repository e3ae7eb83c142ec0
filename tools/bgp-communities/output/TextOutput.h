// Bulk text to a file descriptor.
#ifndef TOOLS_BGP_COMMUNITIES_TEXT_OUTPUT_H
#define TOOLS_BGP_COMMUNITIES_TEXT_OUTPUT_H

#include <charconv>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "Kiv/Types.h"

namespace CommTool {

// The reader of the output has gone; whoever writes should end, without noise.
// (Needs SIGPIPE ignored.)
class ClosedPipe : public std::exception {
 public:
  const char* what() const noexcept override { return "output closed"; }
};

// The output cannot be written, for instance because a disk is full.
class CannotWrite : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Gathers text in one block and writes whole blocks.  All that write throw
// ClosedPipe or CannotWrite; the destructor writes nothing, so flush() at the
// end.  Borrows the descriptor.  Owner thread only.
class TextOutput {
 public:
  explicit TextOutput(int fd) : fd_(fd), block_(new char[blockSize]) {}
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  void append(std::string_view text) {
    if (text.size() > blockSize - used_) [[unlikely]] {
      appendLong(text);
      return;
    }
    text.copy(block_.get() + used_, text.size());
    used_ += text.size();
  }
  void append(char character) { append(std::string_view(&character, 1)); }
  void append(U64 number) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    append(std::string_view(digits, static_cast<std::size_t>(end - digits)));
  }

  void flush();

 private:
  static constexpr std::size_t blockSize = std::size_t{256} * 1024;

  void appendLong(std::string_view text);
  void write(std::string_view text) const;

  int fd_;
  std::size_t used_ = 0;
  std::unique_ptr<char[]> block_;
};

}  // namespace CommTool

#endif
