// Turns a file's octets into those that were put into it.
#ifndef TOOLS_BGP_COMMUNITIES_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_DECOMPRESSOR_H

#include <memory>

#include "tools/bgp-communities/RawFile.h"

namespace CommTool {

class Decompressor {
 public:
  virtual ~Decompressor() = default;

  // The next octets, valid until the next call; empty at the end.  Throws
  // Malformed where the compression is broken, after what came before it.
  virtual Octets next() = 0;
};

// The one that fits what the file begins with; `file` outlives it.
std::unique_ptr<Decompressor> decompressorOf(RawFile& file);

}  // namespace CommTool

#endif
