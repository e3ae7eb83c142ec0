// What is known of one thing, as named fields, for people or as JSON.
#ifndef TOOLS_BGP_COMMUNITIES_REPORT_H
#define TOOLS_BGP_COMMUNITIES_REPORT_H

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Kiv/Types.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Fields in the order in which they were added, and after them the texts, each
// under the name of its form. Names are literals.
class Report {
 public:
  // null: known to be absent.
  using Value =
      std::variant<std::nullptr_t, bool, U32, double, std::string, std::vector<std::string>>;

  explicit Report(std::string title) : title_(std::move(title)) {}

  void add(std::string_view name, Value value);
  void addText(std::string_view form, std::string text);

  // A title, a line a field and one a text; an empty text is left out, and octets
  // that are no printable ASCII are escaped.
  void print(TextOutput& out) const;
  // One line, one object: the fields, and the texts as an object under "text" (see
  // Json.h for what is no text or no number there).
  void printJson(TextOutput& out) const;

 private:
  std::string title_;
  std::vector<std::pair<std::string_view, Value>> fields_;
  std::vector<std::pair<std::string_view, std::string>> texts_;
};

}  // namespace CommTool

#endif
