// The decoded fields of extended communities.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_DECODED_FIELDS_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_DECODED_FIELDS_H

#include "OvBgp/OvBgpCommunity.h"
#include "tools/bgp-communities/output/Report.h"

namespace CommTool {

// Adds the fields that the community's class decodes: "as_number" or "address" with
// "local_administrator"; "color" and "color_only"; "as_number" and "bandwidth" in octets per
// second; "tunnel_type" and its name; "validation_state". Adds nothing for other classes.
void addDecodedFields(Report& report, const Routing::Bgp::ExtComm& community);
// Adds "address" and "local_administrator", which all IPv6 extended communities have.
void addDecodedFields(Report& report, const Routing::Bgp::ExtCommIp6& community);

}  // namespace CommTool

#endif
