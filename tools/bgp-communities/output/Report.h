// Named facts about one object, printed as text or as JSON.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_REPORT_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_REPORT_H

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Kiv/Types.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Has fields (facts with a name) and texts (forms in which the object can be written), each in the
// order in which they were added. Names are not copied, so they must be literals.
class Report {
 public:
  // The value of a field. The null pointer says that the object does not have this property.
  using Value =
      std::variant<std::nullptr_t, bool, U32, double, std::string, std::vector<std::string>>;

  // `title` is the first line of the text form; JSON has no title.
  explicit Report(std::string title) : title_(std::move(title)) {}

  // Adds a field.
  void add(std::string_view name, Value value);
  // Adds a text under the name of its form. It may be any octets.
  void addText(std::string_view form, std::string text);

  // Prints the report in one of the two forms.
  void print(TextOutput& out, bool json) const { json ? printJson(out) : printText(out); }
  // Prints the title and one line for each field and text. Empty texts are left out. Octets of
  // texts that are not printable ASCII are escaped as \xNN, so that hostile data cannot control the
  // terminal.
  void printText(TextOutput& out) const;
  // Prints one line with one JSON object: the fields as members, and the texts as an object under
  // "text". See Json.h for octets and numbers that JSON cannot represent.
  void printJson(TextOutput& out) const;

 private:
  std::string title_;
  std::vector<std::pair<std::string_view, Value>> fields_;
  std::vector<std::pair<std::string_view, std::string>> texts_;
};

}  // namespace CommTool

#endif
