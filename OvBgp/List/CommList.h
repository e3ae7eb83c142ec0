// The list of standard communities of a route (RFC 1997).
//
// As in every plain list, `commIs` appends a community, `comm` says whether a community is
// a member, and `comms()` is the number of members.
#ifndef OVBGP_LIST_COMMLIST_H
#define OVBGP_LIST_COMMLIST_H

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
}

namespace Routing::RouteMap {
class PosixRegex;
}

namespace Routing::Bgp {

class CommList;
class CommListSnapshot;

// The properties of standard communities, for ValueList, which explains each row.
struct OV_EXPORT CommListFamily {
  // The list class.
  using List = CommList;
  // One community: 32 bits in host byte order.
  using Element = U32;
  // The table that interns the lists.
  using Table = CommListDedupTable;
  // Path attribute type 8.
  static constexpr auto attrType = BgpPathAttrType::community;
  // The attribute's name in messages, as RFC 1997 has it.
  static constexpr auto* attributeName = "COMMUNITIES";
  // The name of `commIs` in failed assertions.
  static constexpr auto* commIsFunction = "void Routing::Bgp::CommList::commIs(U32)";
  // The name of `comm` in failed assertions.
  static constexpr auto* commFunction = "bool Routing::Bgp::CommList::comm(U32) const";
  // The name of `hash` in failed assertions.
  static constexpr auto* hashFunction = "virtual U32 Routing::Bgp::CommList::hash() const";
  // The name of `compare` in failed assertions.
  static constexpr auto* compareFunction =
      "virtual bool Routing::Bgp::CommList::compare(Dorn::DedupHandle::RawPtrConst) const";
};
extern template class ValueList<CommListFamily>;

// A list of standard communities. OvBgp/List/ValueList.h says how a list is built, interned
// and shared.
//
// A community is 32 bits in host byte order. The upper 16 bits are the AS number, the lower
// 16 bits are assigned by that AS.
class OV_EXPORT CommList final : public ValueList<CommListFamily> {
  KIV_OBJECT(CommList)

 public:
  // An empty list. Users call commListFactory() instead.
  CommList() noexcept = default;

  // Whether NO_EXPORT is a member (RFC 1997). This function and the next two cost one load, because
  // the answers are computed when the list is interned. Requires: the list is interned, or once
  // was.
  bool noExport() const;
  // Whether NO_ADVERTISE is a member (RFC 1997). Requires: as noExport.
  bool noAdvertise() const;
  // Whether NO_EXPORT_SUBCONFED is a member (RFC 1997). Requires: as noExport.
  bool noExportSubconfed() const;

  // The name of `community` in policies and show commands, for example "no-export"; empty
  // if it has no name. The communities of long-lived graceful restart (RFC 9494) have names
  // unless the toggle OvBgpLlgr of "BgpCommon.json" is off. The toggle is read once, on the
  // first call.
  static Kiv::String wellKnownName(U32 community);
  // `community` as "AS:local", both numbers in decimal.
  static Kiv::String getStringValue(U32 community);

  // Appends the members to `to` in list order, separated by one blank. A member that has a name is
  // written by this name, any other member as numbers.
  void appendText(OvFmt::DynamicBufferInterface& to) const;

  // Whether `regex` matches the text of the list. Two texts are tried: all members as
  // numbers, and then, if some member has a name, with names. The whole list is one line.
  // Throws std::bad_alloc; lack of memory is never answered as "no match".
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // A copy of the members that belongs to the caller, who may edit and observe it
  // (OvBgp/Snapshot/CommListSnapshot.h).
  Kiv::Ptr<CommListSnapshot> commSnapshot() const;

  // Rebuilds a list from its image at address `stored` of a shared-memory store. The result
  // is not interned. OvBgp/Store/Destash.h lists the exceptions and what is not checked.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  friend class ValueList<CommListFamily>;
  static Kiv::String textOf(std::span<const U32> comms);
  // Computes the answers of noExport and its two siblings.
  void flagsIs();
};

// A new, empty list, not interned. Throws std::bad_alloc.
OV_EXPORT CommList::Ptr commListFactory();

}  // namespace Routing::Bgp

#endif
