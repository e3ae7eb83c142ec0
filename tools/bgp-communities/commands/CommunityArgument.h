// Parsing of a community given on the command line.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_COMMUNITY_ARGUMENT_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_COMMUNITY_ARGUMENT_H

#include <optional>
#include <string_view>
#include <variant>

#include "Acl/CommunityValue.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvBgp/Value/ExtCommIp6Content.h"

namespace CommTool {

// A community of RFC 1997. It is a type of its own, so that it differs from other numbers.
struct StandardCommunity {
  // AS number in the upper 16 bits, local value in the lower ones.
  U32 value = 0;
};

// A community of any of the four kinds.
using CommunityArgument =
    std::variant<StandardCommunity, Acl::CommunityValue, Routing::Bgp::ExtCommContent,
                 Routing::Bgp::ExtCommIp6Content>;

// The forms that readCommunity() accepts, for help and error messages.
inline constexpr std::string_view communityForms =
    "AS:local, a well-known name or 0x and 8 hexadecimal digits for a standard community, "
    "a:b:c for a large one, "
    "0x and 16 digits for an extended one, 0x and 40 for an IPv6 extended one";

// Parses a community in one of these forms. Nothing if `text` has none of them or a number is too
// large. Names may be written in any case and with _ instead of -.
std::optional<CommunityArgument> readCommunity(std::string_view text);

}  // namespace CommTool

#endif
