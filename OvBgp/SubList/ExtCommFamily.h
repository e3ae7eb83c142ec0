// The two families of extended communities.
//
// Communities of eight octets and those of IPv6 have the same lists, sub-lists and tables. Their
// code is written once, as templates over a family, and a family struct names the classes and
// numbers in which the two differ.
#ifndef OVBGP_SUBLIST_EXTCOMMFAMILY_H
#define OVBGP_SUBLIST_EXTCOMMFAMILY_H

#include <string_view>

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "KivStash/DedupHandle.h"
#include "KivStash/Vector.h"
#include "OvBgp/Attribute/PathAttributeEnums.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

class ExtCommClassificationList;
class ExtCommIp6ClassificationList;
class ExtCommIp6List;
class ExtCommIp6ListDedupTable;
class ExtCommList;
class ExtCommListDedupTable;

// Communities of eight octets (RFC 4360).
struct OV_EXPORT ExtCommFamily {
  // The class of a community.
  using Value = ExtComm;
  // The octets of a community, by which a value is looked up.
  using Content = ExtCommContent;
  // The table of interned communities.
  using ValueTable = ExtCommDedupTable;
  // The class of a list.
  using List = ExtCommList;
  // The class of a sub-list.
  using ClassificationList = ExtCommClassificationList;
  // The tables of interned lists and sub-lists.
  using ListTable = ExtCommListDedupTable;
  // The base of a list.
  using ListHandle = Dorn::DedupHandle;
  // Octets of one community in the attribute.
  static constexpr U32 wireSize = 8;
  // The type of the attribute.
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunity;
  // The name of the attribute in error messages.
  static constexpr std::string_view attributeName = "EXTENDED COMMUNITIES";
};

// IPv6 address specific communities of twenty octets (RFC 5701).
struct OV_EXPORT ExtCommIp6Family {
  // The class of a community.
  using Value = ExtCommIp6;
  // The octets of a community, by which a value is looked up.
  using Content = ExtCommIp6Content;
  // The table of interned communities.
  using ValueTable = ExtCommIp6DedupTable;
  // The class of a list.
  using List = ExtCommIp6List;
  // The class of a sub-list.
  using ClassificationList = ExtCommIp6ClassificationList;
  // The tables of interned lists and sub-lists.
  using ListTable = ExtCommIp6ListDedupTable;
  // The base of a list. The interface gives this family another base, which adds no member.
  using ListHandle = KivStash::DedupHandle;
  // Octets of one community in the attribute.
  static constexpr U32 wireSize = 20;
  // The type of the attribute.
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunityIp6;
  // The name of the attribute in error messages.
  static constexpr std::string_view attributeName = "IPV6 ADDRESS SPECIFIC EXTENDED COMMUNITY";
};

}  // namespace Routing::Bgp

namespace KivStash {

// The record that counts arrays of communities of eight octets, which are the members of lists and
// sub-lists (KivStash/Vector.h).
template <>
OV_EXPORT Kiv::Type& arrayType<Routing::Bgp::ExtComm::PtrConst>() noexcept;
// The record that counts arrays of IPv6 communities.
template <>
OV_EXPORT Kiv::Type& arrayType<Routing::Bgp::ExtCommIp6::PtrConst>() noexcept;
// The record that counts the arrays of sub-lists in lists of communities of eight octets.
template <>
OV_EXPORT Kiv::Type& arrayType<Kiv::Ptr<const Routing::Bgp::ExtCommClassificationList>>() noexcept;
// The record that counts the arrays of sub-lists in lists of IPv6 communities.
template <>
OV_EXPORT Kiv::Type&
arrayType<Kiv::Ptr<const Routing::Bgp::ExtCommIp6ClassificationList>>() noexcept;

}  // namespace KivStash

#endif
