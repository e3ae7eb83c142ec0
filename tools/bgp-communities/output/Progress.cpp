#include "tools/bgp-communities/output/Progress.h"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>

namespace CommTool {

namespace {

// Between updates: often enough to look alive, and too seldom to cost anything.
constexpr auto interval = std::chrono::milliseconds(200);

// Bytes in units of 10^6, with one decimal place.
std::string megabytes(U64 bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", static_cast<double>(bytes) / 1e6);
  return text;
}

}  // namespace

// The estimate needs a known total and at least one byte.
std::string progressText(U64 bytes, U64 total, U64 records, std::chrono::duration<double> elapsed) {
  const bool known = total > 0;
  // A file may grow while it is read, so limit the result to 100 %.
  const double done =
      known ? std::min(1.0, static_cast<double>(bytes) / static_cast<double>(total)) : 0;
  std::string text = megabytes(bytes);
  if (known) text.append(" of ").append(megabytes(std::max(total, bytes)));
  text.append(" MB");
  if (known) text += " (" + std::to_string(static_cast<int>(done * 100)) + "%)";
  text += ", " + std::to_string(records) + " records";
  if (done > 0) {
    const double left = elapsed.count() * (1 - done) / done;
    text += ", " + std::to_string(std::llround(left)) + " s left";
  }
  return text;
}

// The sizes of pipes, terminals and devices are unknown or meaningless, so one of them makes the
// whole total unknown.
U64 bytesOfFiles(const std::vector<std::string>& paths) {
  U64 bytes = 0;
  for (const std::string& path : paths) {
    struct stat status {};
    if (path == "-" || ::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return 0;
    bytes += static_cast<U64>(status.st_size);
  }
  return bytes;
}

// A shorter text is padded with blanks to overwrite the old one.
void Progress::show(U64 records) {
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + interval;
  const std::string text = progressText(bytes_, total_, records, now - start_);
  const std::size_t blanks = width_ > text.size() ? width_ - text.size() : 0;
  to_ << '\r' << text << std::string(blanks, ' ') << std::flush;
  width_ = text.size();
}

// Overwrites the line with blanks and returns to its beginning.
void Progress::erase() {
  if (width_ == 0) return;
  to_ << '\r' << std::string(width_, ' ') << '\r' << std::flush;
  width_ = 0;
}

}  // namespace CommTool
