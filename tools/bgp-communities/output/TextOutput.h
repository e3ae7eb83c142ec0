// Buffered text output to a file descriptor.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_TEXT_OUTPUT_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_TEXT_OUTPUT_H

#include <charconv>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "Kiv/Types.h"

namespace CommTool {

// Thrown if the reader of the output has closed its end of the pipe. The program should then end
// without a message. SIGPIPE must be ignored, or it ends the program first.
class ClosedPipe : public std::exception {
 public:
  // Not meant to be printed.
  const char* what() const noexcept override { return "output closed"; }
};

// Thrown if the output cannot be written, for example because a disk is full. what() is the reason
// given by the system.
class CannotWrite : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Collects text in a block of 256 KiB and writes whole blocks. Every function that appends may
// write, and then throws ClosedPipe or CannotWrite on failure. The destructor writes nothing,
// because it could not report a failure; call flush() at the end. Borrows the descriptor. Owner
// thread only.
class TextOutput {
 public:
  // Writes to `fd`, which must stay open. Throws std::bad_alloc.
  explicit TextOutput(int fd) : fd_(fd), block_(new char[blockSize]) {}
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  // Appends a text of any length.
  void append(std::string_view text) {
    if (text.size() > blockSize - used_) [[unlikely]] {
      appendLong(text);
      return;
    }
    text.copy(block_.get() + used_, text.size());
    used_ += text.size();
  }
  // Appends one character.
  void append(char character) { append(std::string_view(&character, 1)); }
  // Appends a number in decimal.
  void append(U64 number) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    append(std::string_view(digits, static_cast<std::size_t>(end - digits)));
  }

  // Writes everything that was appended. After a failure the text is lost.
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
