// How AS numbers and IPv4 addresses are written in the texts of communities.
#ifndef ROUTING_BGP_ADDRESSTEXT_H
#define ROUTING_BGP_ADDRESSTEXT_H

#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Appends a.b.c.d; a is the most significant octet.
inline void appendIpv4Address(OvFmt::DynamicBufferInterface& to, U32 address) {
  to.appendDecimal(static_cast<U8>(address >> 24));
  for (const int shift : {16, 8, 0}) {
    to.append('.');
    to.appendDecimal(static_cast<U8>(address >> shift));
  }
}

// Appends the number in decimal; with `asdot`, one that needs more than 16 bits
// as its two halves with a dot between (RFC 5396).
inline void appendAsNumber(OvFmt::DynamicBufferInterface& to, U32 asNumber, bool asdot) {
  const U32 high = asNumber >> 16;
  if (!asdot || high == 0) return to.appendDecimal(asNumber);
  to.appendDecimal(high);
  to.append('.');
  to.appendDecimal(static_cast<U16>(asNumber));
}

}  // namespace Routing::Bgp

#endif
