// Sets of up to eight named flags in one octet.
//
//   #define ORDER_ROWS(flagRow) flagRow(gift, giftIs, 0x01) flagRow(express, expressIs, 0x02)
//   class Order : public Kiv::FlagSet<Order> {
//    public:
//     using FlagSet::FlagSet;
//     KIV_FLAG_SET_BODY("Shop::Order", ORDER_ROWS)
//   };
//   #undef ORDER_ROWS
//
// gives `Order` its accessors gift(), giftIs(bool), ..., and everything below.
// The text form (valueToStrep, os << set) gives every flag in row order:
//   Value('Shop::Order', ** {'gift': True, 'express': False})
// and sequenceToValue and the constructor from text read exactly that back.
//
// A plain value of one octet: owner thread only, like any other.
#ifndef KIV_FLAGSET_H
#define KIV_FLAGSET_H

#include <array>
#include <bit>
#include <ostream>
#include <span>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Kiv {

struct FlagRow {
  std::string_view name;
  U8 bit;  // as a mask
};

// What becomes of bits that no flag names when a set is built from an octet.
enum class UnnamedFlags {
  reject,  // RangeException
  ignore,  // they are dropped
};

// The type-erased work, for a set called `typeName`.
OV_EXPORT String flagsToStrep(std::string_view typeName, std::span<const FlagRow> rows, U8 bits);
// Moves `it` behind the text; throws RangeException and leaves it if the text
// is not that of such a set.
OV_EXPORT U8 readFlags(const char*& it, const char* end, std::string_view typeName,
                       std::span<const FlagRow> rows);
// The same of a text of which nothing may be left over.
OV_EXPORT U8 flagsFromText(const String& text, std::string_view typeName,
                           std::span<const FlagRow> rows);
[[noreturn]] OV_EXPORT void throwDenseEnumBoolSetRangeException(std::string_view typeName, U8 bits);

// All bits that have a name.  Each row has one, and no two the same.
consteval U8 namedFlags(std::span<const FlagRow> rows) {
  U8 all = 0;
  for (const FlagRow& row : rows) {
    if (!std::has_single_bit(row.bit) || (all & row.bit)) throw "a flag needs a bit of its own";
    all = static_cast<U8>(all | row.bit);
  }
  return all;
}

// Base of the flag set `Derived`, which holds the rows (KIV_FLAG_SET_BODY).
template <class Derived, UnnamedFlags unnamed = UnnamedFlags::reject>
class FlagSet {
 public:
  constexpr FlagSet() = default;  // no flag is set
  // Throws RangeException on bits that are no flag, unless they are ignored.
  constexpr explicit FlagSet(U8 bits) {
    constexpr U8 named = namedFlags(Derived::flagRows);
    bits_ = bits & named;
    if (unnamed == UnnamedFlags::reject && bits != bits_) {
      throwDenseEnumBoolSetRangeException(Derived::flagSetName, bits);
    }
  }
  // Reads the text form; throws RangeException on any other text.
  explicit FlagSet(const String& text)
      : bits_(flagsFromText(text, Derived::flagSetName, Derived::flagRows)) {}

  constexpr U8 bits() const { return bits_; }
  friend constexpr bool operator==(const FlagSet&, const FlagSet&) = default;

  friend String valueToStrep(const Derived& set) {
    return flagsToStrep(Derived::flagSetName, Derived::flagRows, set.bits());
  }
  friend std::ostream& operator<<(std::ostream& os, const Derived& set) {
    return os << valueToStrep(set);
  }
  friend void sequenceToValue(const char*& it, const char* end, Derived* target) {
    *target = Derived(readFlags(it, end, Derived::flagSetName, Derived::flagRows));
  }

 protected:
  constexpr bool has(U8 bit) const { return (bits_ & bit) != 0; }
  constexpr void bitIs(U8 bit, bool isSet) {
    bits_ = static_cast<U8>(isSet ? bits_ | bit : bits_ & ~bit);
  }

 private:
  U8 bits_ = 0;
};

}  // namespace Kiv

// The public part of a flag set's body: its name, its rows, and two accessors a
// row.  The names are arguments, in full, so that a search finds their line.
#define KIV_FLAG_SET_BODY(typeName, ROWS)                                               \
  static constexpr std::string_view flagSetName = typeName;                             \
  static constexpr auto flagRows = std::to_array<::Kiv::FlagRow>({ROWS(KIV_FLAG_ROW)}); \
  ROWS(KIV_FLAG_ACCESSORS)

#define KIV_FLAG_ROW(get, set, bit) {#get, bit},
#define KIV_FLAG_ACCESSORS(get, set, bit)               \
  constexpr bool get() const { return this->has(bit); } \
  constexpr void set(bool isSet) { this->bitIs(bit, isSet); }

#endif
