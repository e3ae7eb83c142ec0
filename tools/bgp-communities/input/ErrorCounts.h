// How often each kind of damage was met.
#ifndef TOOLS_BGP_COMMUNITIES_ERROR_COUNTS_H
#define TOOLS_BGP_COMMUNITIES_ERROR_COUNTS_H

#include <map>
#include <string>
#include <string_view>

#include "tools/bgp-communities/Problems.h"

namespace CommTool {

// A text with N for each number in it (not for digits inside a word), so that
// errors that differ in figures alone are one kind.
std::string kindOfError(std::string_view text);

class ErrorCounts {
 public:
  void add(std::string_view text) { ++counts_[kindOfError(text)]; }
  void add(const Problems& problems);

  const std::map<std::string, U64>& counts() const { return counts_; }

 private:
  std::map<std::string, U64> counts_;
};

}  // namespace CommTool

#endif
