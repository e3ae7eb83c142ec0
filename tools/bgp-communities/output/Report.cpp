#include "tools/bgp-communities/Report.h"

#include <cstdio>

#include "tools/bgp-communities/Json.h"

namespace CommTool {
namespace {

constexpr std::size_t nameWidth = 22;

std::string plainText(const Report::Value& value) {
  struct ToText {
    std::string operator()(std::nullptr_t) const { return "-"; }
    std::string operator()(bool is) const { return is ? "yes" : "no"; }
    std::string operator()(U32 number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      char text[32];
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

void write(Json& json, const Report::Value& value) {
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

// Octets that a terminal would not print as they are become \xNN.
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

void Report::addText(std::string_view form, std::string text) {
  texts_.emplace_back(form, std::move(text));
}

void Report::print(TextOutput& out) const {
  out.append(title_);
  out.append('\n');
  for (const auto& [name, value] : fields_) printField(out, name, plainText(value));
  for (const auto& [form, text] : texts_) {
    if (!text.empty()) printField(out, std::string("text ").append(form), printable(text));
  }
}

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
