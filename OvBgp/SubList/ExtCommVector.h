// Operations on vectors of interned communities, whatever their kind: adding, sorting, looking up,
// and storing the sub-lists of a list by classification.
//
// The free functions ExtComm... have upper-case names because the interface gives them so.
#ifndef OVBGP_SUBLIST_EXTCOMMVECTOR_H
#define OVBGP_SUBLIST_EXTCOMMVECTOR_H

#include <algorithm>
#include <utility>

#include "Dorn/DedupHandle.h"
#include "Kiv/Assert.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "KivStash/Vector.h"

namespace Routing::Bgp {

// The members of a list or sub-list; each element holds a reference to its community.
template <class Value>
using ExtCommVector = KivStash::Vector<Kiv::Ptr<const Value>>;
// The content class of a community class: ExtCommContent or ExtCommIp6Content.
template <class Value>
using ExtCommContentOf = decltype(std::declval<const Value&>().getContent());

// Stops the process unless `comm` may become a member: it is not null and was interned at least
// once. Lists compare their members by address, which is right for interned members only.
template <class Value>
void ExtCommAssertMember(const Kiv::Ptr<const Value>& comm) {
  KIV_ASSERT(comm, "__null != comm", "OvBgp/OvBgpCommunityListImpl");
  KIV_ASSERT(comm->dedupState() != Dorn::dedupHandleStateNeverDeduped(),
             "__null == ( comm ) || "
             "( comm )->dedupState() != Dorn::dedupHandleStateNeverDeduped()",
             "OvBgp/OvBgpCommunityListImpl");
}

// Stops the process unless members may be appended to `list`, a list or sub-list: it is not
// interned and never was. A table finds a list by its members, and other threads may be reading
// them. Sub-lists that are never interned, state `rebuilt`, may grow.
template <class List>
void ExtCommAssertGrowing(const List& list) {
  const Dorn::DedupHandleState state = list.dedupState();
  KIV_ASSERT(
      state == Dorn::dedupHandleStateNeverDeduped() || state == Dorn::DedupHandleState::rebuilt,
      "dedupState() == Dorn::dedupHandleStateNeverDeduped() || "
      "dedupState() == Dorn::DedupHandleState::rebuilt",
      "OvBgp/OvBgpCommunityList");
}

// Appends `comm` to `comms`, which takes a new reference. Requires what ExtCommAssertMember checks.
// Throws std::bad_alloc, and std::length_error if the vector is full.
template <class Value>
void ExtCommVectorAdd(const Kiv::Ptr<const Value>& comm, ExtCommVector<Value>& comms) {
  ExtCommAssertMember(comm);
  comms.append(comm);
}

// The order of members. It is by content, not by address, so that it is the same in every process
// and is the order on the wire.
template <class Value>
bool ExtCommSortFn(const Kiv::Ptr<const Value>& a, const Kiv::Ptr<const Value>& b) {
  return a->getContent() < b->getContent();
}
// The order of ExtCommSortFn between a member and a content; `content` may also be the number of a
// content.
template <class Value, class Content>
bool ExtCommSortFnValue(const Kiv::Ptr<const Value>& a, const Content& content) {
  return a->getContent() < ExtCommContentOf<Value>(content);
}
// Whether both members have the same content.
template <class Value>
bool ExtCommCompareFn(const Kiv::Ptr<const Value>& a, const Kiv::Ptr<const Value>& b) {
  return a->getContent() == b->getContent();
}

// Sorts `comms` ascending and removes all but the first of equal members. Members in strictly
// ascending order, the usual case, cost one pass. Sorting moves the references; only removed
// members have their reference count changed. Allocates nothing.
template <class Value>
void ExtCommVectorSort(ExtCommVector<Value>& comms) {
  const auto outOfOrder =
      std::adjacent_find(comms.begin(), comms.end(),
                         [](const auto& a, const auto& b) { return !ExtCommSortFn<Value>(a, b); });
  if (outOfOrder == comms.end()) return;
  std::sort(comms.begin(), comms.end(), ExtCommSortFn<Value>);
  auto* const end = std::unique(comms.begin(), comms.end(), ExtCommCompareFn<Value>);
  comms.truncate(static_cast<U32>(end - comms.begin()));
}

// The member with this content, or null. A binary search, so `comms` must be sorted; that is not
// checked.
template <class Value, class Content>
Kiv::Ptr<const Value> ExtCommVectorLookup(const ExtCommVector<Value>& comms,
                                          const Content& content) {
  const auto* const at =
      std::lower_bound(comms.begin(), comms.end(), content, ExtCommSortFnValue<Value, Content>);
  if (at == comms.end() || (*at)->getContent() != ExtCommContentOf<Value>(content)) return nullptr;
  return *at;
}

// Stores sub-list `list` at the index of its classification, over the element there. Null elements
// are appended first if `lists` is too short. Requires: `list` is not null.
template <class List>
void ExtCommListClassificationListIs(KivStash::Vector<Kiv::Ptr<const List>>& lists,
                                     Kiv::Ptr<const List> list) {
  const U32 index = static_cast<U32>(list->classification());
  while (lists.size() <= index) lists.append(nullptr);
  lists[index] = std::move(list);
}

}  // namespace Routing::Bgp

#endif
