// What an extended community says, field by field.
#ifndef TOOLS_BGP_COMMUNITIES_DECODED_FIELDS_H
#define TOOLS_BGP_COMMUNITIES_DECODED_FIELDS_H

#include "OvBgp/OvBgpCommunity.h"
#include "tools/bgp-communities/Report.h"

namespace CommTool {

// Adds the fields that the community's class has: "as_number" or "address" with
// "local_administrator"; "color" and "color_only"; "bandwidth", in octets a second;
// "tunnel_type" and its name; "validation_state".  Nothing for other classes.
void addDecodedFields(Report& report, const Routing::Bgp::ExtComm& community);
void addDecodedFields(Report& report, const Routing::Bgp::ExtCommIp6& community);

}  // namespace CommTool

#endif
