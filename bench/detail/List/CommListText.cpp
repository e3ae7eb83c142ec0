// Text, attribute and expression match of standard and large community lists, compared with
// straightforward code. Each benchmark runs for lists of 1, 8 and 32 members.
//
//   text/ours, text/to_chars, text/snprintf     the text of a list
//   serialize/ours, serialize/push_back         its attribute
//   match/ours, match/to_chars, match/snprintf  an expression that does not match
//
// Names of large communities begin with large/.
#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <string>
#include <vector>

#include "OvBgp/OvBgpCommunityList.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "bench/Workload.h"
#include "bench/peers/Peers.h"

namespace Bench {
namespace {

// A kind of community: how to create random members, print them and intern lists. The random
// numbers look like real ones: AS numbers of every length and small local parts.
struct Standard {
  using Member = U32;
  static constexpr char attribute = 8;
  static constexpr int textForms = 2;  // with numbers only, and with names

  static Member random(std::mt19937& random) {
    const U32 as = static_cast<U32>(random()) >> (16 + random() % 10);
    return as << 16 | static_cast<U32>(random() % 3000);
  }
  static std::array<U32, 2> numbers(Member c) { return {c >> 16, c & 0xFFFF}; }
  // The words of the wire format, in host byte order.
  static std::array<U32, 1> words(Member c) { return {c}; }
  static int print(char* room, std::size_t size, Member c) {
    return std::snprintf(room, size, "%u:%u", c >> 16, c & 0xFFFF);
  }
  static auto make() { return Routing::Bgp::commListFactory(); }
  static auto table() { return Routing::Bgp::commListDedupTableFactory(); }
};

struct Large {
  using Member = Acl::CommunityValue;
  static constexpr char attribute = 32;
  static constexpr int textForms = 1;

  static Member random(std::mt19937& random) {
    const U32 as = static_cast<U32>(random()) >> (random() % 22);
    return {as, static_cast<U32>(random() % 3000), static_cast<U32>(random() >> random() % 32)};
  }
  static std::array<U32, 3> numbers(const Member& c) {
    return {c.globalAdmin(), c.localData1(), c.localData2()};
  }
  static std::array<U32, 3> words(const Member& c) { return numbers(c); }
  static int print(char* room, std::size_t size, const Member& c) {
    return std::snprintf(room, size, "%u:%u:%u", c.globalAdmin(), c.localData1(), c.localData2());
  }
  static auto make() { return Routing::Bgp::largeCommListFactory(); }
  static auto table() { return Routing::Bgp::largeCommListDedupTableFactory(); }
};

template <class Kind>
using Members = std::vector<typename Kind::Member>;

template <class Kind>
Members<Kind> membersOf(const benchmark::State& state) {
  std::mt19937 random(7);
  Members<Kind> members;
  for (auto i = state.range(0); i > 0; --i) members.push_back(Kind::random(random));
  std::sort(members.begin(), members.end());
  return members;
}

// The interned list. The table is static, so it outlives every list.
template <class Kind>
auto listOf(const benchmark::State& state) {
  static const auto table = Kind::table();
  const auto list = Kind::make();
  for (const auto& member : membersOf<Kind>(state)) list->commIs(member);
  return list->dedup(table.ptr());
}

// Makes the report show communities per second, so that lengths can be compared.
void perCommunity(benchmark::State& state) {
  state.SetItemsProcessed(state.range(0) * state.iterations());
}

// The fast straightforward way: one string of the largest possible size, filled by
// std::to_chars.
template <class Kind>
std::string joinedByToChars(const Members<Kind>& members) {
  std::string out(members.size() * 33, '\0');
  char* at = out.data();
  char* const end = at + out.size();
  for (const auto& member : members) {
    char separator = ' ';
    for (const U32 number : Kind::numbers(member)) {
      if (at != out.data()) *at++ = separator;
      at = std::to_chars(at, end, number).ptr;
      separator = ':';
    }
  }
  out.resize(static_cast<std::size_t>(at - out.data()));
  return out;
}

// The usual first version: snprintf and a string that grows.
template <class Kind>
std::string joinedByPrintf(const Members<Kind>& members) {
  std::string out;
  char room[33];
  for (const auto& member : members) {
    Kind::print(room, sizeof room, member);
    if (!out.empty()) out += ' ';
    out += room;
  }
  return out;
}

template <class Kind>
void text(benchmark::State& state) {
  const auto list = listOf<Kind>(state);
  for (auto _ : state) benchmark::DoNotOptimize(list->toStrep());
  perCommunity(state);
}

template <class Kind, auto joined>
void textPlain(benchmark::State& state) {
  const auto members = membersOf<Kind>(state);
  for (auto _ : state) benchmark::DoNotOptimize(joined(members));
  perCommunity(state);
}

template <class Kind>
void serialize(benchmark::State& state) {
  const auto list = listOf<Kind>(state);
  for (auto _ : state) benchmark::DoNotOptimize(list->serialize());
  perCommunity(state);
}

// The attribute with its header, built octet by octet.
template <class Kind>
void serializePushBack(benchmark::State& state) {
  const auto members = membersOf<Kind>(state);
  for (auto _ : state) {
    std::string out;
    const std::size_t length = sizeof(typename Kind::Member) * members.size();
    out.push_back(static_cast<char>(length > 255 ? 0xD0 : 0xC0));
    out.push_back(Kind::attribute);
    if (length > 255) out.push_back(static_cast<char>(length >> 8));
    out.push_back(static_cast<char>(length));
    for (const auto& member : members) {
      for (const U32 word : Kind::words(member)) {
        for (const int shift : {24, 16, 8, 0}) out.push_back(static_cast<char>(word >> shift));
      }
    }
    benchmark::DoNotOptimize(out);
  }
  perCommunity(state);
}

// Matches no text, so all text forms of the list are tried.
constexpr auto* noMatch = "^64999:[0-9]+$";

template <class Kind>
void match(benchmark::State& state) {
  const auto list = listOf<Kind>(state);
  const Routing::RouteMap::PosixRegex regex(noMatch);
  for (auto _ : state) benchmark::DoNotOptimize(list->matchCommunitiesRegex(&regex));
  perCommunity(state);
}

template <class Kind, auto joined>
void matchPlain(benchmark::State& state) {
  const auto members = membersOf<Kind>(state);
  const Routing::RouteMap::PosixRegex regex(noMatch);
  for (auto _ : state) {
    bool matches = false;
    for (int form = 0; form < Kind::textForms && !matches; ++form) {
      matches = regex.execute(joined(members).c_str()) == 0;
    }
    benchmark::DoNotOptimize(matches);
  }
  perCommunity(state);
}

// Registers the benchmarks of a kind under `prefix`.
template <class Kind>
void benchmarksIs(const std::string& prefix) {
  const auto add = [&prefix](const char* name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark((prefix + name).c_str(), run)->Arg(1)->Arg(8)->Arg(32);
  };
  add("text/ours", text<Kind>);
  add("text/to_chars", textPlain<Kind, joinedByToChars<Kind>>);
  add("text/snprintf", textPlain<Kind, joinedByPrintf<Kind>>);
  add("serialize/ours", serialize<Kind>);
  add("serialize/push_back", serializePushBack<Kind>);
  add("match/ours", match<Kind>);
  add("match/to_chars", matchPlain<Kind, joinedByToChars<Kind>>);
  add("match/snprintf", matchPlain<Kind, joinedByPrintf<Kind>>);
}

[[maybe_unused]] const bool areAdded = [] {
  benchmarksIs<Standard>("");
  benchmarksIs<Large>("large/");
  return true;
}();

}  // namespace
}  // namespace Bench
