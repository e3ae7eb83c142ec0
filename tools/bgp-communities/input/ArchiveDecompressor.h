// Every other compression, by libarchive; and none.
#ifndef TOOLS_BGP_COMMUNITIES_ARCHIVE_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_ARCHIVE_DECOMPRESSOR_H

#include "tools/bgp-communities/Decompressor.h"

struct archive;

namespace CommTool {

// Bzip2, xz and zstd, recognised by content, and plain files.  What libarchive
// decompressed last before a damage, less than one of its blocks of 64 or 128 KiB,
// is lost with it.
class ArchiveDecompressor : public Decompressor {
 public:
  explicit ArchiveDecompressor(RawFile& file);
  ~ArchiveDecompressor() override;
  ArchiveDecompressor(const ArchiveDecompressor&) = delete;
  ArchiveDecompressor& operator=(const ArchiveDecompressor&) = delete;

  Octets next() override;

 private:
  bool begin();
  [[noreturn]] void fail() const;

  RawFile& file_;
  archive* stream_;
  bool begun_ = false;
  bool ended_ = false;
};

}  // namespace CommTool

#endif
