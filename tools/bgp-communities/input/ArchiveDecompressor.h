// Decompression by libarchive of everything but gzip.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_ARCHIVE_DECOMPRESSOR_H
#define TOOLS_BGP_COMMUNITIES_INPUT_ARCHIVE_DECOMPRESSOR_H

#include "tools/bgp-communities/input/Decompressor.h"

struct archive;

namespace CommTool {

// Decompresses bzip2, xz and zstd, which are recognised by content, and passes other files through.
// libarchive delivers whole blocks of 64 or 128 KiB only, so up to one such block of intact data
// before a damage is lost. bzip2 decodes blocks of up to 900 kB as a whole, and a damaged block is
// lost as a whole.
class ArchiveDecompressor : public Decompressor {
 public:
  // Reads from `file`, which must outlive this object. Throws std::bad_alloc.
  explicit ArchiveDecompressor(RawFile& file);
  ~ArchiveDecompressor() override;
  ArchiveDecompressor(const ArchiveDecompressor&) = delete;
  ArchiveDecompressor& operator=(const ArchiveDecompressor&) = delete;

  // See Decompressor.
  Octets next() override;

 private:
  bool begin();
  [[noreturn]] void fail() const;

  RawFile& file_;
  archive* stream_;
  bool begun_ = false;  // the stream is opened by the first next()
  bool ended_ = false;
};

}  // namespace CommTool

#endif
