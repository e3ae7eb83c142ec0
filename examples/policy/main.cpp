// A policy that selects routes by a community, by the sub-list of route targets, and by a regular
// expression on the text of the list.
#include <array>
#include <iostream>
#include <string_view>

#include "Kiv/Exception.h"
#include "OvBgp/List/PerList.h"
#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace {

using namespace Routing::Bgp;
using Routing::RouteMap::PosixRegex;

int failures = 0;

void check(std::string_view what, bool holds) {
  std::cout << what << ": " << (holds ? "yes" : "no") << "\n";
  failures += holds ? 0 : 1;
}

void standard() {
  const auto table = commListDedupTableFactory();
  const std::array<U8, 12> octets{0xFF, 0xFF, 0xFF, 0x01, 0x7A, 0xC0,
                                  0x04, 0xEC, 0x7A, 0xC0, 0x00, 0x01};
  // [standard]
  const auto list = CommList::dedupAttributeValue(table.ptr(), octets);
  const bool toCustomers = list->comm(31424u << 16 | 1260);  // a binary search
  const bool keep = list->noExport();                        // stored when interned
  const PosixRegex anyOfOurs("(^| )31424:[0-9]+( |$)");      // compiled once per policy
  const bool ours = list->matchCommunitiesRegex(&anyOfOurs);
  const PosixRegex byName("no-export");
  const bool named = list->matchCommunitiesRegex(&byName);
  // [/standard]
  std::cout << list->toStrep() << "\n";
  check("has 31424:1260", toCustomers);
  check("stays in this AS", keep);
  check("has one of ours", ours);
  check("has no-export by name", named);
}

// A policy that is called for each route, with an expression that runs only once per list.
void manyRoutes() {
  const auto table = commListDedupTableFactory();
  const std::array<U8, 8> ours{0x7A, 0xC0, 0x04, 0xEC, 0x7A, 0xC0, 0x00, 0x01};
  const std::array<U8, 4> theirs{0x00, 0x01, 0x04, 0xEC};
  const auto oursList = CommList::dedupAttributeValue(table.ptr(), ours);
  const auto theirsList = CommList::dedupAttributeValue(table.ptr(), theirs);
  const PosixRegex expression("(^| )31424:[0-9]+( |$)");
  int asked = 0;
  // [answers]
  PerList<bool> answers;  // of one policy, for lists of any kind
  const auto matches = [&](const CommList& list) {
    return answers.of(list, [&](const CommList& unknown) {
      ++asked;
      return unknown.matchCommunitiesRegex(&expression);
    });
  };
  // [/answers]
  int taken = 0;
  for (int route = 0; route < 1000; ++route) {
    taken += matches(route % 4 == 0 ? *theirsList : *oursList) ? 1 : 0;
  }
  check("took three routes of four", taken == 750);
  check("asked twice for a thousand routes", asked == 2);
}

void extended() {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  const auto table = extCommListDedupTableFactory();
  const std::array<U8, 16> octets{0x00, 0x02, 0xFD, 0xE8, 0x00, 0x00, 0x00, 0x64,
                                  0x03, 0x0B, 0x00, 0x00, 0x00, 0x00, 0x00, 0x07};
  // [extended]
  const auto list = ExtCommList::dedupAttributeValue(table.ptr(), values.ptr(), octets);
  const PosixRegex target("RT:65000:100|65000:100");
  const bool imported = list->matchCommunitiesRegex(&target);
  // Routes that differ only in their colors share this sub-list. Comparing two of them compares
  // their pointers.
  const auto targets = list->classificationList(extCommClassificationRouteTarget);
  // [/extended]
  std::cout << list->toStrep() << "\n";
  check("has the route target", imported);
  check("has a sub-list of route targets", targets && targets->commVector().size() == 1);
}

void refused() {
  // [refused]
  try {
    const PosixRegex broken("65000:(");
  } catch (const Kiv::RangeException& error) {
    std::cout << "refused: " << error.what() << "\n";
    return;
  }
  // [/refused]
  check("refused", false);
}

}  // namespace

int main() {
  standard();
  manyRoutes();
  extended();
  refused();
  return failures == 0 ? 0 : 1;
}
