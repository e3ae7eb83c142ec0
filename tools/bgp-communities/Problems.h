// What was wrong with the record being decoded.
#ifndef TOOLS_BGP_COMMUNITIES_PROBLEMS_H
#define TOOLS_BGP_COMMUNITIES_PROBLEMS_H

#include <string>

#include "Kiv/Types.h"

namespace CommTool {

// Keeps the first problem and counts the others, so that one hostile record
// with thousands of bad entries still makes one line.
class Problems {
 public:
  void add(std::string what) {
    if (count_++ == 0) {
      first_ = std::move(what);
    }
  }
  void clear() { *this = Problems(); }

  bool empty() const { return count_ == 0; }
  U32 count() const { return count_; }
  std::string text() const {
    return count_ <= 1 ? first_ : first_ + " (and " + std::to_string(count_ - 1) + " more)";
  }

 private:
  U32 count_ = 0;
  std::string first_;
};

}  // namespace CommTool

#endif
