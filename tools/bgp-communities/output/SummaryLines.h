// The form of the figures at the end of a run.
#ifndef TOOLS_BGP_COMMUNITIES_SUMMARY_LINES_H
#define TOOLS_BGP_COMMUNITIES_SUMMARY_LINES_H

#include <string>
#include <string_view>

#include "tools/bgp-communities/CommunityKinds.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// A line a figure: name, blanks, value; or values, a column a kind.
class SummaryLines {
 public:
  explicit SummaryLines(TextOutput& out, KindSet kinds = KindSet::all())
      : out_(out), kinds_(kinds) {}

  void print(std::string_view name, U64 value) { print(name, std::to_string(value)); }
  void print(std::string_view name, const std::string& value) {
    out_.append(name);
    fill(name.size(), nameWidth);
    field(value);
    out_.append('\n');
  }
  void print(std::string_view line) {
    out_.append(line);
    out_.append('\n');
  }
  // A field for each of the kinds, whether or not there is anything in it.
  template <class TextOf>
  void printKinds(std::string_view name, const TextOf& textOf) {
    out_.append(name);
    fill(name.size(), nameWidth);
    for (const CommunityKindRow& row : communityKindRows) {
      if (kinds_.has(row.kind)) field(textOf(row));
    }
    out_.append('\n');
  }

 private:
  static constexpr std::size_t nameWidth = 30;
  static constexpr std::size_t fieldWidth = 14;

  void field(const std::string& value) {
    fill(value.size(), fieldWidth);
    out_.append(value);
  }
  void fill(std::size_t from, std::size_t to) {
    for (; from < to; ++from) out_.append(' ');
  }

  TextOutput& out_;
  KindSet kinds_;
};

}  // namespace CommTool

#endif
