// Texts of lists of large communities (RFC 8092 section 5). Private to the library; the text of a
// single community is in OvBgp/Value/LargeCommunityFormatter.h.
#ifndef OVBGP_VALUE_PRIVATE_LARGECOMMUNITYTEXT_H
#define OVBGP_VALUE_PRIVATE_LARGECOMMUNITYTEXT_H

#include <span>

#include "Acl/CommunityValue.h"
#include "Kiv/String.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Appends all communities in decimal, with one blank between two of them. Reserves the room for all
// of them in one request and then writes without checking the room again.
void appendLargeCommunities(OvFmt::DynamicBufferInterface& to,
                            std::span<const Acl::CommunityValue> comms);
// The same text as a string. Throws std::bad_alloc.
Kiv::String largeCommunitiesText(std::span<const Acl::CommunityValue> comms);

}  // namespace Routing::Bgp

#endif
