#include "tools/bgp-communities/commands/DecodedFields.h"

#include <algorithm>

#include "OvBgp/ExtCommIp6.h"
#include "OvBgp/Parse/Typed/ExtCommColor.h"
#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"
#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"
#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"
#include "Rpki/OriginValidationState.h"
#include "tools/bgp-communities/bgp/AddressText.h"

namespace CommTool {

using namespace Routing::Bgp;  // NOLINT(google-build-using-namespace): all of it is about them

namespace {

// One overload for each class that decodes fields.
void add(Report& report, const ExtCommLinkBandwidth& community) {
  report.add("as_number", community.asNumber());
  report.add("bandwidth", double{community.linkBandwidth().bytesPerSecond()});
}
void add(Report& report, const ExtCommAsNumber& community) {
  report.add("as_number", community.asNumber());
  report.add("local_administrator", community.localAdmin());
}
// The address is a number in host byte order.
void add(Report& report, const ExtCommIpv4Address& community) {
  Address address;
  for (unsigned i = 0; i < 4; ++i) {
    address.octets[i] = static_cast<U8>(community.address() >> (24 - 8 * i));
  }
  report.add("address", std::string(AddressText(address).view()));
  report.add("local_administrator", U32{community.localAdmin()});
}
// The color and the two CO bits before it.
void add(Report& report, const ExtCommColor& community) {
  report.add("color", community.color());
  report.add("color_only", U32{community.colorOnly()});
}
// Tunnel types without a name are shown by their number only.
void add(Report& report, const ExtCommTunnelEncap& community) {
  const bool named = community.tunnelType() != tunnelTypeUnknown;
  report.add("tunnel_type", U32{community.tunnelTypeNumber()});
  report.add("tunnel_type_name",
             named ? Report::Value(stringValue(community.tunnelType())) : Report::Value(nullptr));
}
void add(Report& report, const ExtCommOriginValidationState& community) {
  report.add("validation_state", std::string(Rpki::originValidationStateText(community.state())));
}

// Adds the fields if the community is of this class or a derived one.
template <class Class>
bool addIf(Report& report, const ExtComm& community) {
  const auto* const typed = dynamic_cast<const Class*>(&community);
  if (typed != nullptr) add(report, *typed);
  return typed != nullptr;
}

// Adds the fields of the first class that fits. Derived classes must be listed before their bases.
template <class... Classes>
void addFirst(Report& report, const ExtComm& community) {
  static_cast<void>((addIf<Classes>(report, community) || ...));
}

}  // namespace

// ExtCommLinkBandwidth is an ExtCommAsNumber, so it is listed first.
void addDecodedFields(Report& report, const ExtComm& community) {
  addFirst<ExtCommLinkBandwidth, ExtCommAsNumber, ExtCommIpv4Address, ExtCommColor,
           ExtCommTunnelEncap, ExtCommOriginValidationState>(report, community);
}

// All subtypes have the same layout (RFC 5701, section 2).
void addDecodedFields(Report& report, const ExtCommIp6& community) {
  Address address;
  address.family = Family::ipv6;
  std::ranges::copy(community.getContent().addr().octets(), address.octets.begin());
  report.add("address", std::string(AddressText(address).view()));
  report.add("local_administrator", U32{community.getContent().localAdmin()});
}

}  // namespace CommTool
