// Writes lists of extended communities as path attributes. Private to the library.
#ifndef OVBGP_LIST_PRIVATE_EXTCOMMSERIALIZE_H
#define OVBGP_LIST_PRIVATE_EXTCOMMSERIALIZE_H

#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Attribute/PathAttributeFraming.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvBgp/Value/ExtCommIp6Content.h"

namespace Routing::Bgp {

// Appends the eight octets of a value (RFC 4360, section 2).
inline void addContent(Serialize& to, const ExtCommContent& content) {
  to.addU64hton(content.value());
}

// Appends the twenty octets of an IPv6 value (RFC 5701, section 2).
inline void addContent(Serialize& to, const ExtCommIp6Content& content) {
  to.addU8(content.type());
  to.addU8(content.subtype());
  to.addIpv6Addr(content.addr());
  to.addU16hton(content.localAdmin());
}

// The family's path attribute with those members of `list` that `isWanted` accepts, in
// list order; an empty string if `count` is 0. `count` must be the number of these members,
// because the length field in front is written first.
template <class Family, class IsWanted>
Kiv::String serializeExtComms(const typename Family::List& list, U32 count,
                              const IsWanted& isWanted) {
  if (count == 0) return {};
  SerializePathAttribute attribute(Family::attribute, BgpPathAttrFlag::optionalTransitive,
                                   count * Family::wireSize);
  for (const auto& comm : list.commVector()) {
    if (isWanted(comm)) addContent(attribute, comm->getContent());
  }
  return attribute.serializedString();
}

}  // namespace Routing::Bgp

#endif
