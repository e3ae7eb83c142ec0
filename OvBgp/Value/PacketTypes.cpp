#include "OvBgp/Value/PacketTypes.h"

#include "Kiv/EnumRegistry.h"

namespace Routing::Bgp {
namespace {

const Kiv::EnumModule packetEnums("OvBgpCommunityPacketTypes", Kiv::enumInfosOf<BgpPacketEnums>);

}  // namespace

U64 BgpExtCommPktSubtype::min() const { return 0; }
U64 BgpExtCommPktSubtype::max() const { return 255; }

}  // namespace Routing::Bgp
