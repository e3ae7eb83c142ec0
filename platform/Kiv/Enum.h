// Enumerations with names: declared once, as rows, and everything else follows.
//
//   // What the enumeration is about; RFC.
//   #define COLOR_ROWS(member, marker) member(colorRed, 1) marker(colorUnknown, 256)
//   KIV_ENUM(Color, COLOR_ROWS)
//   #undef COLOR_ROWS
//
// declares `enum class Color : U32` and, for every such enumeration alike:
//   stringValue(e), valueToStrep(e), os << e   the member's name
//   sequenceToValue(it, end, &e)               reads a name
//   enumName, enumValue, enumIsValid           constant expressions where asked for
//   enumInstance<E>(number or name), enumInstanceAt<E>(position)
//   enumInfo<E>                                 the same with the type erased
// A `member` is a valid value; a `marker` has a name and can be read and looked
// up like any other, but is not valid: a bound, a wildcard, an "unknown".
//
// An enumeration may hold numbers that are no row (they come from the wire).
// Such a number prints as the enumeration's name and the number in parentheses,
// "Color(7)", which no reader accepts.
//
// The rows may stand in any order; positions count in ascending value order.
// All of it is immutable and safe on any thread.  Argument-dependent lookup does
// not reach this namespace from an enumeration of another one, so that namespace
// takes the functions over with using-declarations.
#ifndef KIV_ENUM_H
#define KIV_ENUM_H

#include <array>
#include <concepts>
#include <cstddef>
#include <ostream>
#include <span>
#include <string_view>
#include <type_traits>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Kiv {

struct EnumRow {
  std::string_view name;
  U32 value;
  bool valid;  // false for markers
};

// An enumeration with its type erased.  Text and lookup are written here once;
// the templates below only add the type.  Not exported as a class: every library
// keeps its own enumInfo objects to itself, and so can be unloaded.
class EnumInfo {
 public:
  // One member as the registry lists it.
  struct Member {
    const EnumInfo* enumeration;
    U64 value;
    std::string_view name;
    bool valid;
  };

  // `rows` ascend by value and live as long as this object.
  constexpr EnumInfo(std::string_view name, std::span<const EnumRow> rows)
      : name_(name), rows_(rows) {}

  constexpr std::string_view name() const { return name_; }
  // Ascending by value, markers included.
  constexpr std::span<const EnumRow> rows() const { return rows_; }
  constexpr std::size_t size() const { return rows_.size(); }

  // The row, or null if there is none.  Any number may be asked for.
  OV_EXPORT const EnumRow* findValue(U64 value) const noexcept;
  OV_EXPORT const EnumRow* findName(std::string_view name) const noexcept;

  // These throw RangeException if there is no such member.
  OV_EXPORT const EnumRow& rowOfValue(U64 value) const;
  OV_EXPORT const EnumRow& rowOfName(std::string_view name) const;
  OV_EXPORT const EnumRow& rowAt(std::size_t position) const;
  OV_EXPORT Member memberAt(std::size_t position) const;

  // The member's name, or for any other number the form "Name(number)".
  OV_EXPORT String text(U32 value) const;
  // Reads one identifier, whole, and moves `it` behind it.  Throws RangeException
  // and leaves `it` if that is no member's name.
  OV_EXPORT const EnumRow& read(const char*& it, const char* end) const;

 private:
  std::string_view name_;
  std::span<const EnumRow> rows_;
};

// The seam between a declaration and this header: KIV_ENUM defines two functions
// for its tag, which argument-dependent lookup finds.
template <class E>
struct EnumTag {};

template <class E>
concept RegisteredEnum =
    std::is_enum_v<E> && std::same_as<std::underlying_type_t<E>, U32> && requires {
  kivEnumRows(EnumTag<E>{});
};

// A list of enumerations, for what is done for each of them.
template <RegisteredEnum... E>
struct EnumList {};

namespace Detail {

// Not constexpr: reaching it at compile time is the error message.
void enumValueGivenTwice();

// By insertion: rows are few and nearly always in order already, and this runs
// at compile time.
template <std::size_t N>
constexpr std::array<EnumRow, N> ascending(std::array<EnumRow, N> rows) {
  for (std::size_t i = 1; i < N; ++i) {
    const EnumRow row = rows[i];
    std::size_t at = i;
    for (; at > 0 && rows[at - 1].value >= row.value; --at) {
      if (rows[at - 1].value == row.value) enumValueGivenTwice();
      rows[at] = rows[at - 1];
    }
    rows[at] = row;
  }
  return rows;
}

// Which numbers are valid: a bit for each that fits an octet, and whether any
// valid member is larger.
struct EnumValidity {
  std::array<U64, 4> octets{};
  bool beyondOctets = false;
};

template <std::size_t N>
constexpr EnumValidity validityOf(const std::array<EnumRow, N>& rows) {
  EnumValidity validity;
  for (const EnumRow& row : rows) {
    if (!row.valid) continue;
    if (row.value < 256) {
      validity.octets[row.value / 64] |= U64{1} << (row.value % 64);
    } else {
      validity.beyondOctets = true;
    }
  }
  return validity;
}

template <RegisteredEnum E>
inline constexpr auto enumRows = ascending(kivEnumRows(EnumTag<E>{}));
template <RegisteredEnum E>
inline constexpr EnumValidity enumValidity = validityOf(enumRows<E>);

}  // namespace Detail

template <RegisteredEnum E>
inline constexpr EnumInfo enumInfo{kivEnumName(EnumTag<E>{}), Detail::enumRows<E>};

template <RegisteredEnum E>
constexpr U32 enumValue(E member) {
  return static_cast<U32>(member);
}

// Whether `member` is a valid member.  Any number may be asked for.
template <RegisteredEnum E>
constexpr bool enumIsValid(E member) {
  constexpr const Detail::EnumValidity& validity = Detail::enumValidity<E>;
  const U32 value = enumValue(member);
  if (value < 256) return (validity.octets[value / 64] >> (value % 64)) & 1;
  if constexpr (validity.beyondOctets) {
    for (const EnumRow& row : Detail::enumRows<E>) {
      if (row.value == value) return row.valid;
    }
  }
  return false;
}

// The member's name, for as long as the program runs; empty if it is none.
template <RegisteredEnum E>
std::string_view enumName(E member) noexcept {
  const EnumRow* row = enumInfo<E>.findValue(enumValue(member));
  return row ? row->name : std::string_view{};
}

// The member with this number, this name, or at this position.  They throw
// RangeException if there is none; a marker is found like any other.
template <RegisteredEnum E>
E enumInstance(U32 value) {
  return E{enumInfo<E>.rowOfValue(value).value};
}
template <RegisteredEnum E>
E enumInstance(const String& name) {
  return E{enumInfo<E>.rowOfName(name).value};
}
template <RegisteredEnum E>
E enumInstanceAt(U32 position) {
  return E{enumInfo<E>.rowAt(position).value};
}

template <RegisteredEnum E>
String stringValue(E member) {
  return enumInfo<E>.text(enumValue(member));
}
template <RegisteredEnum E>
String valueToStrep(E member) {
  return stringValue(member);
}
template <RegisteredEnum E>
std::ostream& operator<<(std::ostream& os, E member) {
  return os << stringValue(member);
}
template <RegisteredEnum E>
void sequenceToValue(const char*& it, const char* end, E* target) {
  *target = E{enumInfo<E>.read(it, end).value};
}

}  // namespace Kiv

// Declares the enumeration `Name` in the current namespace from its row list.
#define KIV_ENUM(Name, ROWS)                                                                \
  enum class Name : U32 { ROWS(KIV_ENUM_VALUE, KIV_ENUM_VALUE) };                           \
  constexpr auto kivEnumRows(::Kiv::EnumTag<Name>) {                                        \
    return std::to_array<::Kiv::EnumRow>({ROWS(KIV_ENUM_MEMBER_ROW, KIV_ENUM_MARKER_ROW)}); \
  }                                                                                         \
  constexpr std::string_view kivEnumName(::Kiv::EnumTag<Name>) { return #Name; }

#define KIV_ENUM_VALUE(id, number) id = number,
#define KIV_ENUM_MEMBER_ROW(id, number) {#id, number, true},
#define KIV_ENUM_MARKER_ROW(id, number) {#id, number, false},

// Declares an enumeration's instance function, by number or by position, and by
// name.  Its name is an argument, in full, so that a search finds this line.
#define KIV_ENUM_INSTANCE_BY_VALUE(Name, function)                             \
  inline Name function(U32 value) { return ::Kiv::enumInstance<Name>(value); } \
  inline Name function(const ::Kiv::String& name) { return ::Kiv::enumInstance<Name>(name); }
#define KIV_ENUM_INSTANCE_BY_POSITION(Name, function)                                  \
  inline Name function(U32 position) { return ::Kiv::enumInstanceAt<Name>(position); } \
  inline Name function(const ::Kiv::String& name) { return ::Kiv::enumInstance<Name>(name); }

#endif
