// A file or standard input as one stream of octets, decompressed on the way.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_H
#define TOOLS_BGP_COMMUNITIES_INPUT_H

#include <memory>
#include <string>
#include <vector>

#include "tools/bgp-communities/Octets.h"

struct archive;

namespace CommTool {

// A file that cannot be opened at all; what() says why.
class CannotOpen : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Compression (gzip, bzip2, xz, zstd, several members included) is recognised
// by content.  Memory is bounded by what is asked for and what really arrived,
// never by a length that only the data claims.  Owner thread only.
//
// Limits that come with libarchive: the octets that it decompressed last before
// a damage, less than one of its blocks of 64 or 128 KiB, are lost with it; and
// the checksum of gzip is not looked at.
class Input {
 public:
  // Opens `path`, or standard input for "-".  Throws CannotOpen.
  explicit Input(const std::string& path);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  // The next `count` octets in one piece, or fewer where the stream ends.
  // They live until the next call.
  Octets take(std::size_t count);

  // What ended the stream early; empty after a clean end.
  const std::string& damage() const { return damage_; }

 private:
  struct Closer {
    void operator()(archive* stream) const;
  };

  bool nextBlock();
  void endIs(std::string damage);

  std::unique_ptr<archive, Closer> stream_;
  int fd_;
  Octets block_;              // what is left of the block that libarchive lent
  std::vector<U8> gathered_;  // a piece that spans blocks
  bool ended_ = false;
  std::string damage_;
};

}  // namespace CommTool

#endif
