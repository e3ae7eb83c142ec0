#include "tools/bgp-communities/ArchiveDecompressor.h"

#include <archive.h>

#include <cerrno>
#include <new>

namespace CommTool {

namespace {

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

// The named filters only.  The set of all filters would also start external
// programs, or take text for an encoding, on the word of a few magic octets.
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

// Opens the one entry that a raw stream is; false for an empty one.
bool ArchiveDecompressor::begin() {
  begun_ = true;
  if (archive_read_open(stream_, &file_, nullptr, readPiece, nullptr) != ARCHIVE_OK) {
    fail();
  }
  archive_entry* entry = nullptr;
  const int result = archive_read_next_header(stream_, &entry);
  // A stream whose very first octets do not decompress passes for an empty one,
  // but leaves its error behind.
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
