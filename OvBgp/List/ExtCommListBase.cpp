#include "OvBgp/List/ExtCommListBase.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string>

#include "BgpCommon/BgpHashIdentity.h"
#include "BgpCommon/BgpHashMixImpl.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Exception.h"
#include "OvBgp/List/ExtCommIp6List.h"
#include "OvBgp/List/ExtCommIp6ListDedupTable.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/List/ExtCommListDedupTable.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"
#include "OvBgp/SubList/Private/SubListMaking.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "OvBgp/ValueTable/ExtCommIp6DedupTable.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {
namespace {

// The families differ in two things: how a content is read from the wire, and which class a
// sub-list has. The following overloads are chosen by the family, their last parameter.

// The eight octets at `octets`, big-endian.
ExtCommContent contentAt(const U8* octets, ExtCommFamily) noexcept {
  U64 value = 0;
  for (U32 i = 0; i < ExtCommFamily::wireSize; ++i) value = value << 8 | octets[i];
  return ExtCommContent(value);
}

// The twenty octets at `octets` (RFC 5701, section 2): type, subtype, address, and the local
// administrator, which is big-endian.
ExtCommIp6Content contentAt(const U8* octets, ExtCommIp6Family) noexcept {
  Ovnet::Ip6Addr::Octets addr{};
  std::copy_n(octets + 2, addr.size(), addr.begin());
  return {octets[0], octets[1], Ovnet::Ip6Addr(addr),
          static_cast<U16>(octets[18] << 8 | octets[19])};
}

// A new, empty sub-list for members that are appended one by one. Route targets need the
// class that can have a notifier, link bandwidths the class that chooses the best of them.
ExtCommClassificationList::Ptr newClassificationList(ExtCommClassification classification,
                                                     ExtCommFamily) {
  switch (classification) {
    case extCommClassificationRouteTarget:
      return rtExtCommClassificationListFactory(classification);
    case extCommClassificationLinkBandwidth:
      return linkBandwidthExtCommClassificationListFactory();
    default:
      return extCommClassificationListFactory(classification);
  }
}

ExtCommIp6ClassificationList::Ptr newClassificationList(ExtCommClassification classification,
                                                        ExtCommIp6Family) {
  return extCommIp6ClassificationListFactory(classification);
}

// A new sub-list of `comms`, which are final, in one piece of memory. The switch is that of
// newClassificationList; the two differ in how the object is allocated.
ExtCommClassificationList::Ptr newClassificationListOf(ExtCommClassification classification,
                                                       std::span<const ExtComm* const> comms,
                                                       ExtCommFamily) {
  ExtCommClassificationList::Ptr list;
  switch (classification) {
    case extCommClassificationRouteTarget:
      list = partWith<RtExtCommClassificationList>(comms, classification);
      break;
    case extCommClassificationLinkBandwidth:
      list = partWith<LinkBandwidthExtCommClassificationList>(comms);
      break;
    default:
      list = partWith<ExtCommClassificationList>(comms, classification);
  }
  list->commsNoted();
  return list;
}

ExtCommIp6ClassificationList::Ptr newClassificationListOf(ExtCommClassification classification,
                                                          std::span<const ExtCommIp6* const> comms,
                                                          ExtCommIp6Family) {
  return partWith<ExtCommIp6ClassificationList>(comms, classification);
}

// Whether `comms` ascend strictly, as most senders arrange them. The loop does not stop early,
// because each member must be checked to be interned, even behind one that is out of order.
template <class Value>
bool membersAscend(std::span<const Kiv::Ptr<const Value>> comms) {
  bool ascends = true;
  const Value* before = nullptr;
  for (const auto& comm : comms) {
    ExtCommAssertMember(comm);
    if (before) ascends &= before->getContent() < comm->getContent();
    before = comm.ptr();
  }
  return ascends;
}

// Returns the interned sub-list of `comms`, whose addressHash is `hash`. Builds it only if the
// lookup misses, so that routes with known sub-lists allocate nothing for them.
template <class Family>
Kiv::Ptr<const typename Family::ClassificationList> subListDedup(
    const typename Family::ListTable& table, ExtCommClassification classification,
    std::span<const typename Family::Value* const> comms, U32 hash) {
  using SubList = typename Family::ClassificationList;
  Dorn::DedupHashTable& subLists = table.classificationListTable(classification);
  const auto isWanted = [comms](const SubList& subList) {
    return sameObjects(pointersIn(subList.commVector()), comms);
  };
  Dorn::DedupHashTable::Miss miss;
  if (auto found = subLists.lookup<const SubList>(hash, isWanted, miss)) return found;
  return Kiv::staticPtrCast<const SubList>(
      subLists.dedup(newClassificationListOf(classification, comms, Family{}), miss));
}

// The number of classifications; only those with a name can be grouped.
constexpr U32 classifications = static_cast<U32>(extCommClassificationOneBeyondLast);
using GroupHashes = std::array<U32, classifications>;
template <class Family>
using SubListArray =
    std::array<Kiv::Ptr<const typename Family::ClassificationList>, classifications>;

// Computes the hash of each group that has members, and prefetches its bucket, so that the
// lookups that follow do not wait for memory one after the other. Returns the highest
// classification present plus one.
template <class Family>
U32 groupsHash(const typename Family::ListTable& table,
               const CommGroups<typename Family::Value>& groups, GroupHashes& hashes) {
  U32 count = 0;
  for (U32 index = 0; index < classifications; ++index) {
    const auto group = groups[index];
    if (group.empty()) continue;
    hashes[index] = addressHash(group);
    table.classificationListTable(static_cast<ExtCommClassification>(index))
        .prefetch(hashes[index]);
    count = index + 1;
  }
  return count;
}

// Finds or builds the sub-list of each group that has members. The others stay null.
template <class Family>
void subListsDedup(const typename Family::ListTable& table,
                   const CommGroups<typename Family::Value>& groups, const GroupHashes& hashes,
                   U32 count, SubListArray<Family>& subLists) {
  for (U32 index = 0; index < count; ++index) {
    const auto group = groups[index];
    if (group.empty()) continue;
    subLists[index] = subListDedup<Family>(table, static_cast<ExtCommClassification>(index), group,
                                           hashes[index]);
  }
}

// Appends `comms` to `to`. They may be the same array, so the loop uses an index: appending can
// move the array, which would invalidate iterators.
template <class Value>
void appendAll(ExtCommVector<Value>& to, const ExtCommVector<Value>& comms) {
  const U32 count = comms.size();
  for (U32 i = 0; i < count; ++i) to.append(comms[i]);
}

}  // namespace

template <class Family>
ExtCommListBase<Family>::~ExtCommListBase() = default;

template <class Family>
void ExtCommListBase<Family>::append(const ListPtr& other) {
  ExtCommAssertGrowing(*this);
  if (other) appendAll(commVector_, other->commVector());
}

template <class Family>
void ExtCommListBase<Family>::appendClassificationList(const ClassificationListPtr& other) {
  ExtCommAssertGrowing(*this);
  if (other) appendAll(commVector_, other->commVector());
}

// The flag is written only if it changes, because other threads may read it in an interned list.
template <class Family>
void ExtCommListBase<Family>::sortComms() {
  ExtCommVectorSort(commVector_);
  if (!self().commVectorSorted()) self().commVectorSortedIs();
}

// Members are appended to their sub-lists in sorted order, so each sub-list is sorted, too.
template <class Family>
void ExtCommListBase<Family>::createClassificationListVector(bool dedupMode) {
  sortComms();
  classificationListVector_.reserve(static_cast<U32>(extCommClassificationOneBeyondLast));
  totalTransitiveCommunities_ = 0;
  self().groupingStarts();
  for (U32 i = 0; i < commVector_.size(); ++i) {
    const ValuePtr& comm = commVector_[i];
    partFor(i, dedupMode).commIs(comm);
    if (dedupMode && comm->getContent().transitiveFlag()) ++totalTransitiveCommunities_;
    self().commGrouped(*comm, dedupMode);
  }
}

// The const_cast is sound: until a list is interned, its sub-lists are its own, made by
// newPartFor. The assertion catches a list that is grouped after it was interned.
template <class Family>
auto ExtCommListBase<Family>::partFor(U32 position, bool dedupMode) -> ClassificationList& {
  const U32 index = static_cast<U32>(commVector_[position]->classification());
  if (index >= classificationListVector_.size() || !classificationListVector_[index]) {
    return newPartFor(position, dedupMode);
  }
  const ClassificationListPtr& subList = classificationListVector_[index];
  ASSERT_LIST(!dedupMode || subList->dedupState() == Dorn::dedupHandleStateNeverDeduped(),
              "__null == ( _classificationList ) || "
              "( _classificationList )->dedupState() == Dorn::dedupHandleStateNeverDeduped()");
  return const_cast<ClassificationList&>(*subList);
}

// The member at `position` is the first one of its classification. The members of a
// classification are counted first, so that the sub-list's array is allocated once.
template <class Family>
auto ExtCommListBase<Family>::newPartFor(U32 position, bool dedupMode) -> ClassificationList& {
  const ExtCommClassification classification = commVector_[position]->classification();
  const auto subList = newClassificationList(classification, Family{});
  subList->expectedCommunityCountIs(static_cast<U32>(std::count_if(
      commVector_.begin() + position, commVector_.end(), [classification](const ValuePtr& comm) {
        return comm->classification() == classification;
      })));
  if (!dedupMode) subList->neverInterned();
  ExtCommListClassificationListIs<ClassificationList>(classificationListVector_, subList);
  return *subList;
}

// Grouping has just made the sub-lists, so all of them are new, and each one is replaced by the
// interned sub-list with the same members. The other branch only guards against an interned
// sub-list that is not sorted.
template <class Family>
void ExtCommListBase<Family>::partsDedup(const ListTable* table) {
  for (ClassificationListPtr& subList : classificationListVector_) {
    if (!subList) continue;
    self().partFinished(*subList);
    if (subList->dedupState() == Dorn::dedupHandleStateNeverDeduped()) {
      subList = const_cast<ClassificationList&>(*subList).dedup(table);
    } else {
      ASSERT_LIST(subList->commVectorSorted(), "_classificationList->commVectorSorted()");
    }
  }
}

// On an exception, the sub-lists are dropped, so that dedup() can be retried. But if the list
// was in the table already, other threads may have found it, so nothing of it may change.
template <class Family>
auto ExtCommListBase<Family>::dedup(const ListTable* table) -> ListPtr {
  ASSERT_LIST(this->dedupState() == Dorn::dedupHandleStateNeverDeduped(),
              "__null == ( this ) || "
              "( this )->dedupState() == Dorn::dedupHandleStateNeverDeduped()");
  try {
    createClassificationListVector(true);
    partsDedup(table);
    shrink(commVector_);
    return Kiv::staticPtrCast<const List>(table->dedup(Dorn::DedupHandle::Ptr(this)));
  } catch (...) {
    if (this->dedupState() == Dorn::dedupHandleStateNeverDeduped()) {
      classificationListVector_.clear();
    }
    throw;
  }
}

// Looks up `comms` in the given order first. A match proves that they are sorted and interned,
// because the members of the stored list are. Only after a miss are they checked; members
// that do not ascend are sorted and looked up a second time.
template <class Family>
auto ExtCommListBase<Family>::dedupComms(const ListTable* table, std::span<const ValuePtr> comms)
    -> ListPtr {
  const auto pointers = pointersOf(comms);
  Miss miss;
  if (ListPtr found = lookup(*table, pointers, miss)) return found;
  if (membersAscend(comms)) return dedupNew(table, pointers, miss);
  const CommsRoom<const Value*> room(comms.size());
  std::copy(pointers.begin(), pointers.end(), room.comms().begin());
  const auto members = sortedUnique(room.comms());
  if (ListPtr found = lookup(*table, members, miss)) return found;
  return dedupNew(table, members, miss);
}

// Compares addresses only: interned values with equal contents are one object.
template <class Family>
auto ExtCommListBase<Family>::lookup(const ListTable& table, std::span<const Value* const> comms,
                                     Miss& miss) -> ListPtr {
  return table.dedupTable()->template lookup<const List>(
      addressHash(comms),
      [comms](const List& list) { return sameObjects(pointersIn(list.commVector()), comms); },
      miss);
}

// Sub-lists come first, because the list holds references to them. Then the list, its members
// and its sub-lists' pointers are allocated as one piece of memory.
template <class Family>
auto ExtCommListBase<Family>::dedupNew(const ListTable* table, std::span<const Value* const> comms,
                                       const Miss& miss) -> ListPtr {
  const CommGroups<Value> groups(comms);
  if (!groups.isKnown()) return dedupByHand(table, comms);
  GroupHashes hashes{};
  const U32 count = groupsHash<Family>(*table, groups, hashes);
  SubListArray<Family> subLists;
  subListsDedup<Family>(*table, groups, hashes, count, subLists);
  const std::size_t behind = comms.size_bytes() + count * sizeof(ClassificationListPtr);
  void* const memory = KivStash::allocateWithArray<List, ValuePtr>(behind);
  Kiv::Ptr<List> list(::new (memory) List, Kiv::adopt);
  list->beginNotifying();
  list->membersAre(comms, std::span(subLists).first(count));
  return Kiv::staticPtrCast<const List>(table->dedupTable()->dedup(std::move(list), miss));
}

// Requires: the memory behind the object has room for both arrays. Moves from `subLists`, so
// that their reference counts do not change. After the arrays, it computes what the list
// records of its members, as grouping does for a list that was built with commIs.
template <class Family>
void ExtCommListBase<Family>::membersAre(std::span<const Value* const> comms,
                                         std::span<ClassificationListPtr> subLists) {
  void* const behind = &self() + 1;
  commVector_.attachedIs(referencesMade(behind, comms));
  auto* const subListsBehind = static_cast<ClassificationListPtr*>(
      static_cast<void*>(static_cast<const Value**>(behind) + comms.size()));
  std::uninitialized_move(subLists.begin(), subLists.end(), subListsBehind);
  classificationListVector_.attachedIs({subListsBehind, subLists.size()});
  self().commVectorSortedIs();
  for (const Value* const comm : comms) {
    if (comm->getContent().transitiveFlag()) ++totalTransitiveCommunities_;
    self().commGrouped(*comm, true);
  }
  for (const ClassificationListPtr& subList : classificationListVector_) {
    if (subList) self().partFinished(*subList);
  }
}

// The rules of a host may give classifications without a name. The fast way indexes its groups
// by classification and cannot hold them, so such a list is built as by a user.
template <class Family>
auto ExtCommListBase<Family>::dedupByHand(const ListTable* table,
                                          std::span<const Value* const> comms) -> ListPtr {
  const auto list = Dorn::notifyingObject<List>();
  list->expectedCommunityCountIs(static_cast<U32>(comms.size()));
  for (const Value* comm : comms) list->commIs(ValuePtr(comm));
  return list->dedup(table);
}

// A list in one piece of memory must be freed with the size of the whole piece. Before that,
// the memory that its sub-lists' releases will touch is prefetched: many sub-lists belong to
// this list only, so neither they nor their buckets are in a cache.
template <class Family>
void ExtCommListBase<Family>::zeroReferencesIs() noexcept {
  if (!commVector_.isAttached()) return Dorn::DedupHandle::zeroReferencesIs();
  for (const ClassificationListPtr& subList : classificationListVector_) {
    __builtin_prefetch(subList.ptr());
  }
  for (const ClassificationListPtr& subList : classificationListVector_) {
    if (subList) subList->releasePrefetch();
  }
  const std::size_t behind = commVector_.storageBytes() + classificationListVector_.storageBytes();
  KivStash::destroyWithArray<List, ValuePtr>(self(), behind);
}

// The room keeps a reference to each value until the list is found or built. Without it,
// another thread could release a value that is in no other list.
template <class Family>
auto ExtCommListBase<Family>::dedupAttributeValue(const ListTable* table, const ValueTable* values,
                                                  std::span<const U8> octets) -> ListPtr {
  if (octets.size() % Family::wireSize != 0) {
    throw Kiv::RangeException("length of " + Kiv::String(Family::attributeName) +
                              " is no multiple of " + std::to_string(Family::wireSize) + ": " +
                              std::to_string(octets.size()));
  }
  const CommsRoom<ValuePtr> room(octets.size() / Family::wireSize);
  const U8* at = octets.data();
  for (ValuePtr& comm : room.comms()) {
    comm = Value::dedupContent(values, contentAt(at, Family{}));
    at += Family::wireSize;
  }
  return dedupComms(table, std::span<const ValuePtr>(room.comms()));
}

template <class Family>
auto ExtCommListBase<Family>::dedupDestashed(const ListTable* table, const ValueTable* values,
                                             const List& destashed) -> ListPtr {
  const ExtCommVector<Value>& comms = destashed.commVector();
  const CommsRoom<ValuePtr> room(comms.size());
  std::transform(comms.begin(), comms.end(), room.comms().begin(), [values](const ValuePtr& comm) {
    return Value::dedupContent(values, comm->getContent());
  });
  return dedupComms(table, std::span<const ValuePtr>(room.comms()));
}

template <class Family>
U32 ExtCommListBase<Family>::totalCommunities() const {
  ASSERT_LIST(self().commVectorSorted(), "commVectorSorted()");
  return commVector_.size();
}

template <class Family>
auto ExtCommListBase<Family>::classificationList(ExtCommClassification classification) const
    -> ClassificationListPtr {
  ASSERT_LIST(this->dedupState() != Dorn::dedupHandleStateNeverDeduped(),
              "__null == ( this ) || "
              "( this )->dedupState() != Dorn::dedupHandleStateNeverDeduped()");
  const U32 index = static_cast<U32>(classification);
  if (index >= classificationListVector_.size()) return nullptr;
  return classificationListVector_[index];
}

template <class Family>
Kiv::String ExtCommListBase<Family>::toStrep() const {
  return textOf(*this);
}

template <class Family>
void ExtCommListBase<Family>::writeText(std::ostream& out) const {
  write(out, "[ ");
  writeJoined(out, commVector_);
  write(out, " ]");
}

template <class Family>
void ExtCommListBase<Family>::appendPolicyText(OvFmt::DynamicBufferInterface& to,
                                               typename Value::StrepFormat format) const {
  // A large buffer grows by exactly the requested size, so a long list reserves at once what
  // its members usually take.
  constexpr U32 usualLength = 16;
  if (commVector_.size() > usualLength) to.reserve(std::size_t{commVector_.size()} * usualLength);
  bool isFirst = true;
  for (const ValuePtr& comm : commVector_) {
    if (!isFirst) to.append(' ');
    isFirst = false;
    comm->appendPolicyText(to, format);
  }
}

// A list that was never grouped hashes like the empty list.
template <class Family>
U32 ExtCommListBase<Family>::hash() const {
  if (classificationListVector_.empty()) return 0;
  BgpCommon::BgpHashMixImpl mix;
  for (const ClassificationListPtr& subList : classificationListVector_) {
    if (subList) BgpCommon::addIdentity(mix, subList.ptr());
  }
  return mix.hash();
}

template <class Family>
bool ExtCommListBase<Family>::compare(Dorn::DedupHandle::RawPtrConst other) const {
  return samePointers(classificationListVector_,
                      static_cast<const List*>(other)->classificationListVector());
}

template <class Family>
bool ExtCommListBase<Family>::compareByContent(const Dorn::DedupContentHandle& key) const {
  return sameObjects(pointersIn(commVector_),
                     static_cast<const ExtCommListContent<Value>&>(key).comms());
}

template <class Family>
U32 ExtCommListBase<Family>::probeHash() const {
  return addressHash(pointersIn(commVector_));
}

template class ExtCommListBase<ExtCommFamily>;
template class ExtCommListBase<ExtCommIp6Family>;

}  // namespace Routing::Bgp
