// The list of large communities that a path carries (RFC 8092).
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
template <>
OV_EXPORT Kiv::Type& arrayType<Acl::CommunityValue>() noexcept;
}  // namespace KivStash

namespace Routing::RouteMap {
class CommListSnapshot;
class PosixRegex;
}  // namespace Routing::RouteMap

namespace Routing::Bgp {

class LargeCommList;

struct OV_EXPORT LargeCommListFamily {
  using List = LargeCommList;
  using Element = Acl::CommunityValue;
  using Table = LargeCommListDedupTable;
  static constexpr auto attrType = BgpPathAttrType::largeCommunity;
  static constexpr auto* attributeName = "LARGE_COMMUNITY";
  static constexpr auto* commIsFunction =
      "void Routing::Bgp::LargeCommList::commIs(const Acl::CommunityValue&)";
  static constexpr auto* commFunction =
      "bool Routing::Bgp::LargeCommList::comm(const Acl::CommunityValue&) const";
  static constexpr auto* hashFunction = "virtual U32 Routing::Bgp::LargeCommList::hash() const";
  static constexpr auto* compareFunction =
      "virtual bool Routing::Bgp::LargeCommList::compare(Dorn::DedupHandle::RawPtrConst) const";
};
extern template class ValueList<LargeCommListFamily>;

// How a list is built, interned and shared is said in OvBgp/List/ValueList.h.  Order is
// by global administrator, then by the local data.
class OV_EXPORT LargeCommList final : public ValueList<LargeCommListFamily> {
  KIV_OBJECT(LargeCommList)

 public:
  LargeCommList() noexcept = default;

  // The three words in decimal, joined by colons; with `asdot`, a global
  // administrator above 65535 as two halves joined by a period.
  static Kiv::String getStringValue(const Acl::CommunityValue& community);
  static Kiv::String displayString(const Acl::CommunityValue& community, bool asdot);

  // Appends the communities in list order, without asdot, one blank between.
  void appendText(OvFmt::DynamicBufferInterface& to) const;

  // Whether `regex` matches the list's text.  The expression sees the whole list as
  // one line.
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // The communities as an ordered collection of the caller's own, to read, edit and
  // watch (Routing/RouteMap/CommListSnapshot.h).
  Kiv::Ptr<RouteMap::CommListSnapshot> commSnapshot() const;

  // The list that the writer of a store has at `stored`, rebuilt, not yet interned;
  // OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  friend class ValueList<LargeCommListFamily>;
  static Kiv::String textOf(std::span<const Acl::CommunityValue> comms);
};

// A new, empty list.  Throws std::bad_alloc.
OV_EXPORT LargeCommList::Ptr largeCommListFactory();

}  // namespace Routing::Bgp

#endif
