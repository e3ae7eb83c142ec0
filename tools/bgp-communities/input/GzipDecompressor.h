// Gzip (RFC 1952), which most archives of routing data come in.
#ifndef TOOLS_BGP_COMMUNITIES_GZIP_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_GZIP_DECOMPRESSOR_H

#include <zlib.h>

#include "tools/bgp-communities/Decompressor.h"

namespace CommTool {

// Delivers everything up to a damage, to the last octet: of a download that was
// cut short, all that arrived.  Members may follow one another; checksums are
// checked.
class GzipDecompressor : public Decompressor {
 public:
  static bool isGzip(Octets begin) {
    return begin.size() >= 2 && begin[0] == 0x1F && begin[1] == 0x8B;
  }

  explicit GzipDecompressor(RawFile& file);
  ~GzipDecompressor() override;
  GzipDecompressor(const GzipDecompressor&) = delete;
  GzipDecompressor& operator=(const GzipDecompressor&) = delete;

  Octets next() override;

 private:
  bool inputIsThere();
  void memberEnds();

  RawFile& file_;
  z_stream stream_{};
  std::unique_ptr<U8[]> room_;
  std::string damage_;  // to be thrown once what came before it is delivered
  bool inMember_ = true;
  bool ended_ = false;
};

}  // namespace CommTool

#endif
