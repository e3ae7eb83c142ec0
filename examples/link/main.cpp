// The smallest example of interning: two routes with the same communities share one list.
#include <iostream>

// [embedding]
#include "OvBgp/OvBgpCommunityList.h"

using namespace Routing::Bgp;

CommList::PtrConst listOf(const CommListDedupTable::Ptr& table, std::initializer_list<U32> values) {
  const CommList::Ptr list = commListFactory();
  for (const U32 value : values) list->commIs(value);  // any order, duplicates allowed
  return list->dedup(table.ptr());                     // shared and read-only from now on
}
// [/embedding]

int main() {
  const CommListDedupTable::Ptr table = commListDedupTableFactory();
  const auto first = listOf(table, {0x00640001, 0xFFFFFF01});
  const auto second = listOf(table, {0xFFFFFF01, 0x00640001, 0x00640001});
  std::cout << first->toStrep() << (first == second ? ", shared\n" : ", not shared\n");
  return first == second ? 0 : 1;
}
