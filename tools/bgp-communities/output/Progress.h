// A line on a terminal that shows how much of the input was read.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_PROGRESS_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_PROGRESS_H

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

#include "Kiv/Types.h"
#include "tools/bgp-communities/mrt/ReadObserver.h"

namespace CommTool {

// Returns a text like "12.5 of 50.0 MB (25%), 260000 records, 4 s left". If `total` is 0, the total
// is unknown and only the amounts so far are shown. A megabyte is 10^6 octets. The remaining time
// assumes that the rest is read as fast as the part so far.
std::string progressText(U64 bytes, U64 total, U64 records, std::chrono::duration<double> elapsed);

// Returns the sum of the file sizes in octets, or 0 if any of the paths is not a regular file.
U64 bytesOfFiles(const std::vector<std::string>& paths);

// Shows the line, updates it a few times a second and erases it at the end. Nothing is shown in the
// first half second. Owner thread only.
class Progress : public ReadObserver {
 public:
  // The clock of the updates.
  using Clock = std::chrono::steady_clock;

  // Shows the line on `to`, a terminal, which must outlive this object. `total` is the size of all
  // input in octets, or 0 if it is unknown.
  Progress(std::ostream& to, U64 total) : to_(to), total_(total) {}
  // Erases the line.
  ~Progress() override { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Updates the line if it is due. Cheap for nearly all records, because a file is read in blocks
  // of many records and `bytes` does not change in between.
  void bytesRead(U64 bytes, U64 records) override {
    if (bytes == bytes_) return;
    bytes_ = bytes;
    show(records);
  }
  // Erases the line, so that an error message can be printed. The line appears again later.
  void errorFound(const std::string& /*text*/) override { erase(); }
  // Erases the line. Must be called before anything else is written to the terminal.
  void erase();

 private:
  void show(U64 records);

  std::ostream& to_;
  U64 total_;
  U64 bytes_ = 0;
  std::size_t width_ = 0;  // of the line on the terminal; 0 if there is none
  const Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::milliseconds(500);
};

}  // namespace CommTool

#endif
