// Lists and values of every kind when memory runs out while they are interned, copied or
// printed.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <set>
#include <sstream>

#include "Kiv/Trace.h"
#include "OvFmt/DynamicBuffer.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "tests/shortage/Sweep.h"
#include "tests/shortage/World.h"

namespace Shortage {
namespace {

using Row = Operation<LivingWorld>;

// --- Interning ---

template <class List>
bool fromAttribute(LivingWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto list = Kind<List>::intern(world, held.shortOctets);
  return membersOf(*list).size() == held.shortCount && list->isDeduped() && list != held.list;
}

template <class List>
bool fromLongAttribute(LivingWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto list = Kind<List>::intern(world, held.longOctets);
  return membersOf(*list).size() == held.longCount && list->isDeduped();
}

// A list, not interned, of all held members but the last, in descending order and each twice.
template <class List>
Kiv::Ptr<List> unsorted(const LivingWorld& world) {
  const auto list = Kind<List>::make();
  const auto& members = membersOf(*world.held<List>().list);
  for (int times = 0; times < 2; ++times) {
    for (U32 i = members.size() - 1; i-- != 0;) list->commIs(members[i]);
  }
  return list;
}

// If `dedup` throws, the list keeps its members, perhaps sorted, and a second `dedup` works.
template <class List>
bool byHand(LivingWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto list = unsorted<List>(world);
  Kiv::Ptr<const List> interned;
  try {
    interned = list->dedup(Kind<List>::table(world));
  } catch (const std::bad_alloc&) {
    if (list->isDeduped() || membersOf(*list).size() < held.shortCount - 1) return false;
    interned = list->dedup(Kind<List>::table(world));
  }
  return interned == list.ptr() && list->isDeduped() &&
         membersOf(*list).size() == held.shortCount - 1;
}

template <class List>
bool ofMembers(LivingWorld& world) {
  const auto& members = membersOf(*world.held<List>().list);
  const std::array<typename List::ValuePtr, 4> comms{members[3], members[1], members[3],
                                                     members[0]};
  const auto list = List::dedupComms(Kind<List>::table(world), comms);
  return list->commVector().size() == 3 && list->isDeduped();
}

// Interns so many values, one by one, that the table grows more than once.
template <class List, class Value, class Content>
bool manyValues(LivingWorld& world, Content (*content)(U32)) {
  std::array<typename Value::PtrConst, 60> values;
  for (U32 i = 0; i < values.size(); ++i) {
    values[i] = Value::dedupContent(Kind<List>::values(world), content(i));
  }
  bool right = true;
  for (U32 i = 0; i < values.size(); ++i) right &= values[i]->getContent() == content(i);
  return right;
}
bool extendedValues(LivingWorld& world) {
  return manyValues<ExtCommList, ExtComm, ExtCommContent>(
      world, [](U32 i) { return ExtCommContent(0x0002'fde9'0000'0000 + i); });
}
bool ip6Values(LivingWorld& world) {
  return manyValues<ExtCommIp6List, ExtCommIp6, ExtCommIp6Content>(
      world, [](U32 i) { return ExtCommIp6Content(0, 2, Ovnet::Ip6Addr(), static_cast<U16>(i)); });
}

// --- Copies and texts ---

template <class List>
bool snapshot(LivingWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto copy = held.list->commSnapshot();
  const Counter<typename std::remove_cvref_t<decltype(*copy)>> counter(copy);
  bool right = copy->comm().size() == held.shortCount;
  right &= copy->commDel(copy->comm().begin());
  copy->commDelAll();
  if constexpr (requires { copy->classificationListDelAll(); }) {
    right &= !copy->classificationList().empty();
    copy->classificationListDelAll();
    right &= copy->classificationList().empty();
  }
  return right && copy->comm().empty() && counter.heard >= held.shortCount;
}

template <class List>
bool partSnapshots(LivingWorld& world) {
  bool right = true;
  for (const auto& part : world.held<List>().list->classificationListVector()) {
    if (!part) continue;
    const auto copy = part->commSnapshot();
    right &= copy->comm().size() == part->commVector().size();
  }
  return right;
}

// The text must be the same as when there was memory, or the operation must throw.
template <class List, Kiv::String (*textOf)(const List&)>
bool text(LivingWorld& world) {
  const List& list = *world.held<List>().list;
  static const Kiv::String expected = textOf(list);
  return textOf(list) == expected;
}

template <class List>
Kiv::String strep(const List& list) {
  return list.toStrep();
}
template <class List>
Kiv::String attribute(const List& list) {
  if constexpr (requires { list.serialize(); }) {
    return list.serialize();
  } else if constexpr (requires { list.serialize(true); }) {
    return list.serialize(true);
  } else {
    return list.serialize(ExtCommList::serialization(true, false, false));
  }
}
template <class List>
constexpr auto listText = text<List, strep<List>>;
template <class List>
constexpr auto listAttribute = text<List, attribute<List>>;
Kiv::String partTexts(const ExtCommList& list) {
  Kiv::String all;
  for (const auto& part : list.classificationListVector()) {
    if (part) all += part->toStrep();
  }
  return all;
}
Kiv::String valueTexts(const ExtCommList& list) {
  Kiv::String all;
  for (const auto& comm : list.commVector()) {
    all += comm->toStrep();
    for (const U8 format : std::array<U8, 4>{0x01, 0x02, 0x06, 0x16}) {
      all += comm->toStrepForPolicy(ExtComm::StrepFormat(format));
    }
    all += comm->toStrepForUI(true, true, false) + comm->toStrepForUI(false, false, true);
  }
  return all;
}
Kiv::String ip6ValueTexts(const ExtCommIp6List& list) {
  Kiv::String all = list.commsStringForm();
  for (const auto& comm : list.commVector()) {
    all += comm->toStrep() + comm->toStrepForPolicy(ExtCommIp6::StrepFormat());
  }
  return all;
}

// Serializes more members than the attribute writer has room for on the stack.
template <class List>
bool longAttribute(LivingWorld& world) {
  constexpr U32 count = 1100;
  const auto list = Kind<List>::intern(world, wire(0, count, Kind<List>::memberOctets));
  const Kiv::String octets = attribute(*list);
  return octets.size() == 4 + count * Kind<List>::memberOctets(0).size();
}

// If a stream cannot store the text, it must not be good() afterwards.
template <class List>
bool streamed(LivingWorld& world) {
  const List* const list = world.held<List>().list.ptr();
  static const Kiv::String expected = (std::ostringstream() << list).str();
  std::ostringstream out;
  out << list;
  return !out.good() || out.str() == expected;
}

template <class List>
bool matched(LivingWorld& world) {
  const Routing::RouteMap::PosixRegex some("(65000|rt|[Cc]olor|target)[^ ]*[0-9]( |$)");
  const Routing::RouteMap::PosixRegex none("never in any text of a community");
  const List& list = *world.held<List>().list;
  static const bool expected = list.matchCommunitiesRegex(&some);
  return list.matchCommunitiesRegex(&some) == expected && !list.matchCommunitiesRegex(&none);
}

bool showCache(LivingWorld&) {
  const auto cache = BgpShowCli::extCommCacheFactory();
  for (U64 i = 0; i < 20; ++i) cache->insert(i, "a text that is longer than a string", i % 2 == 0);
  return !cache->lookup(3, false).empty() && !cache->lookup(4, true).empty();
}

// --- Observers ---

class SetObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(SetObserver)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    present.insert(handle.ptr());
  }
  void handleRemove(Dorn::DedupHandle* handle) override { present.erase(handle); }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {
    present.clear();
  }

  std::set<const Dorn::DedupHandle*> present;
};
KIV_OBJECT_DEFINE(SetObserver)

// Registers an observer with a table in use, interns another list, and stops the observer. If
// registering throws, the observer is destroyed unregistered.
template <class List>
bool tableObserved(LivingWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto& table = Kind<List>::table(world)->dedupTable();
  const Kiv::Ptr<SetObserver> observer(new SetObserver);
  table->lifeTimeNotifieeIs(observer);
  bool right = observer->present.size() == 1 && observer->present.contains(held.list.ptr());
  try {
    const auto list = Kind<List>::intern(world, held.shortOctets);
    right &= observer->present.size() == 2 && observer->present.contains(list.ptr());
  } catch (const std::bad_alloc&) {
    right &= observer->present.size() == 1;
    table->lifeTimeNotifieeDel();
    if (!right || !observer->present.empty()) return false;
    throw;
  }
  right &= observer->present.size() == 1;
  table->lifeTimeNotifieeDel();
  return right && observer->present.empty();
}

// Stops and restarts the observer that maintains the sets of route targets, in a new table.
bool targetSetsListed(LivingWorld& world) {
  const auto lists = extCommListDedupTableFactory();
  const auto& listed = lists->notifyingRtExtCommListCollection()->rtExtCommList();
  const auto list = ExtCommList::dedupAttributeValue(lists.ptr(), world.values.ptr(),
                                                     spanOf(world.extComms.heldOctets));
  bool right = listed.size() == 1;
  lists->rtExtCommClassificationListDedupTable()->lifeTimeNotifieeDel();
  right &= listed.size() == 0;
  try {
    lists->rtExtCommClassificationListDedupTable()->lifeTimeNotifieeIs(
        lists->rtExtCommListLifeTimeNotifiee());
  } catch (const std::bad_alloc&) {
    if (listed.size() != 0) return false;
    throw;
  }
  return right && listed.size() == 1;
}

bool manyListeners(LivingWorld& world) {
  const auto& list = world.values->producerRtList();
  std::array<std::optional<Counter<NotifyingRouteTargetList>>, 9> counters;
  for (auto& counter : counters) counter.emplace(list);
  const auto value = ExtComm::dedupContent(world.values.ptr(), ExtCommContent(0x0002'0001'0000));
  return std::ranges::all_of(counters, [](const auto& counter) { return counter->heard <= 1; });
}

// Destroys the tables while their lists are still held, and then the lists.
bool tablesGo(LivingWorld&) {
  std::optional<LivingWorld> world(std::in_place);
  const auto comms = world->comms.list;
  const auto extComms = world->extComms.list;
  const auto ip6Comms = world->ip6Comms.list;
  const auto targets = world->values->producerRtList();
  world.reset();
  return !comms->isDeduped() && !extComms->isDeduped() && !ip6Comms->isDeduped() &&
         targets->rt().size() == 0 && extComms->comms() == HeldList<ExtCommList>::shortCount;
}

// --- The rule tree ---

bool parserPutTogether(LivingWorld& world) {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto content = world.extComms.list->commVector()[0]->getContent();
  return parser->extCommParser()->parseExtendedCommunity(content)->getContent() == content;
}

// Adds plugins to a rule tree that is complete already.
bool latePlugins(LivingWorld& world) {
  const auto& registry = world.parser->parseExtCommRuleCollections();
  const auto plugins = std::array<BgpParseExtCommPluginBaseSm::Ptr, 3>{
      bgpParseExtCommRouteTargetSmFactory(registry), bgpParseExtCommColorSmFactory(registry),
      bgpParseExtCommLinkBandwidthSmFactory(registry)};
  const U32 queued = world.parser->extCommParserSms();
  world.parser->extCommParserSmsEnq(plugins[0]);
  return world.parser->extCommParserSmsDel(queued);
}

bool ruleTreeWithoutPlugins(LivingWorld&) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  const auto plugin = bgpParseExtCommColorSmFactory(registry);
  const auto color = root->parseExtendedCommunity(ExtCommContent(0x030b'0000'0000'0001));
  root = nullptr;
  return &color->fwkType() == &ExtCommColor::kivType() && registry->references() == 2;
}

class ListShortage : public testing::TestWithParam<Row> {};
TEST_P(ListShortage, IsSurvived) { sweep(GetParam()); }

// The rows of one operation for the plain lists, for the extended lists, and for all.
#define PLAIN(name, run) \
  Row{"Standard" name, run<CommList>}, Row { "Large" name, run<LargeCommList> }
#define EXTENDED(name, run) \
  Row{"Extended" name, run<ExtCommList>}, Row { "Ip6" name, run<ExtCommIp6List> }
#define EACH(name, run) PLAIN(name, run), EXTENDED(name, run)

constexpr Row listRows[] = {
    {"ExtendedValues", extendedValues},
    {"Ip6Values", ip6Values},
    EACH("FromAttribute", fromAttribute),
    EACH("FromLongAttribute", fromLongAttribute),
    EACH("ByHand", byHand),
    EXTENDED("OfMembers", ofMembers),
    EACH("Snapshot", snapshot),
    EXTENDED("PartSnapshots", partSnapshots),
    EACH("Text", listText),
    EACH("Attribute", listAttribute),
    {"ExtendedPartTexts", text<ExtCommList, partTexts>},
    {"ExtendedValueTexts", text<ExtCommList, valueTexts>},
    {"Ip6ValueTexts", text<ExtCommIp6List, ip6ValueTexts>},
    PLAIN("LongAttribute", longAttribute),
    EACH("Streamed", streamed),
    PLAIN("Matched", matched),
    {"ExtendedMatched", matched<ExtCommList>},
    {"ShowCache", showCache},
    PLAIN("TableObserved", tableObserved),
    {"Ip6TableObserved", tableObserved<ExtCommIp6List>},
    {"TargetSetsListed", targetSetsListed},
    {"ManyListeners", manyListeners},
    {"TablesGo", tablesGo},
    {"ParserPutTogether", parserPutTogether},
    {"LatePlugins", latePlugins},
    {"RuleTreeWithoutPlugins", ruleTreeWithoutPlugins},
};
#undef PLAIN
#undef EXTENDED
#undef EACH
INSTANTIATE_TEST_SUITE_P(Rows, ListShortage, testing::ValuesIn(listRows), operationName);

// --- With everything traced ---

struct TracedWorld : LivingWorld {
  TracedWorld() {
    Kiv::traceSinkIs([](std::string_view) {});
    Kiv::traceLevelsIs("*/*");
  }
  ~TracedWorld() {
    Kiv::traceLevelsIs("");
    Kiv::traceSinkIs(nullptr);
  }
};

template <bool (*run)(LivingWorld&)>
bool traced(TracedWorld& world) {
  return run(world);
}

class TracedShortage : public testing::TestWithParam<Operation<TracedWorld>> {};
TEST_P(TracedShortage, IsSurvived) { sweep(GetParam()); }

constexpr Operation<TracedWorld> tracedRows[] = {
    {"ExtendedFromAttribute", traced<fromAttribute<ExtCommList>>},
    {"TargetSetsListed", traced<targetSetsListed>},
    {"LatePlugins", traced<latePlugins>},
};
INSTANTIATE_TEST_SUITE_P(Rows, TracedShortage, testing::ValuesIn(tracedRows), operationName);

}  // namespace
}  // namespace Shortage
