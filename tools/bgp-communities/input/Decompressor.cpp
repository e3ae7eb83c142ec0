#include "tools/bgp-communities/input/Decompressor.h"

#include "tools/bgp-communities/input/ArchiveDecompressor.h"
#include "tools/bgp-communities/input/GzipDecompressor.h"

namespace CommTool {

// Gzip is used by nearly all archives, so it is decompressed directly by zlib: faster than through
// libarchive, and without the loss of the last block of a damaged file.
std::unique_ptr<Decompressor> decompressorOf(RawFile& file) {
  if (GzipDecompressor::isGzip(file.peek())) {
    return std::make_unique<GzipDecompressor>(file);
  }
  return std::make_unique<ArchiveDecompressor>(file);
}

}  // namespace CommTool
