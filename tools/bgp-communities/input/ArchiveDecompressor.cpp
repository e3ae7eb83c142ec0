#include "tools/bgp-communities/input/ArchiveDecompressor.h"

#include <archive.h>

#include <cerrno>
#include <new>

namespace CommTool {

namespace {

// Called by libarchive for more input. Exceptions must not pass through its C code, so a read error
// becomes an error of the archive.
la_ssize_t readPiece(archive* stream, void* file, const void** piece) {
  try {
    const Octets octets = static_cast<RawFile*>(file)->next();
    *piece = octets.data();
    return static_cast<la_ssize_t>(octets.size());
  } catch (const Malformed& reason) {
    archive_set_error(stream, EIO, "%s", reason.what());
    return ARCHIVE_FATAL;
  }
}

}  // namespace

// Only these three filters are enabled. archive_read_support_filter_all() would start external
// programs, or treat text as uuencoded, if a hostile file begins with the right magic octets.
ArchiveDecompressor::ArchiveDecompressor(RawFile& file) : file_(file), stream_(archive_read_new()) {
  if (stream_ == nullptr) {
    throw std::bad_alloc();
  }
  archive_read_support_filter_bzip2(stream_);
  archive_read_support_filter_xz(stream_);
  archive_read_support_filter_zstd(stream_);
  archive_read_support_format_raw(stream_);
  archive_read_support_format_empty(stream_);
}

ArchiveDecompressor::~ArchiveDecompressor() { archive_read_free(stream_); }

// libarchive may return empty blocks before the end, and a warning with valid data.
Octets ArchiveDecompressor::next() {
  if (!begun_ && !begin()) {
    ended_ = true;
  }
  const void* data = nullptr;
  std::size_t size = 0;
  la_int64_t offset = 0;
  while (!ended_ && size == 0) {
    const int result = archive_read_data_block(stream_, &data, &size, &offset);
    if (result == ARCHIVE_EOF) {
      ended_ = true;
    } else if (result != ARCHIVE_OK && result != ARCHIVE_WARN) {
      fail();
    }
  }
  return ended_ ? Octets() : Octets(static_cast<const U8*>(data), size);
}

// Opens the only entry of a raw stream. Returns false if the stream is empty.
bool ArchiveDecompressor::begin() {
  begun_ = true;
  if (archive_read_open(stream_, &file_, nullptr, readPiece, nullptr) != ARCHIVE_OK) {
    fail();
  }
  archive_entry* entry = nullptr;
  const int result = archive_read_next_header(stream_, &entry);
  // If the very first octets cannot be decompressed, libarchive reports an empty archive; only the
  // error number shows that this is damage.
  if (result != ARCHIVE_OK && (result != ARCHIVE_EOF || archive_errno(stream_) != 0)) {
    fail();
  }
  return result == ARCHIVE_OK;
}

void ArchiveDecompressor::fail() const {
  const char* const text = archive_error_string(stream_);
  throw Malformed(text != nullptr ? text : "unreadable");
}

}  // namespace CommTool
