#include "tools/bgp-communities/CommunityTables.h"

#include "Kiv/Type.h"

namespace CommTool {

using namespace Routing::Bgp;

namespace {

U64 bytesAllocated() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

}  // namespace

CommunityTables::CommunityTables()
    : parser_(bgpParseExtCommContainerSmFactory()),
      extComms_(extCommDedupTableFactory(parser_->extCommParser())),
      extCommIp6s_(extCommIp6DedupTableFactory(parser_->extCommParser())),
      commLists_(commListDedupTableFactory()),
      largeCommLists_(largeCommListDedupTableFactory()),
      extCommLists_(extCommListDedupTableFactory()),
      extCommIp6Lists_(extCommIp6ListDedupTableFactory()),
      bytesAtFirst_(bytesAllocated()) {}

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

U32 CommunityTables::lists(CommunityKind kind) const {
  const CommListDedupTableBase* const tables[communityKinds] = {
      commLists_.ptr(), largeCommLists_.ptr(), extCommLists_.ptr(), extCommIp6Lists_.ptr()};
  return tables[indexOf(kind)]->size();
}

U64 CommunityTables::bytes() const { return bytesAllocated() - bytesAtFirst_; }

}  // namespace CommTool
