#include "tools/bgp-communities/GzipDecompressor.h"

#include <new>

namespace CommTool {

namespace {

constexpr std::size_t roomSize = std::size_t{256} * 1024;
constexpr int gzipOnly = 15 + 16;  // the largest window, and that header

}  // namespace

GzipDecompressor::GzipDecompressor(RawFile& file) : file_(file), room_(new U8[roomSize]) {
  if (inflateInit2(&stream_, gzipOnly) != Z_OK) {
    throw std::bad_alloc();
  }
}

GzipDecompressor::~GzipDecompressor() { inflateEnd(&stream_); }

Octets GzipDecompressor::next() {
  stream_.next_out = room_.get();
  stream_.avail_out = roomSize;
  while (!ended_ && stream_.avail_out > 0) {
    if (!inputIsThere()) {
      break;
    }
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

// Whether inflate has something to work on; notes how the file ends if not.
bool GzipDecompressor::inputIsThere() {
  if (stream_.avail_in > 0) {
    return true;
  }
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

// Another member may follow, or zeros that fill a block of some medium; anything
// else there is damage.
void GzipDecompressor::memberEnds() {
  inMember_ = false;
  while (inputIsThere() && stream_.next_in[0] == 0) {
    ++stream_.next_in;
    --stream_.avail_in;
  }
  if (ended_) {
    return;
  }
  if (stream_.next_in[0] != 0x1F) {
    ended_ = true;
    damage_ = "octets behind the end of gzip";
    return;
  }
  inflateReset(&stream_);
  inMember_ = true;
}

}  // namespace CommTool
