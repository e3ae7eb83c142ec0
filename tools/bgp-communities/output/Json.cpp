#include "tools/bgp-communities/output/Json.h"

#include <algorithm>
#include <cmath>

namespace CommTool {

namespace {

// From here on a double, which many readers use, cannot represent every integer.
constexpr U64 firstUnsafe = U64{1} << 53;

// ASCII is the usual case and needs no decoding.
bool isAscii(std::string_view octets) {
  return std::ranges::all_of(octets, [](char c) { return static_cast<U8>(c) < 0x80; });
}

// Each octet as the Unicode character of that number, in UTF-8. Characters from 0x80 on take two
// octets.
std::string charactersOf(std::string_view octets) {
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

// One form of the first octet of a UTF-8 sequence (RFC 3629, section 3).
struct Utf8Form {
  U8 mask;       // the bits that identify the form
  U8 lead;       // their value
  U8 followers;  // how many octets follow
  U32 least;     // the smallest character that needs this form; smaller ones are overlong
};

constexpr Utf8Form utf8Forms[] = {
    {0x80, 0x00, 0, 0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};

// The length of the UTF-8 sequence at the beginning of `octets`, or 0 if it is invalid. Surrogates
// are invalid, since UTF-8 encodes characters and not UTF-16 units.
std::size_t utf8Length(std::string_view octets) {
  const U8 first = static_cast<U8>(octets[0]);
  const auto* form = std::ranges::find_if(
      utf8Forms, [first](const Utf8Form& row) { return (first & row.mask) == row.lead; });
  if (form == std::end(utf8Forms) || octets.size() <= form->followers) return 0;
  U32 character = first & static_cast<U8>(~form->mask);
  for (std::size_t i = 1; i <= form->followers; ++i) {
    const U8 octet = static_cast<U8>(octets[i]);
    if ((octet & 0xC0) != 0x80) return 0;
    character = character << 6 | (octet & 0x3F);
  }
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  if (character < form->least || character > 0x10FFFF || surrogate) return 0;
  return 1 + form->followers;
}

}  // namespace

// Decodes character by character, since validity depends on whole sequences.
bool isUtf8(std::string_view octets) {
  while (!octets.empty()) {
    const std::size_t length = utf8Length(octets);
    if (length == 0) return false;
    octets.remove_prefix(length);
  }
  return true;
}

// Resized once and written in place: raw attribute values are long.
void appendHex(std::string& to, Octets octets) {
  constexpr const char* digits = "0123456789abcdef";
  const std::size_t before = to.size();
  to.resize(before + 2 * octets.size());
  char* at = to.data() + before;
  for (const U8 octet : octets) {
    *at++ = digits[octet >> 4];
    *at++ = digits[octet & 15];
  }
}

// RapidJSON would copy invalid UTF-8 as it is, so the text is checked first.
void Json::text(std::string_view octets) {
  const auto put = [this](std::string_view text) {
    writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  };
  if (isAscii(octets) || isUtf8(octets)) {
    put(octets);
  } else {
    put(charactersOf(octets));
  }
}

// Hexadecimal digits need no escapes, so they bypass the writer's search for characters to escape.
void Json::hex(Octets octets) {
  room_.assign(1, '"');
  appendHex(room_, octets);
  room_.push_back('"');
  written(room_, rapidjson::kStringType);
}

void Json::number(U64 value) {
  if (value < firstUnsafe) {
    writer_.Uint64(value);
  } else {
    writer_.Null();
  }
}

// JSON has no infinity and no NaN.
void Json::number(double value) {
  if (std::isfinite(value)) {
    writer_.Double(value);
  } else {
    writer_.Null();
  }
}

}  // namespace CommTool
