// A file or standard input as one stream of octets, decompressed on the way.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_H
#define TOOLS_BGP_COMMUNITIES_INPUT_H

#include <memory>
#include <string>
#include <vector>

#include "tools/bgp-communities/Decompressor.h"
#include "tools/bgp-communities/Octets.h"
#include "tools/bgp-communities/RawFile.h"

namespace CommTool {

// Compression (gzip, bzip2, xz, zstd, several members included) is recognised
// by content.  Memory is bounded by what is asked for and what really arrived,
// never by a length that only the data claims.  Owner thread only.
class Input {
 public:
  // Opens `path`, or standard input for "-".  Throws CannotOpen.
  explicit Input(const std::string& path) : file_(path) {}

  // The next `count` octets in one piece, or fewer where the stream ends.
  // They live until the next call.
  Octets take(std::size_t count);

  // What ended the stream early; empty after a clean end.
  const std::string& damage() const { return damage_; }
  // Octets read from the file up to now, compressed as they are there.
  U64 bytesRead() const { return file_.bytesRead(); }

 private:
  bool nextBlock();

  RawFile file_;
  std::unique_ptr<Decompressor> stream_;  // from the first look at the file on
  Octets block_;                          // what is left of what it lent
  std::vector<U8> gathered_;              // a piece that spans blocks
  bool ended_ = false;
  std::string damage_;
};

}  // namespace CommTool

#endif
