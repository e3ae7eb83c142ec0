// The list of standard communities that a path carries (RFC 1997).
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

struct OV_EXPORT CommListFamily {
  using List = CommList;
  using Element = U32;
  using Table = CommListDedupTable;
  static constexpr auto attrType = BgpPathAttrType::community;
  static constexpr auto* attributeName = "COMMUNITIES";
  static constexpr auto* commIsFunction = "void Routing::Bgp::CommList::commIs(U32)";
  static constexpr auto* commFunction = "bool Routing::Bgp::CommList::comm(U32) const";
  static constexpr auto* hashFunction = "virtual U32 Routing::Bgp::CommList::hash() const";
  static constexpr auto* compareFunction =
      "virtual bool Routing::Bgp::CommList::compare(Dorn::DedupHandle::RawPtrConst) const";
};
extern template class ValueList<CommListFamily>;

// How a list is built, interned and shared is said in OvBgp/List/ValueList.h.
//
// A community is 32 bits in host byte order: AS part above, local part below.
class OV_EXPORT CommList final : public ValueList<CommListFamily> {
  KIV_OBJECT(CommList)

 public:
  CommList() noexcept = default;

  // Whether the list has NO_EXPORT, NO_ADVERTISE, NO_EXPORT_SUBCONFED (RFC 1997);
  // noted when the list is interned.  Requires: interned once.
  bool noExport() const;
  bool noAdvertise() const;
  bool noExportSubconfed() const;

  // The name under which policies and show commands know `community`; empty if it
  // has none.  The long-lived graceful restart communities (RFC 9494) have names
  // unless the toggle OvBgpLlgr of "BgpCommon.json" is off, read on the first call.
  static Kiv::String wellKnownName(U32 community);
  // "AS:local", both in decimal.
  static Kiv::String getStringValue(U32 community);

  // Appends the communities in list order, by name or as numbers, one blank between.
  void appendText(OvFmt::DynamicBufferInterface& to) const;

  // Whether `regex` matches the list's text, in numbers or else with names.  The
  // expression sees the whole list as one line.
  bool matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const;

  // The communities as an ordered collection of the caller's own, to read, edit and
  // watch (OvBgp/Snapshot/CommListSnapshot.h).
  Kiv::Ptr<CommListSnapshot> commSnapshot() const;

  // The list that the writer of a store has at `stored`, rebuilt, not yet interned;
  // OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  friend class ValueList<CommListFamily>;
  static Kiv::String textOf(std::span<const U32> comms);
  void flagsIs();
};

// A new, empty list.  Throws std::bad_alloc.
OV_EXPORT CommList::Ptr commListFactory();

}  // namespace Routing::Bgp

#endif
