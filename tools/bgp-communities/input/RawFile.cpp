#include "tools/bgp-communities/RawFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace CommTool {

namespace {

constexpr std::size_t readSize = std::size_t{256} * 1024;

// Refuses directories here: they open, and fail only at the first read.
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

RawFile::RawFile(const std::string& path) : room_(new U8[readSize]) { fd_ = opened(path); }

RawFile::~RawFile() { ::close(fd_); }

Octets RawFile::peek() {
  constexpr std::size_t magicLength = 2;
  // A pipe may deliver less at a time.
  for (std::size_t got = 1; got > 0 && peeked_.size() < magicLength;) {
    got = read(peeked_.size());
    peeked_ = Octets(room_.get(), peeked_.size() + got);
  }
  return peeked_;
}

Octets RawFile::next() {
  const Octets first = std::exchange(peeked_, {});
  return first.empty() ? Octets(room_.get(), read(0)) : first;
}

// Reads behind the first `at` octets of the room; returns how many.
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
