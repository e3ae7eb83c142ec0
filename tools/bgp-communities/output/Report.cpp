#include "tools/bgp-communities/output/Report.h"

#include <cstdio>

#include "tools/bgp-communities/output/Json.h"

namespace CommTool {
namespace {

// The column of the values. Longer names are followed by a single blank.
constexpr std::size_t nameWidth = 22;

// The value as text for people. Lists are separated by blanks, and an absent value is a dash.
std::string plainText(const Report::Value& value) {
  // One overload for each alternative of Report::Value.
  struct ToText {
    std::string operator()(std::nullptr_t) const { return "-"; }
    std::string operator()(bool is) const { return is ? "yes" : "no"; }
    std::string operator()(U32 number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      char text[32];
      // Nine digits identify every value of the single precision that link bandwidth has on the
      // wire.
      std::snprintf(text, sizeof text, "%.9g", number);
      return text;
    }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const std::vector<std::string>& texts) const {
      std::string all;
      for (const std::string& text : texts) all.append(all.empty() ? "" : " ").append(text);
      return all;
    }
  };
  return std::visit(ToText{}, value);
}

// The value as JSON, with the type that it has.
void write(Json& json, const Report::Value& value) {
  // The same alternatives. Numbers and booleans keep their JSON types.
  struct ToJson {
    Json& json;
    void operator()(std::nullptr_t) const { json.null(); }
    void operator()(bool is) const { json.boolean(is); }
    void operator()(U32 number) const { json.number(U64{number}); }
    void operator()(double number) const { json.number(number); }
    void operator()(const std::string& text) const { json.text(text); }
    void operator()(const std::vector<std::string>& texts) const {
      json.arrayBegin();
      for (const std::string& text : texts) json.text(text);
      json.arrayEnd();
    }
  };
  std::visit(ToJson{json}, value);
}

// Escapes every octet that is not printable ASCII.
std::string printable(const std::string& octets) {
  std::string text;
  for (const char c : octets) {
    if (c >= 0x20 && c < 0x7F) {
      text.push_back(c);
    } else {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<U8>(c));
      text += escape;
    }
  }
  return text;
}

// One line: the name, blanks up to the column of the values, and the value.
void printField(TextOutput& out, std::string_view name, const std::string& text) {
  out.append("  ");
  out.append(name);
  out.append(std::string(name.size() < nameWidth ? nameWidth - name.size() : 1, ' '));
  out.append(text);
  out.append('\n');
}

}  // namespace

void Report::add(std::string_view name, Value value) {
  fields_.emplace_back(name, std::move(value));
}

// An empty text is kept: JSON shows it, the text form leaves it out.
void Report::addText(std::string_view form, std::string text) {
  texts_.emplace_back(form, std::move(text));
}

void Report::printText(TextOutput& out) const {
  out.append(title_);
  out.append('\n');
  for (const auto& [name, value] : fields_) printField(out, name, plainText(value));
  for (const auto& [form, text] : texts_) {
    if (!text.empty()) printField(out, std::string("text ").append(form), printable(text));
  }
}

// "text" is always present, even if it is empty.
void Report::printJson(TextOutput& out) const {
  Json json;
  json.objectBegin();
  for (const auto& [name, value] : fields_) {
    json.key(name);
    write(json, value);
  }
  json.key("text");
  json.objectBegin();
  for (const auto& [form, text] : texts_) json.add(form, text);
  json.objectEnd();
  json.objectEnd();
  out.append(json.view());
  out.append('\n');
}

}  // namespace CommTool
