// One community as a person writes it on the command line.
#ifndef TOOLS_BGP_COMMUNITIES_COMMUNITY_ARGUMENT_H
#define TOOLS_BGP_COMMUNITIES_COMMUNITY_ARGUMENT_H

#include <optional>
#include <string_view>
#include <variant>

#include "Acl/CommunityValue.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvBgp/Value/ExtCommIp6Content.h"

namespace CommTool {

// RFC 1997, in host byte order.
struct StandardCommunity {
  U32 value = 0;
};

using CommunityArgument =
    std::variant<StandardCommunity, Acl::CommunityValue, Routing::Bgp::ExtCommContent,
                 Routing::Bgp::ExtCommIp6Content>;

// What readCommunity takes, for a person who wrote something else.
inline constexpr std::string_view communityForms =
    "AS:local, a well-known name or 0x and 8 hexadecimal digits for a standard community, "
    "a:b:c for a large one, "
    "0x and 16 digits for an extended one, 0x and 40 for an IPv6 extended one";

// Nothing if `text` is none of these.
std::optional<CommunityArgument> readCommunity(std::string_view text);

}  // namespace CommTool

#endif
