#include "tools/bgp-communities/Decompressor.h"

#include "tools/bgp-communities/ArchiveDecompressor.h"
#include "tools/bgp-communities/GzipDecompressor.h"

namespace CommTool {

std::unique_ptr<Decompressor> decompressorOf(RawFile& file) {
  if (GzipDecompressor::isGzip(file.peek())) {
    return std::make_unique<GzipDecompressor>(file);
  }
  return std::make_unique<ArchiveDecompressor>(file);
}

}  // namespace CommTool
