// Parsing of numbers in arguments.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_READ_NUMBER_H
#define TOOLS_BGP_COMMUNITIES_BGP_READ_NUMBER_H

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace CommTool {

// Returns `text` as an unsigned number. Nothing if the text has anything but digits of the base
// (also no sign and no blanks), if it is empty, or if the number does not fit.
template <class Number>
std::optional<Number> readNumber(std::string_view text, int base = 10) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number, base);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace CommTool

#endif
