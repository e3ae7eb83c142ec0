// Enumerations with names: declared once, as a list of rows, from which everything else follows.
//
//   // What the enumeration is about; RFC.
//   #define COLOR_ROWS(member, marker) member(colorRed, 1) marker(colorUnknown, 256)
//   KIV_ENUM(Color, COLOR_ROWS)
//   #undef COLOR_ROWS
//
// declares `enum class Color : U32` and, as for every such enumeration:
//   stringValue(e), valueToStrep(e), os << e   the name of the member
//   sequenceToValue(it, end, &e)               reads a name
//   enumName, enumValue, enumIsValid           enumValue and enumIsValid also at compile time
//   enumInstance<E>(number or name), enumInstanceAt<E>(position)
//   enumInfo<E>                                the same operations with the type erased
// A `member` is a valid value. A `marker` has a name, and can be read and looked up like a member,
// but is not valid: a bound, a wildcard, an "unknown".
//
// A variable of the enumeration may contain a number without a row, since such numbers arrive in
// wire data. The number prints as the name of the enumeration and the number in parentheses,
// "Color(7)", and no reader accepts this text.
//
// The rows may be written in any order. Listings and positions keep this order; positions count
// from 0. All the data is constant, so every function here is thread-safe.
//
// Argument-dependent lookup searches the namespace of the enumeration, and therefore does not find
// the functions of this one. A namespace that declares enumerations makes the functions visible
// with using-declarations.
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

// One row of an enumeration.
struct EnumRow {
  // The enumerator as it is spelled in the source; a literal, so the view is valid for as long as
  // the library with the enumeration is loaded.
  std::string_view name;
  // The number of the enumerator; unique within its enumeration.
  U32 value;
  // True for members, false for markers.
  bool valid;
};

// An enumeration with its type erased. The code for text and lookup exists once, here; the
// templates below only add the type. The class itself is not exported: every library has its own
// enumInfo objects, so that the library can be unloaded.
class EnumInfo {
 public:
  // One member or marker, in the form in which the registry lists it.
  struct Member {
    // The enumeration that the row belongs to; not owned.
    const EnumInfo* enumeration;
    // The number of the enumerator. 64 bits wide for generic code; the value itself has 32 bits.
    U64 value;
    // The name of the enumerator; valid for as long as its library is loaded.
    std::string_view name;
    // True for members, false for markers.
    bool valid;
  };

  // Describes the enumeration `name`. `rows` are in declared order; `byValue` are the same rows in
  // ascending order of their values, and may be the same array. Nothing is copied; all arguments
  // must live as long as this object.
  constexpr EnumInfo(std::string_view name, std::span<const EnumRow> rows,
                     std::span<const EnumRow> byValue)
      : name_(name), rows_(rows), byValue_(byValue) {}

  // The unqualified name of the enumeration.
  constexpr std::string_view name() const { return name_; }
  // All rows in the order in which they are declared, markers included.
  constexpr std::span<const EnumRow> rows() const { return rows_; }
  // The number of rows, markers included.
  constexpr std::size_t size() const { return rows_.size(); }

  // Returns the row with this number, or null. Any number is allowed, also one of more than 32
  // bits. Binary search.
  OV_EXPORT const EnumRow* findValue(U64 value) const noexcept;
  // Returns the row with exactly this name, or null. Linear search.
  OV_EXPORT const EnumRow* findName(std::string_view name) const noexcept;

  // As findValue(), but throws RangeException if no row has this number.
  OV_EXPORT const EnumRow& rowOfValue(U64 value) const;
  // As findName(), but throws RangeException if no row has this name. The message quotes at most 80
  // characters of `name`.
  OV_EXPORT const EnumRow& rowOfName(std::string_view name) const;
  // Returns the row at `position`, counted from 0 in declared order. Throws RangeException if
  // `position` is not less than size().
  OV_EXPORT const EnumRow& rowAt(std::size_t position) const;
  // As rowAt(), in the form for generic code. Throws RangeException likewise.
  OV_EXPORT Member memberAt(std::size_t position) const;

  // Returns the name for `value`, or the form "Name(number)" for a number without a row.
  OV_EXPORT String text(U32 value) const;
  // Reads one whole identifier from [it, end), moves `it` behind it and returns its row. Throws
  // RangeException and leaves `it` if the identifier is not the name of a row.
  OV_EXPORT const EnumRow& read(const char*& it, const char* end) const;

 private:
  std::string_view name_;
  std::span<const EnumRow> rows_;
  std::span<const EnumRow> byValue_;
};

// The link between a declaration and this header. KIV_ENUM defines two functions that take the tag
// of its enumeration, and argument-dependent lookup finds them in any namespace.
template <class E>
struct EnumTag {};

// An enumeration that was declared by KIV_ENUM.
template <class E>
concept RegisteredEnum =
    std::is_enum_v<E> && std::same_as<std::underlying_type_t<E>, U32> && requires {
  kivEnumRows(EnumTag<E>{});
};

// A compile-time list of enumerations, for code that does the same with each of them.
template <RegisteredEnum... E>
struct EnumList {};

namespace Detail {

// Deliberately not constexpr: a duplicate value makes the compiler evaluate this call in a
// constant expression, which it rejects with this name in the message.
void enumValueGivenTwice();

// Insertion sort. There are few rows, they are nearly always in order already, and the sort runs
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

// The valid numbers of an enumeration. Most code points fit one octet, so validity of those is one
// load and a shift; `beyondOctets` says whether greater numbers need a search at all.
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
inline constexpr auto declaredEnumRows = kivEnumRows(EnumTag<E>{});
template <RegisteredEnum E>
inline constexpr auto enumRows = ascending(declaredEnumRows<E>);
template <RegisteredEnum E>
inline constexpr EnumValidity enumValidity = validityOf(enumRows<E>);

}  // namespace Detail

// The type-erased description of `E`. Each shared library has an object of its own, so compare
// enumerations by name, not by the address of this object.
template <RegisteredEnum E>
inline constexpr EnumInfo enumInfo{kivEnumName(EnumTag<E>{}), Detail::declaredEnumRows<E>,
                                   Detail::enumRows<E>};

// The number of `member`, for arithmetic and wire data.
template <RegisteredEnum E>
constexpr U32 enumValue(E member) {
  return static_cast<U32>(member);
}

// Whether `member` is a valid member: neither a marker nor a number without a row. Any number is
// allowed. One load and a shift for numbers below 256, a linear search for others.
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

// The name of `member`, or an empty view for a number without a row. The view is valid for as long
// as the library with the enumeration is loaded. Unlike stringValue(), it allocates nothing.
template <RegisteredEnum E>
std::string_view enumName(E member) noexcept {
  const EnumRow* row = enumInfo<E>.findValue(enumValue(member));
  return row ? row->name : std::string_view{};
}

// Returns the member or marker with the number `value`; throws RangeException if there is none.
template <RegisteredEnum E>
E enumInstance(U32 value) {
  return E{enumInfo<E>.rowOfValue(value).value};
}
// Returns the member or marker with this exact name; throws RangeException if there is none.
template <RegisteredEnum E>
E enumInstance(const String& name) {
  return E{enumInfo<E>.rowOfName(name).value};
}
// Returns the member or marker at `position`, counted from 0 in declared order; throws
// RangeException if there are not so many.
template <RegisteredEnum E>
E enumInstanceAt(U32 position) {
  return E{enumInfo<E>.rowAt(position).value};
}

// Returns the name of `member`, or "Name(number)" for a number without a row.
template <RegisteredEnum E>
String stringValue(E member) {
  return enumInfo<E>.text(enumValue(member));
}
// The text form that sequenceToValue() reads: the same text as stringValue().
template <RegisteredEnum E>
String valueToStrep(E member) {
  return stringValue(member);
}
// Prints the text of stringValue(). The field width and the fill character of `os` apply.
template <RegisteredEnum E>
std::ostream& operator<<(std::ostream& os, E member) {
  return os << stringValue(member);
}
// Reads a name from [it, end) into `target` and moves `it` behind the name. Throws RangeException,
// and changes nothing, if the text does not start with the name of a member or marker.
template <RegisteredEnum E>
void sequenceToValue(const char*& it, const char* end, E* target) {
  *target = E{enumInfo<E>.read(it, end).value};
}

}  // namespace Kiv

// Declares the enumeration `Name` in the current namespace from its list of rows.
#define KIV_ENUM(Name, ROWS)                                                                \
  enum class Name : U32 { ROWS(KIV_ENUM_VALUE, KIV_ENUM_VALUE) };                           \
  constexpr auto kivEnumRows(::Kiv::EnumTag<Name>) {                                        \
    return std::to_array<::Kiv::EnumRow>({ROWS(KIV_ENUM_MEMBER_ROW, KIV_ENUM_MARKER_ROW)}); \
  }                                                                                         \
  constexpr std::string_view kivEnumName(::Kiv::EnumTag<Name>) { return #Name; }

// The form in which KIV_ENUM writes a row as an enumerator. Not for direct use.
#define KIV_ENUM_VALUE(id, number) id = number,
// The form in which KIV_ENUM writes a member as an EnumRow. Not for direct use.
#define KIV_ENUM_MEMBER_ROW(id, number) {#id, number, true},
// The form in which KIV_ENUM writes a marker as an EnumRow. Not for direct use.
#define KIV_ENUM_MARKER_ROW(id, number) {#id, number, false},

// Defines the two overloads of an instance function that takes a number or a name. The name of
// the function is an argument, spelled in full, so that a text search finds its definition.
#define KIV_ENUM_INSTANCE_BY_VALUE(Name, function)                             \
  inline Name function(U32 value) { return ::Kiv::enumInstance<Name>(value); } \
  inline Name function(const ::Kiv::String& name) { return ::Kiv::enumInstance<Name>(name); }
// As KIV_ENUM_INSTANCE_BY_VALUE, but a number is a position in declared order, not a value.
#define KIV_ENUM_INSTANCE_BY_POSITION(Name, function)                                  \
  inline Name function(U32 position) { return ::Kiv::enumInstanceAt<Name>(position); } \
  inline Name function(const ::Kiv::String& name) { return ::Kiv::enumInstance<Name>(name); }

#endif
