// The contents of a list of plain communities as a path attribute has them.
#ifndef OVBGP_LIST_COMMLISTCONTENT_H
#define OVBGP_LIST_COMMLISTCONTENT_H

#include <span>

#include "Dorn/DedupContentHandle.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// The value octets of a COMMUNITIES or LARGE_COMMUNITY attribute, borrowed:
// big-endian words, one or three a community.  With it a list can be looked up in
// its table before there is one.  Contents that do not ascend strictly are those
// of no list.
class OV_EXPORT CommListContent : public Dorn::DedupContentHandle {
 public:
  // Requires: a length that is a multiple of four.
  explicit CommListContent(std::span<const U8> octets) noexcept : octets_(octets) {}

  std::span<const U8> octets() const noexcept { return octets_; }
  // What lists of this content probe their table with.
  U32 probeHash() const noexcept;

 private:
  std::span<const U8> octets_;
};

}  // namespace Routing::Bgp

#endif
