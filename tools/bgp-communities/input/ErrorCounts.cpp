#include "tools/bgp-communities/input/ErrorCounts.h"

#include <cctype>

namespace CommTool {

// A digit belongs to a number unless a letter stands directly before its run of digits.
std::string kindOfError(std::string_view text) {
  std::string kind;
  bool inWord = false;
  bool inNumber = false;
  for (const char c : text) {
    const bool digit = std::isdigit(static_cast<unsigned char>(c)) != 0;
    inNumber = digit && (inNumber || !inWord);
    inWord = digit ? inWord : std::isalpha(static_cast<unsigned char>(c)) != 0;
    if (!inNumber) {
      kind.push_back(c);
    } else if (!kind.ends_with('N')) {
      kind.push_back('N');
    }
  }
  return kind;
}

// Problems keeps only the first texts, so the rest cannot be sorted into kinds.
void ErrorCounts::add(const Problems& problems) {
  for (const std::string& problem : problems.first()) add(problem);
  if (const std::size_t more = problems.count() - problems.first().size(); more > 0) {
    counts_["more in the same records"] += more;
  }
}

}  // namespace CommTool
