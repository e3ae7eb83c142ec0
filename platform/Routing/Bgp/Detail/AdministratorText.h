// Text of the administrator field of communities: an AS number or an IPv4 address.
//
// Implementation detail of the formatters of route targets and extended communities.
#ifndef ROUTING_BGP_DETAIL_ADMINISTRATORTEXT_H
#define ROUTING_BGP_DETAIL_ADMINISTRATORTEXT_H

#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Appends a.b.c.d, where a is the most significant octet of `address` (host byte order).
inline void appendIpv4Address(OvFmt::DynamicBufferInterface& to, U32 address) {
  to.appendDecimal(static_cast<U8>(address >> 24));
  for (const int shift : {16, 8, 0}) {
    to.append('.');
    to.appendDecimal(static_cast<U8>(address >> shift));
  }
}

// Appends the AS number in decimal (asplain). With `asdot`, a number above 65535 is appended as its
// two 16-bit halves with a dot between them, "high.low" (RFC 5396).
inline void appendAsNumber(OvFmt::DynamicBufferInterface& to, U32 asNumber, bool asdot) {
  const U32 high = asNumber >> 16;
  if (!asdot || high == 0) return to.appendDecimal(asNumber);
  to.appendDecimal(high);
  to.append('.');
  to.appendDecimal(static_cast<U16>(asNumber));
}

}  // namespace Routing::Bgp

#endif
