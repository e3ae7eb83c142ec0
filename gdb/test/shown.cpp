// One object of every class that has a pretty-printer. check.py sets a breakpoint in done() and
// prints the variables of main.
#include <array>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"

using namespace Routing::Bgp;

// The empty assembly keeps the compiler from removing the call and the variables before it.
[[gnu::noinline]] void done(const void* last) { asm volatile("" : : "r"(last) : "memory"); }

int main() {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  const auto ip6Values = extCommIp6DedupTableFactory(parser->extCommParser());
  const auto extendedTable = extCommListDedupTableFactory();
  const auto ip6Table = extCommIp6ListDedupTableFactory();
  const auto standardTable = commListDedupTableFactory();
  const auto largeTable = largeCommListDedupTableFactory();

  const std::array<U8, 8> twoStandard{0, 100, 0, 1, 0xFF, 0xFF, 0xFF, 0x01};
  const std::array<U8, 12> oneLarge{0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 3};
  const std::array<U8, 8> color{3, 11, 0, 0, 0, 0, 0, 7};
  const std::array<U8, 20> oneIp6{0, 2, 0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0,
                                  0, 0, 0,    0, 0,    0,    0, 1, 1, 2};

  const ExtCommContent content(0x030B000000000007);
  const auto value = ExtComm::dedupContent(values.ptr(), content);
  const auto standard = CommList::dedupAttributeValue(standardTable.ptr(), twoStandard);
  const auto sharedStandard = standard;
  const auto large = LargeCommList::dedupAttributeValue(largeTable.ptr(), oneLarge);
  const auto extended = ExtCommList::dedupAttributeValue(extendedTable.ptr(), values.ptr(), color);
  const auto part = extended->classificationList(extCommClassificationColor);
  const auto ip6 = ExtCommIp6List::dedupAttributeValue(ip6Table.ptr(), ip6Values.ptr(), oneIp6);
  const CommList::Ptr none;
  const CommList::Ptr empty = commListFactory();
  done(&empty);
  return 0;
}
