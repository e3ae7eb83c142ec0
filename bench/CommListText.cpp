// Text, wire form and matching of standard community lists, beside the plain way.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <string>

#include "OvBgp/OvBgpCommunityList.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "bench/Peers.h"
#include "bench/Workload.h"

namespace Bench {
namespace {

// Numbers as they occur: AS numbers of every length, small local parts.
Comms commsOf(std::size_t length) {
  std::mt19937 random(7);
  Comms comms;
  for (std::size_t i = 0; i < length; ++i) {
    const U32 as = static_cast<U32>(random()) >> (16 + random() % 10);
    comms.push_back(as << 16 | static_cast<U32>(random() % 3000));
  }
  std::sort(comms.begin(), comms.end());
  return comms;
}

Routing::Bgp::CommList::PtrConst listOf(const Comms& comms) {
  static const auto table = Routing::Bgp::commListDedupTableFactory();
  const auto list = Routing::Bgp::commListFactory();
  for (const U32 c : comms) list->commIs(c);
  return list->dedup(table.ptr());
}

void perCommunity(benchmark::State& state) {
  state.SetItemsProcessed(state.range(0) * state.iterations());
}

void text(benchmark::State& state) {
  const auto list = listOf(commsOf(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(list->toStrep());
  perCommunity(state);
}

void textToChars(benchmark::State& state) {
  const Comms comms = commsOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string out(comms.size() * 12, '\0');
    char* at = out.data();
    char* const end = at + out.size();
    for (const U32 c : comms) {
      if (at != out.data()) *at++ = ' ';
      at = std::to_chars(at, end, c >> 16).ptr;
      *at++ = ':';
      at = std::to_chars(at, end, c & 0xFFFF).ptr;
    }
    out.resize(static_cast<std::size_t>(at - out.data()));
    benchmark::DoNotOptimize(out);
  }
  perCommunity(state);
}

void textPrintf(benchmark::State& state) {
  const Comms comms = commsOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string out;
    char room[16];
    for (const U32 c : comms) {
      std::snprintf(room, sizeof room, out.empty() ? "%u:%u" : " %u:%u", c >> 16, c & 0xFFFF);
      out += room;
    }
    benchmark::DoNotOptimize(out);
  }
  perCommunity(state);
}

void serialize(benchmark::State& state) {
  const auto list = listOf(commsOf(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(list->serialize());
  perCommunity(state);
}

void serializePushBack(benchmark::State& state) {
  const Comms comms = commsOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string out;
    const std::size_t length = 4 * comms.size();
    out.push_back(static_cast<char>(length > 255 ? 0xD0 : 0xC0));
    out.push_back(8);
    if (length > 255) out.push_back(static_cast<char>(length >> 8));
    out.push_back(static_cast<char>(length));
    for (const U32 c : comms) {
      for (const int shift : {24, 16, 8, 0}) out.push_back(static_cast<char>(c >> shift));
    }
    benchmark::DoNotOptimize(out);
  }
  perCommunity(state);
}

// An expression that matches nothing, so that both texts are tried.
void match(benchmark::State& state) {
  const auto list = listOf(commsOf(static_cast<std::size_t>(state.range(0))));
  const Routing::RouteMap::PosixRegex regex("^64999:[0-9]+$");
  for (auto _ : state) benchmark::DoNotOptimize(list->matchCommunitiesRegex(&regex));
  perCommunity(state);
}

#define LENGTHS Arg(1)->Arg(8)->Arg(32)
BENCHMARK(text)->Name("text/ours")->LENGTHS;
BENCHMARK(textToChars)->Name("text/to_chars")->LENGTHS;
BENCHMARK(textPrintf)->Name("text/snprintf")->LENGTHS;
BENCHMARK(serialize)->Name("serialize/ours")->LENGTHS;
BENCHMARK(serializePushBack)->Name("serialize/push_back")->LENGTHS;
BENCHMARK(match)->Name("match/ours")->LENGTHS;
#undef LENGTHS

}  // namespace
}  // namespace Bench
