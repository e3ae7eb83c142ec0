// The base of content records, which hold a value before an object for it exists.
#ifndef DORN_DEDUPCONTENTHANDLE_H
#define DORN_DEDUPCONTENTHANDLE_H

#include <compare>

namespace Dorn {

// Marks a record as a key for an interning table (DedupHashTable::lookupByContent).
//
// Empty and not polymorphic, so that a record stays as small and as cheap to copy as its fields.
// A function that gets a reference to this base knows the record's type from the table: all
// members of a table are of one type, and so are its keys.
class DedupContentHandle {
 public:
  // Any two bases are equal. The comparison exists so that a record can default its own.
  friend constexpr bool operator==(const DedupContentHandle&, const DedupContentHandle&) = default;
  // No base is less than another; for records that default their order.
  friend constexpr std::strong_ordering operator<=>(const DedupContentHandle&,
                                                    const DedupContentHandle&) = default;

 protected:
  // Protected, as it makes sense only as the base of a record.
  constexpr DedupContentHandle() = default;
};

}  // namespace Dorn

#endif
