// Text forms ("streps") of plain values, and their readers.
//
// Every value type of the system has two functions, which argument-dependent lookup finds in the
// namespace of the type. This header defines them for unsigned integers and booleans:
//   valueToStrep(value)               returns the text
//   sequenceToValue(it, end, target)  reads such a text from [it, end)
//
// A reader consumes the longest prefix of the text that can belong to a value of the type and
// moves `it` behind it. Otherwise it throws Kiv::RangeException and changes neither `it` nor the
// target. All functions here are thread-safe; those that return a String may throw
// std::bad_alloc.
//
// An unsigned integer is written in decimal without sign or padding; a boolean is written True or
// False.
#ifndef KIV_STREP_H
#define KIV_STREP_H

#include <concepts>
#include <limits>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Kiv {

// Returns the longest identifier ([A-Za-z_][A-Za-z0-9_]*, ASCII, independent of the locale) at the
// start of [it, end), or an empty view. The view refers to the caller's text.
OV_EXPORT std::string_view identifierAt(const char* it, const char* end) noexcept;

// Returns `value` in decimal digits, without leading zeros.
OV_EXPORT String unsignedToStrep(U64 value);

// Reads a decimal number that is at most `max` and moves `it` behind it. Leading zeros are
// accepted, signs and blanks are not. Throws RangeException and leaves `it` if there is no
// digit or if the number is greater than `max`.
OV_EXPORT U64 readUnsigned(const char*& it, const char* end, U64 max);

// Returns "True" or "False".
OV_EXPORT String boolToStrep(bool value);

// Reads the identifier True or False and moves `it` behind it. Throws RangeException and leaves
// `it` for any other text, also for a longer identifier such as "Truest".
OV_EXPORT bool readBool(const char*& it, const char* end);

// The text form of an unsigned integer or a boolean. It is a template over exactly these types, so
// that no enumeration, pointer or class converts to a number implicitly and prints as one.
template <std::unsigned_integral T>
String valueToStrep(T value) {
  if constexpr (std::same_as<T, bool>) {
    return boolToStrep(value);
  } else {
    return unsignedToStrep(value);
  }
}

// Reads an unsigned integer or a boolean into `target`, as described at the top of this file. A
// number that does not fit T is refused, never truncated.
template <std::unsigned_integral T>
void sequenceToValue(const char*& it, const char* end, T* target) {
  if constexpr (std::same_as<T, bool>) {
    *target = readBool(it, end);
  } else {
    *target = static_cast<T>(readUnsigned(it, end, std::numeric_limits<T>::max()));
  }
}

}  // namespace Kiv

#endif
