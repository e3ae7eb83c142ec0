#include "tools/bgp-communities/rib/CommunityTables.h"

#include <algorithm>
#include <functional>

#include "Kiv/Type.h"

namespace CommTool {

using namespace Routing::Bgp;

namespace {

// The memory of all objects and tables that the allocator counts by type, in bytes.
U64 bytesAllocated() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

// Whether the members are strictly ascending, so also without duplicates.
template <class Members, class Content = std::identity>
bool ascends(const Members& members, const Content& content = {}) {
  return std::adjacent_find(members.begin(), members.end(), [&](const auto& a, const auto& b) {
           return !(content(a) < content(b));
         }) == members.end();
}

// dedup() does not sort a list that is marked sorted. If that mark is false, the members are
// inserted one by one into `another`, an empty list, which sorts them.
template <class List>
Kiv::Ptr<const List> internPlain(const Kiv::Ptr<List>& list, const Kiv::Ptr<List>& another,
                                 const typename List::Table& table) {
  if (inOrder(*list)) return list->dedup(&table);
  for (const auto& comm : *list->commVectorRawPtr()) another->commIs(comm);
  return another->dedup(&table);
}

}  // namespace

// The members are initialized in the order of their declaration, so bytesAtFirst_ includes the
// tables.
CommunityTables::CommunityTables()
    : parser_(bgpParseExtCommContainerSmFactory()),
      extComms_(extCommDedupTableFactory(parser_->extCommParser())),
      extCommIp6s_(extCommIp6DedupTableFactory(parser_->extCommParser())),
      commLists_(commListDedupTableFactory()),
      largeCommLists_(largeCommListDedupTableFactory()),
      extCommLists_(extCommListDedupTableFactory()),
      extCommIp6Lists_(extCommIp6ListDedupTableFactory()),
      bytesAtFirst_(bytesAllocated()) {}

// dedupAttributeValue() looks a list up by the octets of the attribute, so a list that is interned
// already is found without being built.
RouteCommunities CommunityTables::intern(const CommunityAttributes& attributes) const {
  RouteCommunities lists;
  if (const auto& value = attributes[CommunityKind::standard]) {
    lists.standard = CommList::dedupAttributeValue(commLists_.ptr(), *value);
  }
  if (const auto& value = attributes[CommunityKind::large]) {
    lists.large = LargeCommList::dedupAttributeValue(largeCommLists_.ptr(), *value);
  }
  if (const auto& value = attributes[CommunityKind::extended]) {
    lists.extended = ExtCommList::dedupAttributeValue(extCommLists_.ptr(), extComms_.ptr(), *value);
  }
  if (const auto& value = attributes[CommunityKind::ip6Extended]) {
    lists.ip6Extended =
        ExtCommIp6List::dedupAttributeValue(extCommIp6Lists_.ptr(), extCommIp6s_.ptr(), *value);
  }
  return lists;
}

CommList::PtrConst CommunityTables::intern(const CommList::Ptr& list) const {
  return internPlain(list, commListFactory(), *commLists_);
}

LargeCommList::PtrConst CommunityTables::intern(const LargeCommList::Ptr& list) const {
  return internPlain(list, largeCommListFactory(), *largeCommLists_);
}

// Members of extended lists are objects that were rebuilt as well, so they must be interned before
// the list can be.
ExtCommList::PtrConst CommunityTables::intern(const ExtCommList::Ptr& list) const {
  return ExtCommList::dedupDestashed(extCommLists_.ptr(), extComms_.ptr(), *list);
}

ExtCommIp6List::PtrConst CommunityTables::intern(const ExtCommIp6List::Ptr& list) const {
  return ExtCommIp6List::dedupDestashed(extCommIp6Lists_.ptr(), extCommIp6s_.ptr(), *list);
}

bool inOrder(const CommList& list) {
  return !list.commVectorSorted() || ascends(*list.commVectorRawPtr());
}

bool inOrder(const LargeCommList& list) {
  return !list.commVectorSorted() || ascends(*list.commVectorRawPtr());
}

bool inOrder(const ExtCommList&) { return true; }

bool inOrder(const ExtCommIp6List& list) {
  return !list.commVectorSorted() ||
         ascends(list.comms(), [](const auto& comm) { return comm->getContent(); });
}

// All tables of lists have a common base class.
U32 CommunityTables::lists(CommunityKind kind) const {
  const CommListDedupTableBase* const tables[communityKinds] = {
      commLists_.ptr(), largeCommLists_.ptr(), extCommLists_.ptr(), extCommIp6Lists_.ptr()};
  return tables[indexOf(kind)]->size();
}

U64 CommunityTables::bytes() const { return bytesAllocated() - bytesAtFirst_; }

}  // namespace CommTool
