// The octets of a file or of standard input, as they stand there.
#ifndef TOOLS_BGP_COMMUNITIES_RAW_FILE_H
#define TOOLS_BGP_COMMUNITIES_RAW_FILE_H

#include <memory>
#include <stdexcept>
#include <string>

#include "tools/bgp-communities/Octets.h"

namespace CommTool {

// A file that cannot be opened at all; what() says why.
class CannotOpen : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads in pieces that make system calls rare and stay in the second-level cache.
// Owner thread only.
class RawFile {
 public:
  // Opens `path`, or standard input for "-".  Throws CannotOpen.
  explicit RawFile(const std::string& path);
  ~RawFile();
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;

  // The first piece, which next() will deliver: long enough to know a compression
  // by, if the file is.  Throws Malformed as next() does.
  Octets peek();
  // The next piece, valid until the next call; empty at the end.  Throws Malformed
  // if the file cannot be read on.
  Octets next();

  // How much was read up to now.
  U64 bytesRead() const { return bytesRead_; }

 private:
  std::size_t read(std::size_t at);

  int fd_ = -1;
  std::unique_ptr<U8[]> room_;
  Octets peeked_;
  U64 bytesRead_ = 0;
};

}  // namespace CommTool

#endif
