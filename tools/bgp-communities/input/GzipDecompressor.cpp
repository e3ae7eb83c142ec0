#include "tools/bgp-communities/input/GzipDecompressor.h"

#include <new>

namespace CommTool {

namespace {

// The size of a decompressed block: like that of a file block, it fits the second-level cache.
constexpr std::size_t roomSize = std::size_t{256} * 1024;
constexpr int gzipOnly = 15 + 16;  // the largest window (15), gzip headers only (+16)

}  // namespace

GzipDecompressor::GzipDecompressor(RawFile& file) : file_(file), room_(new U8[roomSize]) {
  if (inflateInit2(&stream_, gzipOnly) != Z_OK) {
    throw std::bad_alloc();
  }
}

GzipDecompressor::~GzipDecompressor() { inflateEnd(&stream_); }

// A damage in the middle of a block must not lose the octets before it. Therefore the reason is
// kept in damage_ and thrown by the next call, which has nothing else to deliver.
Octets GzipDecompressor::next() {
  stream_.next_out = room_.get();
  stream_.avail_out = roomSize;
  while (!ended_ && stream_.avail_out > 0) {
    if (!hasInput()) break;
    // A full output block ends the loop, and so does the end of the file.
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_STREAM_END) {
      memberEnds();
    } else if (result != Z_OK) {
      ended_ = true;
      damage_ = std::string("broken gzip: ") + (stream_.msg ? stream_.msg : zError(result));
    }
  }
  const Octets done(room_.get(), roomSize - stream_.avail_out);
  if (done.empty() && !damage_.empty()) {
    throw Malformed(damage_);
  }
  return done;
}

// Reads the next block of the file if zlib has consumed the last one. Returns false at the end of
// the file; this is damage if a gzip member is incomplete.
bool GzipDecompressor::hasInput() {
  if (stream_.avail_in > 0) return true;
  try {
    const Octets piece = file_.next();
    stream_.next_in = const_cast<U8*>(piece.data());  // zlib does not write to it
    stream_.avail_in = static_cast<uInt>(piece.size());
    if (!piece.empty()) {
      return true;
    }
    damage_ = inMember_ ? "truncated gzip" : "";
  } catch (const Malformed& reason) {
    damage_ = reason.what();
  }
  ended_ = true;
  return false;
}

// Called after the checksum of a member. Another member may follow, or zeros: tapes and some
// archivers pad to a block size. Any other octet is damage.
void GzipDecompressor::memberEnds() {
  inMember_ = false;
  while (hasInput() && stream_.next_in[0] == 0) {
    ++stream_.next_in;
    --stream_.avail_in;
  }
  if (ended_) return;
  if (stream_.next_in[0] != 0x1F) {
    ended_ = true;
    damage_ = "data after the end of the gzip stream";
    return;
  }
  inflateReset(&stream_);
  inMember_ = true;
}

}  // namespace CommTool
