// The two families of extended communities: which classes belong together.
#ifndef OVBGP_SUBLIST_EXTCOMMFAMILY_H
#define OVBGP_SUBLIST_EXTCOMMFAMILY_H

#include <string_view>

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
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
  using Value = ExtComm;
  using Content = ExtCommContent;
  using ValueTable = ExtCommDedupTable;
  using List = ExtCommList;
  using ClassificationList = ExtCommClassificationList;
  using ListTable = ExtCommListDedupTable;
  using ListHandle = Dorn::DedupHandle;
  static constexpr U32 wireSize = 8;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunity;
  static constexpr std::string_view attributeName = "EXTENDED COMMUNITIES";
};

// IPv6 address specific ones, of twenty octets (RFC 5701).
struct OV_EXPORT ExtCommIp6Family {
  using Value = ExtCommIp6;
  using Content = ExtCommIp6Content;
  using ValueTable = ExtCommIp6DedupTable;
  using List = ExtCommIp6List;
  using ClassificationList = ExtCommIp6ClassificationList;
  using ListTable = ExtCommIp6ListDedupTable;
  using ListHandle = KivStash::DedupHandle;
  static constexpr U32 wireSize = 20;
  static constexpr BgpPathAttrType attribute = BgpPathAttrType::extCommunityIp6;
  static constexpr std::string_view attributeName = "IPV6 ADDRESS SPECIFIC EXTENDED COMMUNITY";
};

}  // namespace Routing::Bgp

namespace KivStash {

template <>
OV_EXPORT Kiv::Type& arrayType<Routing::Bgp::ExtComm::PtrConst>() noexcept;
template <>
OV_EXPORT Kiv::Type& arrayType<Routing::Bgp::ExtCommIp6::PtrConst>() noexcept;
template <>
OV_EXPORT Kiv::Type& arrayType<Kiv::Ptr<const Routing::Bgp::ExtCommClassificationList>>() noexcept;
template <>
OV_EXPORT Kiv::Type&
arrayType<Kiv::Ptr<const Routing::Bgp::ExtCommIp6ClassificationList>>() noexcept;

}  // namespace KivStash

#endif
