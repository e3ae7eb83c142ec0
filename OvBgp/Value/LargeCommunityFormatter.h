// The text of one large community (RFC 8092 section 5).
#ifndef OVBGP_VALUE_LARGECOMMUNITYFORMATTER_H
#define OVBGP_VALUE_LARGECOMMUNITYFORMATTER_H

#include "Acl/CommunityValue.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Holds one static function and no state. Lists of large communities write their texts faster, with
// one check of the buffer's room for all members.
class OV_EXPORT LargeCommunityFormatter {
 public:
  // Appends the three 32-bit words in decimal, joined by colons. With `asdot`, a global
  // administrator above 65535 is written as its two halves joined by a period (RFC 5396). Returns
  // the number of characters appended. Throws what the buffer throws.
  static U32 format(OvFmt::DynamicBufferInterface& to, const Acl::CommunityValue& value,
                    bool asdot);
};

}  // namespace Routing::Bgp

#endif
