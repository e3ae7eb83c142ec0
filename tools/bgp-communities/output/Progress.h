// How far long work has come, on one line of a terminal.
#ifndef TOOLS_BGP_COMMUNITIES_PROGRESS_H
#define TOOLS_BGP_COMMUNITIES_PROGRESS_H

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace CommTool {

// "12.5 of 50.0 MB (25%), 260000 records, 4 s left"; where the total is unknown (0),
// only what was read.
std::string progressText(U64 bytes, U64 total, U64 records, std::chrono::duration<double> elapsed);

// Octets of all files together; 0 if one is no regular file.
U64 bytesOfFiles(const std::vector<std::string>& paths);

// Keeps a line up to date that it overwrites.  Short work shows none.
class Progress {
 public:
  using Clock = std::chrono::steady_clock;

  // To a terminal; null shows nothing.
  Progress(std::ostream* to, U64 total) : to_(to), total_(total) {}
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Cheap where nothing more was read, which is so for nearly all records.
  void update(U64 bytes, U64 records) {
    if (bytes == bytes_ || to_ == nullptr) return;
    bytes_ = bytes;
    show(records);
  }
  // Before anything else is written to the terminal.
  void erase();

 private:
  void show(U64 records);

  std::ostream* to_;
  U64 total_;
  U64 bytes_ = 0;
  std::size_t width_ = 0;  // of the line that stands there
  const Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::milliseconds(500);
};

}  // namespace CommTool

#endif
