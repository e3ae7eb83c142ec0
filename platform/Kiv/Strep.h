// Text forms ("streps") of plain values, and their readers.
//
// Every value type of the system has two functions, found by argument-dependent
// lookup beside the type; this header gives them for integers and booleans:
//   valueToStrep(value)               the text
//   sequenceToValue(it, end, target)  reads that text from [it, end)
// A reader takes the longest text that can belong to a value and moves `it`
// behind it.  It throws Kiv::RangeException, and changes neither `it` nor the
// target, if no value of the type stands there.  Any thread.
//
// An unsigned integer is written in decimal, without sign or padding; a boolean
// is True or False.
#ifndef KIV_STREP_H
#define KIV_STREP_H

#include <concepts>
#include <limits>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Kiv {

// The longest identifier ([A-Za-z_][A-Za-z0-9_]*) at the start of [it, end);
// empty if there is none.
OV_EXPORT std::string_view identifierAt(const char* it, const char* end) noexcept;

OV_EXPORT String unsignedToStrep(U64 value);
// Reads a decimal number of at most `max`.
OV_EXPORT U64 readUnsigned(const char*& it, const char* end, U64 max);
OV_EXPORT String boolToStrep(bool value);
OV_EXPORT bool readBool(const char*& it, const char* end);

// Templates, so that nothing converts to a number or a boolean on its way here.
template <std::unsigned_integral T>
String valueToStrep(T value) {
  if constexpr (std::same_as<T, bool>) {
    return boolToStrep(value);
  } else {
    return unsignedToStrep(value);
  }
}

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
