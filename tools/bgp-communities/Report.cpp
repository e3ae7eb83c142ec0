#include "tools/bgp-communities/Report.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdio>

namespace CommTool {
namespace {

constexpr std::size_t nameWidth = 22;

std::string textOf(const Report::Value& value) {
  struct ToText {
    std::string operator()(std::nullptr_t) const { return "-"; }
    std::string operator()(bool is) const { return is ? "yes" : "no"; }
    std::string operator()(U32 number) const { return std::to_string(number); }
    std::string operator()(const std::string& text) const { return text; }
  };
  return std::visit(ToText{}, value);
}

// Octets as the first 256 characters of Unicode, so that JSON can hold any text.
std::string utf8(std::string_view octets) {
  std::string text;
  for (const char c : octets) {
    const U8 octet = static_cast<U8>(c);
    if (octet < 0x80) {
      text.push_back(c);
    } else {
      text.push_back(static_cast<char>(0xC0 | octet >> 6));
      text.push_back(static_cast<char>(0x80 | (octet & 0x3F)));
    }
  }
  return text;
}

class JsonLine {
 public:
  void key(std::string_view name) {
    writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  }
  void value(const std::string& octets) {
    const std::string text = utf8(octets);
    writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }
  void value(const Report::Value& of) {
    struct ToJson {
      JsonLine& line;
      void operator()(std::nullptr_t) const { line.writer_.Null(); }
      void operator()(bool is) const { line.writer_.Bool(is); }
      void operator()(U32 number) const { line.writer_.Uint(number); }
      void operator()(const std::string& text) const { line.value(text); }
    };
    std::visit(ToJson{*this}, of);
  }
  void objectBegin() { writer_.StartObject(); }
  void objectEnd() { writer_.EndObject(); }
  std::string_view view() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

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

void Report::print(TextOutput& out) const {
  out.append(title_);
  out.append('\n');
  for (const auto& [name, value] : fields_) printField(out, name, textOf(value));
  for (const auto& [form, text] : texts_) {
    if (!text.empty()) printField(out, std::string("text ").append(form), printable(text));
  }
}

void Report::printJson(TextOutput& out) const {
  JsonLine line;
  line.objectBegin();
  for (const auto& [name, value] : fields_) {
    line.key(name);
    line.value(value);
  }
  line.key("text");
  line.objectBegin();
  for (const auto& [form, text] : texts_) {
    line.key(form);
    line.value(text);
  }
  line.objectEnd();
  line.objectEnd();
  out.append(line.view());
  out.append('\n');
}

}  // namespace CommTool
