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
  char digits[2 * sizeof(std::uintptr_t)];
  const auto address = reinterpret_cast<std::uintptr_t>(pointer.address);
  const auto [end, error] = std::to_chars(digits, std::end(digits), address, 16);
  return String(prefix).append(digits, end);
}

void sequenceToValue(const char*& it, const char* end, RawPointer* target) {
  if (!std::string_view(it, static_cast<std::size_t>(end - it)).starts_with(prefix)) {
    throw RangeException("address expected");
  }
  std::uintptr_t address = 0;
  const auto [stop, error] = std::from_chars(it + prefix.size(), end, address, 16);
  if (error == std::errc::invalid_argument) throw RangeException("address expected");
  if (error != std::errc{}) throw RangeException("address too wide");
  target->address = reinterpret_cast<const void*>(address);
  it = stop;
}

}  // namespace Kiv
