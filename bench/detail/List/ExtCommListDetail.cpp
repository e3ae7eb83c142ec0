// Lists of 2, 8 and 32 extended or IPv6 extended communities: interning from received octets,
// the attribute, and the match of an expression. The Naive benchmarks do the same with
// straightforward code.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace {

using namespace Routing::Bgp;

// A kind of community. The matcher differs: only extended lists have matchCommunitiesRegex().
struct Extended {
  using List = ExtCommList;
  using Table = ExtCommListDedupTable;
  static constexpr std::size_t size = 8;
  static auto newValues(const BgpParseExtCommContainerSm& parser) {
    return extCommDedupTableFactory(parser.extCommParser());
  }
  static auto newTable() { return extCommListDedupTableFactory(); }
  static Kiv::String serialize(const List& list) {
    return list.serialize(List::serialization(true, false, false));
  }
  static bool matches(const List& list, const Routing::RouteMap::PosixRegex& regex) {
    return list.matchCommunitiesRegex(&regex);
  }
};

struct Ip6 {
  using List = ExtCommIp6List;
  using Table = ExtCommIp6ListDedupTable;
  static constexpr std::size_t size = 20;
  static auto newValues(const BgpParseExtCommContainerSm& parser) {
    return extCommIp6DedupTableFactory(parser.extCommParser());
  }
  static auto newTable() { return extCommIp6ListDedupTableFactory(); }
  static Kiv::String serialize(const List& list) { return list.serialize(true); }
  static bool matches(const List& list, const Routing::RouteMap::PosixRegex& regex) {
    return regex.execute(list.commsStringForm().c_str()) == 0;
  }
};

// The wire format of ascending route targets. `first` is an octet in each of them, so different
// values of `first` give different lists.
template <class Kind>
std::vector<U8> octetsOf(std::size_t members, U8 first) {
  std::vector<U8> octets(members * Kind::size);
  for (std::size_t i = 0; i < members; ++i) {
    octets[i * Kind::size + 1] = 2;
    octets[i * Kind::size + 2] = first;
    octets[(i + 1) * Kind::size - 1] = static_cast<U8>(i);
  }
  return octets;
}

// The tables that interning needs. They are destroyed after the lists of a benchmark.
template <class Kind>
struct World {
  BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  decltype(Kind::newValues(*parser)) values = Kind::newValues(*parser);
  typename Kind::Table::Ptr table = Kind::newTable();
  auto intern(const std::vector<U8>& octets) const {
    return Kind::List::dedupAttributeValue(table.ptr(), values.ptr(), octets);
  }
};

// The list is held, so every interning is a hit.
template <class Kind>
void hit(benchmark::State& state) {
  const World<Kind> world;
  const auto octets = octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1);
  const auto held = world.intern(octets);
  for (auto _ : state) benchmark::DoNotOptimize(world.intern(octets));
}

// The result is released at once, so every interning is a miss and is followed by a release of
// the list and of its values.
template <class Kind>
void missAndRelease(benchmark::State& state) {
  const World<Kind> world;
  const auto octets = octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1);
  for (auto _ : state) benchmark::DoNotOptimize(world.intern(octets));
}

template <class Kind>
void serialize(benchmark::State& state) {
  const World<Kind> world;
  const auto list = world.intern(octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1));
  for (auto _ : state) benchmark::DoNotOptimize(Kind::serialize(*list));
}

// Appends octet by octet to a string that grows.
template <class Kind>
void serializeNaive(benchmark::State& state) {
  const auto octets = octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1);
  for (auto _ : state) {
    std::string attribute{'\xC0', '\x10', '\0'};
    for (const U8 octet : octets) attribute.push_back(static_cast<char>(octet));
    benchmark::DoNotOptimize(attribute);
  }
}

// The expression does not match, so every text form is tried.
template <class Kind>
void match(benchmark::State& state) {
  const World<Kind> world;
  const auto list = world.intern(octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1));
  const Routing::RouteMap::PosixRegex regex("no such text");
  for (auto _ : state) benchmark::DoNotOptimize(Kind::matches(*list, regex));
}

// Joins the texts of the members for each text form, as a first version would. Extended
// communities have two forms: without and with their classification.
template <class Kind>
void matchNaive(benchmark::State& state) {
  const World<Kind> world;
  const auto list = world.intern(octetsOf<Kind>(static_cast<std::size_t>(state.range(0)), 1));
  const Routing::RouteMap::PosixRegex regex("no such text");
  using Format = typename std::decay_t<decltype(*list->commVector()[0])>::StrepFormat;
  const int forms = Kind::size == 8 ? 2 : 1;
  for (auto _ : state) {
    for (int form = 0; form < forms; ++form) {
      Format format;
      format.strepFormatClassificationIs(form == forms - 1);
      std::string text;
      for (const auto& member : list->commVector()) {
        if (!text.empty()) text += " ";
        text += member->toStrepForPolicy(format);
      }
      benchmark::DoNotOptimize(regex.execute(text.c_str()));
    }
  }
}

#define LENGTHS ->Arg(2)->Arg(8)->Arg(32)
#define ROWS(Kind)                         \
  BENCHMARK(hit<Kind>) LENGTHS;            \
  BENCHMARK(missAndRelease<Kind>) LENGTHS; \
  BENCHMARK(serialize<Kind>) LENGTHS;      \
  BENCHMARK(serializeNaive<Kind>) LENGTHS; \
  BENCHMARK(match<Kind>) LENGTHS;          \
  BENCHMARK(matchNaive<Kind>) LENGTHS
ROWS(Extended);
ROWS(Ip6);

}  // namespace
