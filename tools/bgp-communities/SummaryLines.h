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
  explicit SummaryLines(TextOutput& out) : out_(out) {}

  void print(std::string_view name, U64 value) { print(name, std::to_string(value)); }
  void print(std::string_view name, const std::string& value) {
    out_.append(name);
    fill(name.size(), nameWidth);
    field(value);
    out_.append('\n');
  }
  // A field a kind; a column has its place whether or not there is anything in it.
  template <class TextOf>
  void printKinds(std::string_view name, const TextOf& textOf) {
    out_.append(name);
    fill(name.size(), nameWidth);
    for (const CommunityKindRow& row : communityKindRows) field(textOf(row));
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
};

}  // namespace CommTool

#endif
