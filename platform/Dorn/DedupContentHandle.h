// The base of content records: what a value holds, before an object for it exists.
#ifndef DORN_DEDUPCONTENTHANDLE_H
#define DORN_DEDUPCONTENTHANDLE_H

#include <compare>

namespace Dorn {

// Marks a record that an interning table can be searched with.  Empty and not
// polymorphic, so that a record stays as small and as cheap to copy as its
// fields.  All base parts are equal and none is less than another; they exist so
// that a record can default its comparisons.  Whoever gets a reference to this
// base knows from the table which record it is.
class DedupContentHandle {
 public:
  friend constexpr bool operator==(const DedupContentHandle&, const DedupContentHandle&) = default;
  friend constexpr std::strong_ordering operator<=>(const DedupContentHandle&,
                                                    const DedupContentHandle&) = default;

 protected:
  constexpr DedupContentHandle() = default;  // only as the base of a record
};

}  // namespace Dorn

#endif
