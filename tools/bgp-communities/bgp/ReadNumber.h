// Numbers that a user writes.
#ifndef TOOLS_BGP_COMMUNITIES_READNUMBER_H
#define TOOLS_BGP_COMMUNITIES_READNUMBER_H

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace CommTool {

// All of `text`, which must be digits and nothing else.
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
