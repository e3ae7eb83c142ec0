// Files that are in memory alone, for code that opens files by name.
#ifndef FUZZ_SUPPORT_MEMORY_FILE_H
#define FUZZ_SUPPORT_MEMORY_FILE_H

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>
#include <string>
#include <system_error>

#include "Kiv/Types.h"

namespace Fuzz {

class MemoryFile {
 public:
  explicit MemoryFile(std::span<const U8> octets = {}) : fd_(::memfd_create("fuzz", 0)) {
    const auto size = static_cast<ssize_t>(octets.size());
    if (fd_ < 0 || ::pwrite(fd_, octets.data(), octets.size(), 0) != size) fail();
  }
  ~MemoryFile() { ::close(fd_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int fd() const { return fd_; }
  std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }
  std::string contents() const {
    struct stat status {};
    if (::fstat(fd_, &status) != 0) fail();
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    if (::pread(fd_, text.data(), text.size(), 0) != status.st_size) fail();
    return text;
  }

 private:
  [[noreturn]] static void fail() {
    throw std::system_error(errno, std::generic_category(), "no file in memory");
  }

  const int fd_;
};

}  // namespace Fuzz

#endif
