// What every vector of interned communities is handled with, whatever their kind:
// adding, sorting, looking up, and placing the parts of a list by classification.
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

template <class Value>
using ExtCommVector = KivStash::Vector<Kiv::Ptr<const Value>>;
template <class Value>
using ExtCommContentOf = decltype(std::declval<const Value&>().getContent());

// What becomes a member must be there, and interned once.
template <class Value>
void ExtCommAssertMember(const Kiv::Ptr<const Value>& comm) {
  KIV_ASSERT(comm, "__null != comm", "OvBgp/OvBgpCommunityListImpl");
  KIV_ASSERT(comm->dedupState() != Dorn::dedupHandleStateNeverDeduped(),
             "__null == ( comm ) || "
             "( comm )->dedupState() != Dorn::dedupHandleStateNeverDeduped()",
             "OvBgp/OvBgpCommunityListImpl");
}

// Appends, with a new reference.
template <class Value>
void ExtCommVectorAdd(const Kiv::Ptr<const Value>& comm, ExtCommVector<Value>& comms) {
  ExtCommAssertMember(comm);
  comms.append(comm);
}

// The order of members, and what it is looked up by: contents, or the numbers that they
// are made of, not objects.
template <class Value>
bool ExtCommSortFn(const Kiv::Ptr<const Value>& a, const Kiv::Ptr<const Value>& b) {
  return a->getContent() < b->getContent();
}
template <class Value, class Content>
bool ExtCommSortFnValue(const Kiv::Ptr<const Value>& a, const Content& content) {
  return a->getContent() < ExtCommContentOf<Value>(content);
}
template <class Value>
bool ExtCommCompareFn(const Kiv::Ptr<const Value>& a, const Kiv::Ptr<const Value>& b) {
  return a->getContent() == b->getContent();
}

// Sorts ascending and drops all but the first of equal members.  One pass if they
// ascend strictly already.  References are moved, and only those dropped are counted.
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

// The member of that content, or null; a binary search.  Requires: sorted.
template <class Value, class Content>
Kiv::Ptr<const Value> ExtCommVectorLookup(const ExtCommVector<Value>& comms,
                                          const Content& content) {
  const auto* const at =
      std::lower_bound(comms.begin(), comms.end(), content, ExtCommSortFnValue<Value, Content>);
  if (at == comms.end() || (*at)->getContent() != ExtCommContentOf<Value>(content)) return nullptr;
  return *at;
}

// Puts `list` at the index of its classification, with nulls before it as needed.
template <class List>
void ExtCommListClassificationListIs(KivStash::Vector<Kiv::Ptr<const List>>& lists,
                                     Kiv::Ptr<const List> list) {
  const U32 index = static_cast<U32>(list->classification());
  while (lists.size() <= index) lists.append(nullptr);
  lists[index] = std::move(list);
}

}  // namespace Routing::Bgp

#endif
