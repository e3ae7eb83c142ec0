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
// defines the accessors gift(), giftIs(bool) and so on of `Order`; the rest is inherited from the
// base class below. The text form (valueToStrep, os << set) lists every flag in row order:
//   Value('Shop::Order', ** {'gift': True, 'express': False})
// The reader sequenceToValue() and the constructor from text accept exactly this form.
//
// A flag set is a plain value of one octet without any locking: threads may share copies, but not
// one variable that any of them changes.
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

// One flag of a set.
struct FlagRow {
  // The name in the text form, which is also the name of the accessor; a literal.
  std::string_view name;
  // The bit of the flag, as a mask with exactly one bit set.
  U8 bit;
};

// The treatment of bits without a name when a set is built from an octet.
enum class UnnamedFlags {
  reject,  // the constructor throws RangeException
  ignore,  // the constructor clears these bits
};

// Returns the text form of a set named `typeName` with these flags. This function and the three
// below do the work of the class template, once for all sets. Throws std::bad_alloc.
OV_EXPORT String flagsToStrep(std::string_view typeName, std::span<const FlagRow> rows, U8 bits);
// Reads the text form of a set named `typeName` from [it, end), moves `it` behind it and returns
// the octet. Throws RangeException and leaves `it` if the text does not start with such a form.
OV_EXPORT U8 readFlags(const char*& it, const char* end, std::string_view typeName,
                       std::span<const FlagRow> rows);
// As readFlags(), but throws RangeException also if characters follow the text form.
OV_EXPORT U8 flagsFromText(const String& text, std::string_view typeName,
                           std::span<const FlagRow> rows);
// Throws the RangeException for an octet that has bits without a name.
[[noreturn]] OV_EXPORT void throwDenseEnumBoolSetRangeException(std::string_view typeName, U8 bits);

// Returns the union of all bits that have a name. Compilation fails if a row does not have exactly
// one bit, or if two rows have the same bit.
consteval U8 namedFlags(std::span<const FlagRow> rows) {
  U8 all = 0;
  for (const FlagRow& row : rows) {
    if (!std::has_single_bit(row.bit) || (all & row.bit)) throw "a flag needs a bit of its own";
    all = static_cast<U8>(all | row.bit);
  }
  return all;
}

// The base of the flag set `Derived`, whose body is KIV_FLAG_SET_BODY (curiously recurring template
// pattern: the rows are those of `Derived`, and no virtual function is needed).
template <class Derived, UnnamedFlags unnamed = UnnamedFlags::reject>
class FlagSet {
 public:
  // A set in which no flag is set.
  constexpr FlagSet() = default;
  // The set with the flags of `bits`. Bits without a name are treated as `unnamed` says: by default
  // they make the constructor throw RangeException.
  constexpr explicit FlagSet(U8 bits) {
    constexpr U8 named = namedFlags(Derived::flagRows);
    bits_ = bits & named;
    if (unnamed == UnnamedFlags::reject && bits != bits_) {
      throwDenseEnumBoolSetRangeException(Derived::flagSetName, bits);
    }
  }
  // Reads the text form. Throws RangeException for any other text.
  explicit FlagSet(const String& text)
      : bits_(flagsFromText(text, Derived::flagSetName, Derived::flagRows)) {}

  // The flags as one octet; bits without a name are always clear.
  constexpr U8 bits() const { return bits_; }
  // Whether both sets have the same flags set.
  friend constexpr bool operator==(const FlagSet&, const FlagSet&) = default;

  // Returns the text form, with every flag in row order.
  friend String valueToStrep(const Derived& set) {
    return flagsToStrep(Derived::flagSetName, Derived::flagRows, set.bits());
  }
  // Prints the text form.
  friend std::ostream& operator<<(std::ostream& os, const Derived& set) {
    return os << valueToStrep(set);
  }
  // Reads the text form from [it, end) into `target` and moves `it` behind it. Throws
  // RangeException, and changes nothing, if the text does not start with such a form.
  friend void sequenceToValue(const char*& it, const char* end, Derived* target) {
    *target = Derived(readFlags(it, end, Derived::flagSetName, Derived::flagRows));
  }

 protected:
  // Whether the flag with this mask is set; called by the accessors of `Derived`.
  constexpr bool has(U8 bit) const { return (bits_ & bit) != 0; }
  // Sets or clears the flag with this mask; called by the accessors of `Derived`. The mask must be
  // one of a row, since bits without a name stay clear.
  constexpr void bitIs(U8 bit, bool isSet) {
    bits_ = static_cast<U8>(isSet ? bits_ | bit : bits_ & ~bit);
  }

 private:
  U8 bits_ = 0;
};

}  // namespace Kiv

// The public part of the body of a flag set: its name in texts, its rows, and two accessors for
// each row. The accessor names are arguments, spelled in full, so that a text search finds them.
#define KIV_FLAG_SET_BODY(typeName, ROWS)                                               \
  static constexpr std::string_view flagSetName = typeName;                             \
  static constexpr auto flagRows = std::to_array<::Kiv::FlagRow>({ROWS(KIV_FLAG_ROW)}); \
  ROWS(KIV_FLAG_ACCESSORS)

// The form in which KIV_FLAG_SET_BODY writes a row as a FlagRow. Not for direct use.
#define KIV_FLAG_ROW(get, set, bit) {#get, bit},
// The form in which KIV_FLAG_SET_BODY writes the two accessors of a row. Not for direct use.
#define KIV_FLAG_ACCESSORS(get, set, bit)               \
  constexpr bool get() const { return this->has(bit); } \
  constexpr void set(bool isSet) { this->bitIs(bit, isSet); }

#endif
