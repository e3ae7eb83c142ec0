#include "OvBgp/Value/PacketTypes.h"

#include "Kiv/EnumRegistry.h"

namespace Routing::Bgp {
namespace {

// Enters the enumerations into the registry while the library is loaded.
const Kiv::EnumModule packetEnums("OvBgpCommunityPacketTypes", Kiv::enumInfosOf<BgpPacketEnums>);

}  // namespace

// A subtype is one octet (RFC 4360 section 2).
U64 BgpExtCommPktSubtype::min() const { return 0; }
U64 BgpExtCommPktSubtype::max() const { return 255; }

}  // namespace Routing::Bgp
