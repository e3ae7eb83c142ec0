#include "Kiv/RawPointer.h"

#include <charconv>
#include <cstdint>
#include <string_view>

#include "Kiv/Exception.h"

namespace Kiv {
namespace {

constexpr std::string_view prefix = "0x";

}  // namespace

String valueToStrep(RawPointer pointer) {
  // Two hexadecimal digits for each octet, so std::to_chars cannot run out of room.
  char digits[2 * sizeof(std::uintptr_t)];
  const auto address = reinterpret_cast<std::uintptr_t>(pointer.address);
  const auto [end, error] = std::to_chars(digits, std::end(digits), address, 16);
  return String(prefix).append(digits, end);
}

void sequenceToValue(const char*& it, const char* end, RawPointer* target) {
  if (!std::string_view(it, static_cast<std::size_t>(end - it)).starts_with(prefix)) {
    throw RangeException("address expected");
  }
  // std::from_chars takes neither a sign nor blanks for an unsigned type, so "0x-1" and "0x 1" are
  // refused. It distinguishes "no digit" from "too many digits", and so do the messages.
  std::uintptr_t address = 0;
  const auto [stop, error] = std::from_chars(it + prefix.size(), end, address, 16);
  if (error == std::errc::invalid_argument) throw RangeException("address expected");
  if (error != std::errc{}) throw RangeException("address too wide");
  // Nothing was changed before this point, as the header promises for failures.
  target->address = reinterpret_cast<const void*>(address);
  it = stop;
}

}  // namespace Kiv
