// The contents of a plain list in wire format, as a path attribute carries them.
#ifndef OVBGP_LIST_COMMLISTCONTENT_H
#define OVBGP_LIST_COMMLISTCONTENT_H

#include <span>

#include "Dorn/DedupContentHandle.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// A key that looks up a plain list in its table without building a list first. It is the value of a
// COMMUNITIES or LARGE_COMMUNITY attribute, as big-endian words, one or three for each community.
// Does not own the octets, which must outlive the key. If the communities do not ascend strictly,
// no list matches, because the members of interned lists do.
class OV_EXPORT CommListContent : public Dorn::DedupContentHandle {
 public:
  // A key of `octets`. Requires: their number is a multiple of four.
  explicit CommListContent(std::span<const U8> octets) noexcept : octets_(octets) {}

  // The octets that were given to the constructor.
  std::span<const U8> octets() const noexcept { return octets_; }
  // The hash to look up. It equals ValueList::probeHash() of a list with this content.
  U32 probeHash() const noexcept;

 private:
  std::span<const U8> octets_;
};

}  // namespace Routing::Bgp

#endif
