// The layout of summaries: lines of a name and right-aligned values.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_LINES_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_LINES_H

#include <string>
#include <string_view>

#include "tools/bgp-communities/bgp/CommunityKinds.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Prints one line for each figure: a name and a value, or a name and one column for each kind of
// community. Values end at fixed columns, so a name may extend into the space before a short value.
class SummaryLines {
 public:
  // Prints to `out`; `kinds` are the kinds that have a column.
  explicit SummaryLines(TextOutput& out, KindSet kinds = KindSet::all())
      : out_(out), kinds_(kinds) {}

  // Prints a name and a number.
  void print(std::string_view name, U64 value) { print(name, std::to_string(value)); }
  // Prints a name and a text in the first column.
  void print(std::string_view name, const std::string& value) {
    begin(name);
    field(value);
    out_.append('\n');
  }
  // Prints a line as it is.
  void print(std::string_view line) {
    out_.append(line);
    out_.append('\n');
  }
  // Prints a name and `textOf(row)` in the column of each kind.
  template <class TextOf>
  void printKinds(std::string_view name, const TextOf& textOf) {
    begin(name);
    for (const CommunityKindRow& row : communityKindRows) {
      if (kinds_.has(row.kind)) field(textOf(row));
    }
    out_.append('\n');
  }

 private:
  static constexpr std::size_t nameWidth = 34;   // the columns begin here
  static constexpr std::size_t fieldWidth = 14;  // of a column, with the blanks before its value

  void begin(std::string_view name) {
    out_.append(name);
    at_ = name.size();
    fieldEnd_ = nameWidth;
  }
  // Fills up to the column's start with blanks, but always writes at least one.
  void field(const std::string& value) {
    fieldEnd_ += fieldWidth;
    do {
      out_.append(' ');
      ++at_;
    } while (at_ + value.size() < fieldEnd_);
    out_.append(value);
    at_ += value.size();
  }

  TextOutput& out_;
  KindSet kinds_;
  std::size_t at_ = 0;        // where the next character of the line is printed
  std::size_t fieldEnd_ = 0;  // where the last column ends
};

}  // namespace CommTool

#endif
