// Text of a large community (RFC 8092 section 5).
#ifndef OVBGP_VALUE_LARGECOMMUNITYFORMATTER_H
#define OVBGP_VALUE_LARGECOMMUNITYFORMATTER_H

#include "Acl/CommunityValue.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

class OV_EXPORT LargeCommunityFormatter {
 public:
  // Appends the three words in decimal, joined by colons; with `asdot`, a global
  // administrator above 65535 as its two halves joined by a period. Returns the
  // number of characters.
  static U32 format(OvFmt::DynamicBufferInterface& to, const Acl::CommunityValue& value,
                    bool asdot);
};

}  // namespace Routing::Bgp

#endif
