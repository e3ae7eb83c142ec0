#include "tools/bgp-communities/input/RawFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace CommTool {

namespace {

// The size of a block, see RawFile.
constexpr std::size_t readSize = std::size_t{256} * 1024;

// Returns the descriptor of `path`. Directories are refused here, because open() accepts them and
// only the first read() would fail, with the file already counted as opened.
int opened(const std::string& path) {
  const int fd = path == "-" ? ::dup(STDIN_FILENO) : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    throw CannotOpen(std::strerror(errno));
  }
  struct stat status {};
  if (::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
    ::close(fd);
    throw CannotOpen(std::strerror(EISDIR));
  }
  return fd;
}

}  // namespace

// The memory is allocated before the file is opened, so that no exception can leak the descriptor.
RawFile::RawFile(const std::string& path) : room_(new U8[readSize]) { fd_ = opened(path); }

RawFile::~RawFile() { ::close(fd_); }

Octets RawFile::peek() {
  constexpr std::size_t magicLength = 2;
  // A read from a pipe can return a single octet, so read until there are enough of them.
  for (std::size_t got = 1; got > 0 && peeked_.size() < magicLength;) {
    got = read(peeked_.size());
    peeked_ = Octets(room_.get(), peeked_.size() + got);
  }
  return peeked_;
}

// The first call returns the block that peek() has read, if any.
Octets RawFile::next() {
  const Octets first = std::exchange(peeked_, {});
  return first.empty() ? Octets(room_.get(), read(0)) : first;
}

// Reads into the block behind its first `at` octets and returns how many octets were read. A
// signal handler may interrupt read(); then it is repeated.
std::size_t RawFile::read(std::size_t at) {
  ssize_t got = 0;
  do {
    got = ::read(fd_, room_.get() + at, readSize - at);
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    throw Malformed(std::string("cannot read: ") + std::strerror(errno));
  }
  bytesRead_ += static_cast<U64>(got);
  return static_cast<std::size_t>(got);
}

}  // namespace CommTool
