// The list of large communities of a route (RFC 8092).
#ifndef OVBGP_LIST_LARGECOMMLIST_H
#define OVBGP_LIST_LARGECOMMLIST_H

#include "Acl/CommunityValue.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Attribute/PathAttributeEnums.h"
#include "OvBgp/List/CommListDedupTable.h"
#include "OvBgp/List/ValueList.h"
#include "OvFmt/DynamicBuffer.h"

namespace KivStash {
class StoreManager;
// The type record under which arrays of large communities are counted.
template <>
OV_EXPORT Kiv::Type& arrayType<Acl::CommunityValue>() noexcept;
}  // namespace KivStash

namespace Routing::RouteMap {
class CommListSnapshot;
class PosixRegex;
}  // namespace Routing::RouteMap

namespace Routing::Bgp {

class LargeCommList;

// The properties of large communities, for ValueList, which explains each row.
struct OV_EXPORT LargeCommListFamily {
  // The list class.
  using List = LargeCommList;
  // One community: three words of 32 bits in host byte order.
  using Element = Acl::CommunityValue;
  // The table that interns the lists.
  using Table = LargeCommListDedupTable;
  // Path attribute type 32.
  static constexpr auto attrType = BgpPathAttrType::largeCommunity;
  // The attribute's name in messages, as RFC 8092 has it.
  static constexpr auto* attributeName = "LARGE_COMMUNITY";
  // The name of `commIs` in failed assertions.
  static constexpr auto* commIsFunction =
      "void Routing::Bgp::LargeCommList::commIs(const Acl::CommunityValue&)";
  // The name of `comm` in failed assertions.
  static constexpr auto* commFunction =
      "bool Routing::Bgp::LargeCommList::comm(const Acl::CommunityValue&) const";
  // The name of `hash` in failed assertions.
  static constexpr auto* hashFunction = "virtual U32 Routing::Bgp::LargeCommList::hash() const";
  // The name of `compare` in failed assertions.
  static constexpr auto* compareFunction =
      "virtual bool Routing::Bgp::LargeCommList::compare(Dorn::DedupHandle::RawPtrConst) const";
};
extern template class ValueList<LargeCommListFamily>;

// A list of large communities. OvBgp/List/ValueList.h says how a list is built, interned and
// shared. Communities are ordered by global administrator, then by the first and second word
// of local data.
class OV_EXPORT LargeCommList final : public ValueList<LargeCommListFamily> {
  KIV_OBJECT(LargeCommList)

 public:
  // An empty list. Users call largeCommListFactory() instead.
  LargeCommList() noexcept = default;

  // The text of `community`: its three words in decimal, joined by colons.
  static Kiv::String getStringValue(const Acl::CommunityValue& community);
  // The text of getStringValue() if `asdot` is false. With `asdot`, a global administrator above
  // 65535 is written as two 16-bit numbers joined by a period (RFC 5396, section 2).
  static Kiv::String displayString(const Acl::CommunityValue& community, bool asdot);

  // Appends the members to `to` in list order, without asdot, separated by one blank.
  void appendText(OvFmt::DynamicBufferInterface& to) const;

  // Whether `regex` matches the text of the list, which is one line. Throws std::bad_alloc; lack of
  // memory is never answered as "no match".
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // A copy of the members that belongs to the caller, who may edit and observe it
  // (Routing/RouteMap/CommListSnapshot.h).
  Kiv::Ptr<RouteMap::CommListSnapshot> commSnapshot() const;

  // Rebuilds a list from its image at address `stored` of a shared-memory store. The result
  // is not interned. OvBgp/Store/Destash.h lists the exceptions and what is not checked.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  friend class ValueList<LargeCommListFamily>;
  static Kiv::String textOf(std::span<const Acl::CommunityValue> comms);
};

// A new, empty list, not interned. Throws std::bad_alloc.
OV_EXPORT LargeCommList::Ptr largeCommListFactory();

}  // namespace Routing::Bgp

#endif
