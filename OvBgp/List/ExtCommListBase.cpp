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

// Where the families differ: how a content is read, and what a sub-list is made as.

ExtCommContent contentAt(const U8* octets, ExtCommFamily) noexcept {
  U64 value = 0;
  for (U32 i = 0; i < ExtCommFamily::wireSize; ++i) value = value << 8 | octets[i];
  return ExtCommContent(value);
}

ExtCommIp6Content contentAt(const U8* octets, ExtCommIp6Family) noexcept {
  Ovnet::Ip6Addr::Octets addr{};
  std::copy_n(octets + 2, addr.size(), addr.begin());
  return {octets[0], octets[1], Ovnet::Ip6Addr(addr),
          static_cast<U16>(octets[18] << 8 | octets[19])};
}

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

// The same with members.
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

// Whether they ascend strictly, which nearly all do.
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

// The interned sub-list of these members, which hash to `hash`; made if there is none.
template <class Family>
Kiv::Ptr<const typename Family::ClassificationList> partDedup(
    const typename Family::ListTable& table, ExtCommClassification classification,
    std::span<const typename Family::Value* const> comms, U32 hash) {
  using Part = typename Family::ClassificationList;
  Dorn::DedupHashTable& parts = table.classificationListTable(classification);
  const auto isWanted = [comms](const Part& part) {
    return sameObjects(pointersIn(part.commVector()), comms);
  };
  Dorn::DedupHashTable::Miss miss;
  if (auto found = parts.lookup<const Part>(hash, isWanted, miss)) return found;
  return Kiv::staticPtrCast<const Part>(
      parts.dedup(newClassificationListOf(classification, comms, Family{}), miss));
}

// By index, as the members may move while they are copied to their own end.
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
  if (other) appendAll(commVector_, other->commVector());
}

template <class Family>
void ExtCommListBase<Family>::appendClassificationList(const ClassificationListPtr& other) {
  if (other) appendAll(commVector_, other->commVector());
}

template <class Family>
void ExtCommListBase<Family>::sortComms() {
  ExtCommVectorSort(commVector_);
  self().commVectorSortedIs();
}

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

// A sub-list that is not interned was made here and is this list's own.
template <class Family>
auto ExtCommListBase<Family>::partFor(U32 position, bool dedupMode) -> ClassificationList& {
  const U32 index = static_cast<U32>(commVector_[position]->classification());
  if (index >= classificationListVector_.size() || !classificationListVector_[index]) {
    return newPartFor(position, dedupMode);
  }
  const ClassificationListPtr& part = classificationListVector_[index];
  ASSERT_LIST(!dedupMode || part->dedupState() == Dorn::dedupHandleStateNeverDeduped(),
              "__null == ( _classificationList ) || "
              "( _classificationList )->dedupState() == Dorn::dedupHandleStateNeverDeduped()");
  return const_cast<ClassificationList&>(*part);
}

// The first member of its classification stands at `position`.
template <class Family>
auto ExtCommListBase<Family>::newPartFor(U32 position, bool dedupMode) -> ClassificationList& {
  const ExtCommClassification classification = commVector_[position]->classification();
  const auto part = newClassificationList(classification, Family{});
  part->expectedCommunityCountIs(static_cast<U32>(std::count_if(
      commVector_.begin() + position, commVector_.end(), [classification](const ValuePtr& comm) {
        return comm->classification() == classification;
      })));
  if (!dedupMode) part->neverInterned();
  ExtCommListClassificationListIs<ClassificationList>(classificationListVector_, part);
  return *part;
}

template <class Family>
void ExtCommListBase<Family>::partsDedup(const ListTable* table) {
  for (ClassificationListPtr& part : classificationListVector_) {
    if (!part) continue;
    self().partFinished(*part);
    if (part->dedupState() == Dorn::dedupHandleStateNeverDeduped()) {
      part = const_cast<ClassificationList&>(*part).dedup(table);
    } else {
      ASSERT_LIST(part->commVectorSorted(), "_classificationList->commVectorSorted()");
    }
  }
}

// Without memory for all, the sub-lists go again, so that one may try once more;
// but not once other threads can have found the list.
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

// A list that is found as it stands is in order and has members that are interned, so
// they are looked at only after that.
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

template <class Family>
auto ExtCommListBase<Family>::lookup(const ListTable& table, std::span<const Value* const> comms,
                                     Miss& miss) -> ListPtr {
  return table.dedupTable()->template lookup<const List>(
      addressHash(comms),
      [comms](const List& list) { return sameObjects(pointersIn(list.commVector()), comms); },
      miss);
}

// Each sub-list is looked up before it is made, and what is made has its members with
// it in one piece of memory.
template <class Family>
auto ExtCommListBase<Family>::dedupNew(const ListTable* table, std::span<const Value* const> comms,
                                       const Miss& miss) -> ListPtr {
  const CommGroups<Value> groups(comms);
  if (!groups.isKnown()) return dedupByHand(table, comms);
  std::array<ClassificationListPtr, CommGroups<Value>::most> parts;
  std::array<U32, CommGroups<Value>::most> hashes{};
  U32 count = 0;
  for (U32 index = 0; index < parts.size(); ++index) {
    const auto group = groups[index];
    if (group.empty()) continue;
    hashes[index] = addressHash(group);
    table->classificationListTable(static_cast<ExtCommClassification>(index))
        .prefetch(hashes[index]);
    count = index + 1;
  }
  for (U32 index = 0; index < count; ++index) {
    const auto group = groups[index];
    if (group.empty()) continue;
    parts[index] =
        partDedup<Family>(*table, static_cast<ExtCommClassification>(index), group, hashes[index]);
  }
  const std::size_t behind = comms.size_bytes() + count * sizeof(ClassificationListPtr);
  void* const memory = KivStash::allocateWithArray<List, ValuePtr>(behind);
  Kiv::Ptr<List> list(::new (memory) List, Kiv::adopt);
  list->beginNotifying();
  list->membersAre(comms, std::span(parts).first(count));
  return Kiv::staticPtrCast<const List>(table->dedupTable()->dedup(std::move(list), miss));
}

// Requires: the object has memory for them behind it.  Takes the sub-lists over.
template <class Family>
void ExtCommListBase<Family>::membersAre(std::span<const Value* const> comms,
                                         std::span<ClassificationListPtr> parts) {
  void* const behind = &self() + 1;
  commVector_.attachedIs(referencesMade(behind, comms));
  auto* const partsBehind = static_cast<ClassificationListPtr*>(
      static_cast<void*>(static_cast<const Value**>(behind) + comms.size()));
  std::uninitialized_move(parts.begin(), parts.end(), partsBehind);
  classificationListVector_.attachedIs({partsBehind, parts.size()});
  self().commVectorSortedIs();
  for (const Value* const comm : comms) {
    if (comm->getContent().transitiveFlag()) ++totalTransitiveCommunities_;
    self().commGrouped(*comm, true);
  }
  for (const ClassificationListPtr& part : classificationListVector_) {
    if (part) self().partFinished(*part);
  }
}

// A list that is grouped member by member.
template <class Family>
auto ExtCommListBase<Family>::dedupByHand(const ListTable* table,
                                          std::span<const Value* const> comms) -> ListPtr {
  const auto list = Dorn::notifyingObject<List>();
  list->expectedCommunityCountIs(static_cast<U32>(comms.size()));
  for (const Value* comm : comms) list->commIs(ValuePtr(comm));
  return list->dedup(table);
}

template <class Family>
void ExtCommListBase<Family>::zeroReferencesIs() noexcept {
  if (!commVector_.isAttached()) return Dorn::DedupHandle::zeroReferencesIs();
  // Many of them are used by no other list, and so neither they nor what their tables
  // know of them is in a cache.
  for (const ClassificationListPtr& part : classificationListVector_) {
    __builtin_prefetch(part.ptr());
  }
  for (const ClassificationListPtr& part : classificationListVector_) {
    if (part) part->releasePrefetch();
  }
  const std::size_t behind = commVector_.storageBytes() + classificationListVector_.storageBytes();
  KivStash::destroyWithArray<List, ValuePtr>(self(), behind);
}

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
  // A buffer beyond its step grows by what is asked for: for long lists, once.
  constexpr U32 usualLength = 16;
  if (commVector_.size() > usualLength) to.reserve(std::size_t{commVector_.size()} * usualLength);
  bool isFirst = true;
  for (const ValuePtr& comm : commVector_) {
    if (!isFirst) to.append(' ');
    isFirst = false;
    comm->appendForPolicy(to, format);
  }
}

template <class Family>
U32 ExtCommListBase<Family>::hash() const {
  if (classificationListVector_.empty()) return 0;
  BgpCommon::BgpHashMixImpl mix;
  for (const ClassificationListPtr& part : classificationListVector_) {
    if (part) BgpCommon::addIdentity(mix, part.ptr());
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
