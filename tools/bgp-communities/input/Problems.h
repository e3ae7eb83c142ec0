// The errors found while one record or attribute is decoded.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_PROBLEMS_H
#define TOOLS_BGP_COMMUNITIES_INPUT_PROBLEMS_H

#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace CommTool {

// Keeps the texts of the first few problems and counts the rest. A hostile record can have tens of
// thousands of bad entries; it must neither fill the memory nor the screen. Owner thread only.
class Problems {
 public:
  // Adds a problem. `what` is one line without its end.
  void add(std::string what) {
    if (count_++ < kept) kept_.push_back(std::move(what));
  }
  // Removes all problems, before the next record.
  void clear() { *this = Problems(); }

  // Whether there is no problem.
  bool empty() const { return count_ == 0; }
  // The number of problems, including those whose texts were not kept.
  U32 count() const { return count_; }
  // The first problem and the number of further ones, on one line; empty without problems.
  std::string text() const {
    if (empty()) return {};
    return count_ == 1 ? kept_[0] : kept_[0] + " (and " + std::to_string(count_ - 1) + " more)";
  }
  // The texts that were kept, in the order in which they were added.
  const std::vector<std::string>& first() const { return kept_; }

 private:
  static constexpr U32 kept = 8;  // texts at most

  U32 count_ = 0;
  std::vector<std::string> kept_;
};

}  // namespace CommTool

#endif
