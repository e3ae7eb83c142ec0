// The common base of the snapshots of extended community lists and of their sub-lists.
//
// A snapshot is a copy of a list's contents that its owner can edit and observe, entry by
// entry. It is independent of the list. Its entries are references to interned values and
// sub-lists, so a snapshot keeps these interned.
#ifndef OVBGP_SNAPSHOT_EXTCOMMSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMSNAPSHOT_H

#include <utility>

#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/NotifyingMap.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/Value/PacketTypes.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::Bgp {

// For each family: the keys of the members, and the names of the type records under which
// entries are counted. Only the two specializations exist.
template <class Family>
struct ExtCommSnapshotKind;

// For communities of eight octets.
template <>
struct OV_EXPORT ExtCommSnapshotKind<ExtCommFamily> {
  // The eight octets as one number in host byte order, type octet uppermost.
  using Key = U64;
  // The key of the value `comm`.
  static Key keyOf(const ExtComm& comm) { return comm.getContent().value(); }
  // The type record of the members of a list snapshot.
  static constexpr char listComm[] = "ExtCommListSnapshot::KivComm";
  // The type record of the sub-lists of a list snapshot.
  static constexpr char listClassificationList[] = "ExtCommListSnapshot::KivClassificationList";
  // The type record of the members of a sub-list snapshot.
  static constexpr char classificationListComm[] = "ExtCommClassificationListSnapshot::KivComm";
};

// For IPv6 address specific communities.
template <>
struct OV_EXPORT ExtCommSnapshotKind<ExtCommIp6Family> {
  // The twenty octets, ordered as list members are.
  using Key = ExtCommIp6Content;
  // The key of the value `comm`.
  static Key keyOf(const ExtCommIp6& comm) { return comm.getContent(); }
  // The type record of the members of a list snapshot.
  static constexpr char listComm[] = "ExtCommIp6ListSnapshot::KivComm";
  // The type record of the sub-lists of a list snapshot.
  static constexpr char listClassificationList[] = "ExtCommIp6ListSnapshot::KivClassificationList";
  // The type record of the members of a sub-list snapshot.
  static constexpr char classificationListComm[] = "ExtCommIp6ClassificationListSnapshot::KivComm";
};

// The map of a snapshot's members, by content, for RouteMap::CommSnapshot.
template <class Family>
struct OV_EXPORT ExtCommSnapshotComm {
  // The content of a member.
  using Key = typename ExtCommSnapshotKind<Family>::Key;
  // A counted pointer to an interned value, never null.
  using Value = Kiv::Ptr<const typename Family::Value>;
  // The key of `comm`, which must not be null.
  static Key keyOf(const Value& comm) { return ExtCommSnapshotKind<Family>::keyOf(*comm); }
};

// The same map with the type record for list snapshots.
template <class Family>
struct OV_EXPORT ExtCommListSnapshotComm : ExtCommSnapshotComm<Family> {
  // The name of the type record.
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::listComm;
};

// The same map with the type record for sub-list snapshots.
template <class Family>
struct OV_EXPORT ExtCommClassificationListSnapshotComm : ExtCommSnapshotComm<Family> {
  // The name of the type record.
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::classificationListComm;
};

// The map of a snapshot's sub-lists, by classification, for Kiv::NotifyingMap.
template <class Family>
struct OV_EXPORT ExtCommListSnapshotClassificationList {
  // The classification of a sub-list.
  using Key = ExtCommClassification;
  // A counted pointer to an interned sub-list, never null.
  using Value = Kiv::Ptr<const typename Family::ClassificationList>;
  // The key of `list`, which must not be null.
  static Key keyOf(const Value& list) { return list->classification(); }
  // The name of the type record.
  static constexpr const auto& memberName = ExtCommSnapshotKind<Family>::listClassificationList;
};

// The part that both kinds of snapshots have in common: the map of the members. It hides the two
// functions of the base that insert, in order to check for null, which no map may contain.
template <class CommTraits>
class OV_EXPORT ExtCommSnapshotComms : public RouteMap::CommSnapshot<CommTraits> {
 public:
  // The content of a member.
  using Key = typename CommTraits::Key;
  // A counted pointer to a member.
  using Value = typename CommTraits::Value;

  // Inserts `comm` under `key`, or replaces the member there. Stops the process if `comm` is null.
  // Throws std::bad_alloc.
  void commIs(const Key& key, Value comm) {
    KIV_ASSERT(comm, "__null != comm", "OvBgp/OvBgpCommunityList");
    RouteMap::CommSnapshot<CommTraits>::commIs(key, std::move(comm));
  }
  // Inserts `comm` under its own content, as above.
  void commIs(const Value& comm) {
    KIV_ASSERT(comm, "__null != comm", "OvBgp/OvBgpCommunityList");
    RouteMap::CommSnapshot<CommTraits>::commIs(comm);
  }
};

// A snapshot of a sub-list: its members, by content, and its classification. The references to
// the members keep these interned. Threads: one at a time; reading counts, too.
template <class Family>
class OV_EXPORT ExtCommClassificationListSnapshotBase
    : public ExtCommSnapshotComms<ExtCommClassificationListSnapshotComm<Family>> {
 public:
  // The classification that was given to the constructor. Members are not checked to have it.
  ExtCommClassification classification() const noexcept { return classification_; }

 protected:
  // An empty snapshot.
  explicit ExtCommClassificationListSnapshotBase(ExtCommClassification classification)
      : classification_(classification) {}

 private:
  const ExtCommClassification classification_;
};

// A snapshot of a list: two maps, one of its members, by content (`comm`), and one of its
// sub-lists, by classification (`classificationList`). The maps are independent: editing one
// does not edit the other. The references keep members and sub-lists interned. Threads: one
// at a time; reading counts, too.
template <class Family>
class OV_EXPORT ExtCommListSnapshotBase
    : public ExtCommSnapshotComms<ExtCommListSnapshotComm<Family>> {
 public:
  // The map of the sub-lists; observers are notified of its changes.
  using ClassificationListMap = Kiv::NotifyingMap<ExtCommListSnapshotClassificationList<Family>>;
  // One entry of the map.
  using KivClassificationList = typename ClassificationListMap::Member;
  // A counted pointer to a sub-list.
  using ClassificationListPtr = typename ClassificationListMap::Value;

  // The attribute number in notifications about `classificationList`.
  static constexpr U32 classificationListAttribute = 131;

  // The sub-lists in ascending order of classification. No sub-list is null. This function and
  // the following ones work as their siblings for `comm` do (RouteMap::CommSnapshot).
  const ClassificationListMap& classificationList() const noexcept { return classificationList_; }
  // Whether there is a sub-list for `classification`.
  bool classificationListHas(ExtCommClassification classification) const {
    return classificationList_.has(classification);
  }
  // Inserts `list` at `classification`, or replaces the sub-list there. Observers are notified
  // if that changes the map. Stops the process if `list` is null. Throws std::bad_alloc.
  void classificationListIs(ExtCommClassification classification, ClassificationListPtr list) {
    KIV_ASSERT(list, "__null != classificationList", "OvBgp/OvBgpCommunityList");
    classificationList_.set(classification, std::move(list));
  }
  // Inserts `list` at its own classification, or replaces the sub-list there. Stops the process
  // if `list` is null. Throws std::bad_alloc.
  void classificationListIs(const ClassificationListPtr& list) {
    KIV_ASSERT(list, "__null != classificationList", "OvBgp/OvBgpCommunityList");
    classificationListIs(list->classification(), list);
  }
  // Deletes the sub-list at `classification`; returns whether there was one. Observers are
  // notified only then.
  bool classificationListDel(ExtCommClassification classification) {
    return classificationList_.del(classification);
  }
  // Deletes the sub-list at `position`. The iterator stays valid and finds the next sub-list.
  // Requires: `position` is not the end.
  bool classificationListDel(const typename ClassificationListMap::Iterator& position) {
    return classificationList_.del(position);
  }
  // Deletes, one by one, the sub-lists that are in the map when the call begins. Observers may
  // release the snapshot meanwhile. Throws std::bad_alloc, and has deleted none then.
  void classificationListDelAll() {
    const Kiv::PtrInterface::PtrConst self(this);
    classificationList_.delAll();
  }

 private:
  ClassificationListMap classificationList_{*this, classificationListAttribute};
};

}  // namespace Routing::Bgp

#endif
