// The interface of decompression, and its selection by content.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_INPUT_DECOMPRESSOR_H

#include <memory>

#include "tools/bgp-communities/input/RawFile.h"

namespace CommTool {

// A stream of decompressed octets. Owner thread only.
class Decompressor {
 public:
  virtual ~Decompressor() = default;

  // Returns the next octets, which are valid until the next call; none at the end. Throws Malformed
  // where the compressed data is damaged. Before that, gzip data is returned exactly up to the
  // damage; of xz and zstd data up to 128 KiB before the damage are lost, of bzip2 data up to one
  // block of 900 kB.
  virtual Octets next() = 0;
};

// Returns a decompressor for the compression that the first octets of `file` announce; files
// without a known compression are passed through. `file` must outlive the decompressor.
std::unique_ptr<Decompressor> decompressorOf(RawFile& file);

}  // namespace CommTool

#endif
