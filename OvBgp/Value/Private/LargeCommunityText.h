// Text of many large communities (RFC 8092 section 5); of a single one, see
// OvBgp/Value/LargeCommunityFormatter.h.  Private to the library.
#ifndef OVBGP_VALUE_PRIVATE_LARGECOMMUNITYTEXT_H
#define OVBGP_VALUE_PRIVATE_LARGECOMMUNITYTEXT_H

#include <span>

#include "Acl/CommunityValue.h"
#include "Kiv/String.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Without asdot; one blank between communities, none before or after.  Reserves the
// room for all of them in one request and then writes without looking at it again.
void appendLargeCommunities(OvFmt::DynamicBufferInterface& to,
                            std::span<const Acl::CommunityValue> comms);
Kiv::String largeCommunitiesText(std::span<const Acl::CommunityValue> comms);

}  // namespace Routing::Bgp

#endif
