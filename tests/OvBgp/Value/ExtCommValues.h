// Extended communities that several tests use.
#ifndef TESTS_OVBGP_VALUE_EXTCOMMVALUES_H
#define TESTS_OVBGP_VALUE_EXTCOMMVALUES_H

#include "Kiv/Types.h"

namespace Routing::Bgp {

// 65000:100, with a two-octet AS number.
inline constexpr U64 routeTargetA = 0x0002'fde8'0000'0064;
// 192.0.2.1:100, with an IPv4 address.
inline constexpr U64 routeTargetB = 0x0102'c000'0201'0064;
// Color 1 (RFC 9012).
inline constexpr U64 colorA = 0x030b'0000'0000'0001;
// Color 2.
inline constexpr U64 colorB = 0x030b'0000'0000'0002;
// A QoS marking: no plugin claims this type, and it has no subtypes.
inline constexpr U64 qos = 0x0401'0000'0000'0001;

}  // namespace Routing::Bgp

#endif
