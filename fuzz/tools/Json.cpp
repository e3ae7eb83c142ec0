// Arbitrary octets as what is written as JSON: a program of the writer's operations.
// What comes out is one value of JSON that says what was put in.
#include "tools/bgp-communities/output/Json.h"

#include <bit>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/Input.h"
#include "fuzz/support/JsonGrammar.h"
#include "fuzz/support/Require.h"

namespace {

using CommTool::Json;
using Fuzz::require;

// What is said, an item a string; a letter says of which kind.
using Items = std::vector<std::string>;

// Octets that are no UTF-8 each become the character of their number.
std::string asCharacters(std::string_view octets) {
  if (CommTool::isUtf8(octets)) return std::string(octets);
  std::string text;
  for (const char octet : octets) {
    const U8 number = static_cast<U8>(octet);
    if (number < 0x80) {
      text.push_back(octet);
    } else {
      text.push_back(static_cast<char>(number < 0xC0 ? 0xC2 : 0xC3));
      text.push_back(static_cast<char>(0x80 | (number & 0x3F)));
    }
  }
  return text;
}

std::string numberItem(U64 value) {
  return value < U64{1} << 53 ? "N" + std::to_string(value) : "0";
}
std::string doubleItem(double value) {
  if (!std::isfinite(value)) return "0";
  return "D" + std::to_string(std::bit_cast<U64>(value));
}

// Whether the octets are UTF-8, by the table of RFC 3629, section 4.
bool isUtf8BySyntax(std::string_view text) {
  const auto at = [text](std::size_t i) { return i < text.size() ? static_cast<U8>(text[i]) : 0U; };
  for (std::size_t i = 0; i < text.size();) {
    const unsigned first = at(i);
    const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xC2 && first < 0xE0 ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0) return false;
    if (length > 1 && (at(i + 1) < least || at(i + 1) > most)) return false;
    for (std::size_t j = 2; j < length; ++j) {
      if (at(i + j) < 0x80 || at(i + j) > 0xBF) return false;
    }
    i += length;
  }
  return true;
}

// Writes one array of what the input says; returns what it is to say.
class Program {
 public:
  Program(Fuzz::Input& input, Json& json) : input_(input), json_(json) {}

  Items run() {
    json_.arrayBegin();
    items_ = {"["};
    while (!input_.atEnd()) step();
    while (depth_ > 0) arrayEnd();
    json_.arrayEnd();
    items_.emplace_back("]");
    return items_;
  }

 private:
  static constexpr unsigned depthMax = 40;

  void step() {
    switch (input_.below(8)) {
      case 0:
        return text();
      case 1:
        return hex();
      case 2:
        return number();
      case 3:
        return real();
      case 4:
        json_.boolean(true);
        return add("B1");
      case 5:
        return arrayBegin();
      case 6:
        return depth_ > 0 ? arrayEnd() : add(null());
      default:
        return object();
    }
  }

  void add(std::string item) { items_.push_back(std::move(item)); }
  std::string null() {
    json_.null();
    return "0";
  }
  std::string_view octets() {
    const auto taken = input_.octets(input_.u8());
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }
  void text() {
    const std::string_view taken = octets();
    require(CommTool::isUtf8(taken) == isUtf8BySyntax(taken), "UTF-8");
    json_.text(taken);
    add("S" + asCharacters(taken));
  }
  void hex() {
    const auto taken = input_.octets(input_.u8());
    json_.hex(taken);
    std::string digits = "S";
    for (const U8 octet : taken) {
      for (const int digit : {octet >> 4, octet & 15}) {
        digits.push_back("0123456789abcdef"[digit]);
      }
    }
    add(digits);
  }
  void number() {
    const U64 value = input_.u64() >> input_.below(64);
    json_.number(value);
    add(numberItem(value));
  }
  void real() {
    const auto value = std::bit_cast<double>(input_.u64());
    json_.number(value);
    add(doubleItem(value));
  }
  void arrayBegin() {
    if (depth_ == depthMax) return add(null());
    ++depth_;
    json_.arrayBegin();
    add("[");
  }
  void arrayEnd() {
    --depth_;
    json_.arrayEnd();
    add("]");
  }
  // With what was written before, and a text.
  void object() {
    const std::string_view taken = octets();
    Json inner;
    inner.text(taken);
    json_.objectBegin();
    json_.key("before");
    json_.written(inner.view(), rapidjson::kStringType);
    json_.add("name", taken);
    json_.objectEnd();
    for (const char* const item : {"{", "Kbefore"}) add(item);
    add("S" + asCharacters(taken));
    add("Kname");
    add("S" + asCharacters(taken));
    add("}");
  }

  Fuzz::Input& input_;
  Json& json_;
  Items items_;
  unsigned depth_ = 0;
};

// The content of a JSON text.
class Reader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Reader> {
 public:
  bool Null() { return add("0"); }
  bool Bool(bool value) { return add(value ? "B1" : "B0"); }
  bool Int(int value) { return Uint64(static_cast<U64>(value)); }
  bool Uint(unsigned value) { return Uint64(value); }
  bool Int64(std::int64_t value) { return Uint64(static_cast<U64>(value)); }
  bool Uint64(U64 value) { return add("N" + std::to_string(value)); }
  bool Double(double value) { return add(doubleItem(value)); }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return add("S" + std::string(text, length));
  }
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    return add("K" + std::string(text, length));
  }
  bool StartObject() { return add("{"); }
  bool EndObject(rapidjson::SizeType) { return add("}"); }
  bool StartArray() { return add("["); }
  bool EndArray(rapidjson::SizeType) { return add("]"); }

  Items items;

 private:
  bool add(std::string item) {
    items.push_back(std::move(item));
    return true;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  Fuzz::Input input(data, size);
  Json json;
  const Items expected = Program(input, json).run();
  Reader reader;
  constexpr unsigned exactly = rapidjson::kParseFullPrecisionFlag;
  require(Fuzz::readJson<exactly>(json.view(), reader), "no JSON");
  require(reader.items == expected, "JSON of something else");
  const std::size_t written = json.size();
  json.clear();
  require(json.size() == 0, "something left of what was forgotten");
  Fuzz::Input same(data, size);
  Program(same, json).run();
  require(json.size() == written, "another text the second time");
  return 0;
}
