#include "Kiv/Strep.h"

#include <charconv>

#include "Kiv/Exception.h"

namespace Kiv {
namespace {

// The functions of <cctype> depend on the locale, and a text form must not. Hence plain
// comparisons of ASCII characters.
constexpr bool startsIdentifier(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

constexpr bool continuesIdentifier(char c) { return startsIdentifier(c) || (c >= '0' && c <= '9'); }

}  // namespace

std::string_view identifierAt(const char* it, const char* end) noexcept {
  if (it == end || !startsIdentifier(*it)) return {};
  const char* stop = it + 1;
  while (stop != end && continuesIdentifier(*stop)) ++stop;
  return {it, static_cast<std::size_t>(stop - it)};
}

String unsignedToStrep(U64 value) { return std::to_string(value); }

U64 readUnsigned(const char*& it, const char* end, U64 max) {
  // For an unsigned type, std::from_chars accepts neither blanks nor a sign, and it does not depend
  // on the locale. It reports "no digit" and "too large for 64 bits" as different errors.
  U64 value = 0;
  const auto [stop, error] = std::from_chars(it, end, value);
  if (error == std::errc::invalid_argument) throw RangeException("unsigned number expected");
  if (error != std::errc{} || value > max) {
    throw RangeException("number > " + std::to_string(max) + " not allowed");
  }
  it = stop;
  return value;
}

String boolToStrep(bool value) { return value ? "True" : "False"; }

bool readBool(const char*& it, const char* end) {
  // Compare the whole identifier, because "Truest" is not the value True followed by "st".
  const std::string_view word = identifierAt(it, end);
  if (word != "True" && word != "False") throw RangeException("True or False expected");
  it += word.size();
  return word == "True";
}

}  // namespace Kiv
