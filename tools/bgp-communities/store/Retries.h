// The attempts to read one list that is being changed, and the time that they may take.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_RETRIES_H
#define TOOLS_BGP_COMMUNITIES_STORE_RETRIES_H

#include <chrono>
#include <thread>

namespace CommTool {

// Exists from the first failed attempt to read a list until the list is read or given up. All lists
// of a walk share one bound of time, because the writer may have died in the middle of a change, or
// be hostile and have left thousands of lists in that state. Owner thread only.
class Retries {
 public:
  using Clock = std::chrono::steady_clock;
  // The time that the retries of one walk may take together.
  static constexpr std::chrono::milliseconds walkMax{500};

  // `spent` is the time that the retries of earlier lists of the walk took.
  explicit Retries(Clock::duration& spent) : spent_(spent), begin_(Clock::now()) {}
  // Adds the time of this list to `spent`.
  ~Retries() { spent_ += Clock::now() - begin_; }
  Retries(const Retries&) = delete;
  Retries& operator=(const Retries&) = delete;

  // Call it before each further attempt. Returns false if the list must be given up. The first
  // attempts follow each other at once. Then the reader waits a millisecond before each, which is
  // long for a change in progress and short for a reader, since the writer may only have lost its
  // processor.
  bool next() {
    if (spent_ + (Clock::now() - begin_) >= walkMax) return false;
    if (++attempts_ > atOnce) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
  }

 private:
  static constexpr int atOnce = 32;

  Clock::duration& spent_;
  const Clock::time_point begin_;
  int attempts_ = 0;
};

}  // namespace CommTool

#endif
