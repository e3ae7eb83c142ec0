// The octets of a file or of standard input, not decompressed.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_RAW_FILE_H
#define TOOLS_BGP_COMMUNITIES_INPUT_RAW_FILE_H

#include <memory>
#include <stdexcept>
#include <string>

#include "tools/bgp-communities/input/Octets.h"

namespace CommTool {

// Thrown for a file that cannot be opened. what() is the reason given by the system.
class CannotOpen : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads a file in blocks of 256 KiB. This is large enough to make system calls rare, and small
// enough for the block to stay in the second-level cache until it is decompressed. Owns the file
// descriptor. Owner thread only.
class RawFile {
 public:
  // Opens `path`, or duplicates standard input for "-". Throws CannotOpen.
  explicit RawFile(const std::string& path);
  // Closes the file.
  ~RawFile();
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;

  // Returns the first block without consuming it; next() returns it again. The block has at least
  // the two octets that identify a compression, unless the file is shorter. Throws as next().
  Octets peek();
  // Returns the next block, which is valid until the next call; it is empty at the end of the file.
  // Throws Malformed on a read error.
  Octets next();

  // The number of octets read so far.
  U64 bytesRead() const { return bytesRead_; }

 private:
  std::size_t read(std::size_t at);

  int fd_ = -1;
  std::unique_ptr<U8[]> room_;  // the current block
  Octets peeked_;               // the first block, until next() has returned it
  U64 bytesRead_ = 0;
};

}  // namespace CommTool

#endif
