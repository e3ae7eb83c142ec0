// What the snapshots of extended community lists of eight octets and of IPv6, and
// those of their sub-lists, have in common.
#ifndef OVBGP_SNAPSHOT_EXTCOMMSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMSNAPSHOT_H

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/NotifyingMap.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/Value/PacketTypes.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::Bgp {

// A family's keys, and the names of its entries' type records.
template <class Family>
struct ExtCommSnapshotKind;

template <>
struct OV_EXPORT ExtCommSnapshotKind<ExtCommFamily> {
  using Key = U64;
  static Key keyOf(const ExtComm& comm) { return comm.getContent().value(); }
  static constexpr char listComm[] = "ExtCommListSnapshot::KivComm";
  static constexpr char listClassificationList[] = "ExtCommListSnapshot::KivClassificationList";
  static constexpr char classificationListComm[] = "ExtCommClassificationListSnapshot::KivComm";
};

template <>
struct OV_EXPORT ExtCommSnapshotKind<ExtCommIp6Family> {
  using Key = ExtCommIp6Content;
  static Key keyOf(const ExtCommIp6& comm) { return comm.getContent(); }
  static constexpr char listComm[] = "ExtCommIp6ListSnapshot::KivComm";
  static constexpr char listClassificationList[] = "ExtCommIp6ListSnapshot::KivClassificationList";
  static constexpr char classificationListComm[] = "ExtCommIp6ClassificationListSnapshot::KivComm";
};

// Communities by their contents.
template <class Family>
struct OV_EXPORT ExtCommSnapshotComm {
  using Key = typename ExtCommSnapshotKind<Family>::Key;
  using Value = Kiv::Ptr<const typename Family::Value>;
  static Key keyOf(const Value& comm) { return ExtCommSnapshotKind<Family>::keyOf(*comm); }
};

template <class Family>
struct OV_EXPORT ExtCommListSnapshotComm : ExtCommSnapshotComm<Family> {
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::listComm;
};

template <class Family>
struct OV_EXPORT ExtCommClassificationListSnapshotComm : ExtCommSnapshotComm<Family> {
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::classificationListComm;
};

// Sub-lists by their classifications.
template <class Family>
struct OV_EXPORT ExtCommListSnapshotClassificationList {
  using Key = ExtCommClassification;
  using Value = Kiv::Ptr<const typename Family::ClassificationList>;
  static Key keyOf(const Value& list) { return list->classification(); }
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::listClassificationList;
};

// A copy of a sub-list. Its references keep the members interned.
template <class Family>
class OV_EXPORT ExtCommClassificationListSnapshotBase
    : public RouteMap::CommSnapshot<ExtCommClassificationListSnapshotComm<Family>> {
 public:
  ExtCommClassification classification() const noexcept { return classification_; }

 protected:
  explicit ExtCommClassificationListSnapshotBase(ExtCommClassification classification)
      : classification_(classification) {}

 private:
  const ExtCommClassification classification_;
};

// A copy of a list: its members and, apart from them, its sub-lists. Editing one of
// the two collections does not edit the other. The references keep members and
// sub-lists interned.
template <class Family>
class OV_EXPORT ExtCommListSnapshotBase
    : public RouteMap::CommSnapshot<ExtCommListSnapshotComm<Family>> {
 public:
  using ClassificationListMap = Kiv::NotifyingMap<ExtCommListSnapshotClassificationList<Family>>;
  using KivClassificationList = typename ClassificationListMap::Member;
  using ClassificationListPtr = typename ClassificationListMap::Value;

  // The number under which observers hear of `classificationList`.
  static constexpr U32 classificationListAttribute = 131;

  // The operations of `classificationList` are those of `comm`.  No list is null.
  const ClassificationListMap& classificationList() const noexcept { return classificationList_; }
  bool classificationListHas(ExtCommClassification classification) const {
    return classificationList_.has(classification);
  }
  void classificationListIs(ExtCommClassification classification, ClassificationListPtr list) {
    classificationList_.set(classification, std::move(list));
  }
  void classificationListIs(const ClassificationListPtr& list) {
    classificationListIs(list->classification(), list);
  }
  bool classificationListDel(ExtCommClassification classification) {
    return classificationList_.del(classification);
  }
  bool classificationListDel(const typename ClassificationListMap::Iterator& position) {
    return classificationList_.del(position);
  }
  void classificationListDelAll() {
    const Kiv::PtrInterface::PtrConst self(this);
    classificationList_.delAll();
  }

 private:
  ClassificationListMap classificationList_{*this, classificationListAttribute};
};

}  // namespace Routing::Bgp

#endif
