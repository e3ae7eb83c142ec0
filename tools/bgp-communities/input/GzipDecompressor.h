// Decompression of gzip (RFC 1952), the usual compression of routing data archives.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_GZIP_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_INPUT_GZIP_DECOMPRESSOR_H

#include <zlib.h>

#include "tools/bgp-communities/input/Decompressor.h"

namespace CommTool {

// Delivers every octet before a damage, so a truncated download is read up to its end. A file may
// consist of several gzip members, which are concatenated. Checksums are verified by zlib.
class GzipDecompressor : public Decompressor {
 public:
  // Whether `begin`, the first octets of a file, is the magic number of gzip.
  static bool isGzip(Octets begin) {
    return begin.size() >= 2 && begin[0] == 0x1F && begin[1] == 0x8B;
  }

  // Reads from `file`, which must outlive this object. Throws std::bad_alloc.
  explicit GzipDecompressor(RawFile& file);
  ~GzipDecompressor() override;
  GzipDecompressor(const GzipDecompressor&) = delete;
  GzipDecompressor& operator=(const GzipDecompressor&) = delete;

  // See Decompressor.
  Octets next() override;

 private:
  bool hasInput();
  void memberEnds();

  RawFile& file_;
  z_stream stream_{};
  std::unique_ptr<U8[]> room_;
  std::string damage_;    // thrown by next() once all octets before it are delivered
  bool inMember_ = true;  // so the end of the file is a truncation
  bool ended_ = false;    // no more input, or damage
};

}  // namespace CommTool

#endif
