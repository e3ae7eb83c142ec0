// A file or standard input as one stream of decompressed octets.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_INPUT_H
#define TOOLS_BGP_COMMUNITIES_INPUT_INPUT_H

#include <memory>
#include <string>
#include <vector>

#include "tools/bgp-communities/input/Decompressor.h"
#include "tools/bgp-communities/input/Octets.h"
#include "tools/bgp-communities/input/RawFile.h"

namespace CommTool {

// Compression (gzip, bzip2, xz, zstd; also several members in one file) is recognised by content.
// The memory used is bounded by the octets that were actually read, never by a length that the data
// only claims. Owner thread only.
class Input {
 public:
  // Opens `path`, or standard input for "-". Throws CannotOpen.
  explicit Input(const std::string& path) : file_(path) {}

  // Returns the next `count` octets as one contiguous piece, or fewer at the end of the stream. The
  // octets are valid until the next call. They are copied only if they span two blocks.
  Octets take(std::size_t count);

  // Why the stream ended early; empty before the end and after a regular end.
  const std::string& damage() const { return damage_; }
  // The number of octets read from the file so far, before decompression.
  U64 bytesRead() const { return file_.bytesRead(); }

 private:
  bool nextBlock();

  RawFile file_;
  std::unique_ptr<Decompressor> stream_;  // created by the first take()
  Octets block_;                          // the unread rest of its current block
  std::vector<U8> gathered_;              // the last piece that spans blocks
  bool ended_ = false;
  std::string damage_;
};

}  // namespace CommTool

#endif
