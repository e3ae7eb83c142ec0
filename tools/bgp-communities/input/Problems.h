// What was wrong with the record being decoded.
#ifndef TOOLS_BGP_COMMUNITIES_PROBLEMS_H
#define TOOLS_BGP_COMMUNITIES_PROBLEMS_H

#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace CommTool {

// Keeps the first few problems and counts the others, so that one hostile record
// with thousands of bad entries still makes one line.
class Problems {
 public:
  void add(std::string what) {
    if (count_++ < kept) kept_.push_back(std::move(what));
  }
  void clear() { *this = Problems(); }

  bool empty() const { return count_ == 0; }
  U32 count() const { return count_; }
  std::string text() const {
    if (empty()) return {};
    return count_ == 1 ? kept_[0] : kept_[0] + " (and " + std::to_string(count_ - 1) + " more)";
  }
  // At most `kept` of them, in the order in which they were found.
  const std::vector<std::string>& first() const { return kept_; }

 private:
  static constexpr U32 kept = 8;

  U32 count_ = 0;
  std::vector<std::string> kept_;
};

}  // namespace CommTool

#endif
