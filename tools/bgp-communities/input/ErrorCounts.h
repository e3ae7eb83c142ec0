// Counts errors by kind.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_ERROR_COUNTS_H
#define TOOLS_BGP_COMMUNITIES_INPUT_ERROR_COUNTS_H

#include <map>
#include <string>
#include <string_view>

#include "tools/bgp-communities/input/Problems.h"

namespace CommTool {

// Returns `text` with each number replaced by N, so that errors that differ only in numbers are of
// one kind. Digits within a word (IPv6) stay.
std::string kindOfError(std::string_view text);

// How often each kind of error was found. The number of kinds is bounded, since error texts come
// from the tool and not from the data. Owner thread only.
class ErrorCounts {
 public:
  // Counts one error.
  void add(std::string_view text) { ++counts_[kindOfError(text)]; }
  // Counts all problems of a record. Problems without a text are counted as one kind of their own.
  void add(const Problems& problems);

  // The counts by kind, sorted by the text of the kind.
  const std::map<std::string, U64>& counts() const { return counts_; }

 private:
  std::map<std::string, U64> counts_;
};

}  // namespace CommTool

#endif
