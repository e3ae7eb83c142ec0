// Interning of standard community lists: ours beside what else could be used.
//
//   real         the received sequence of attributes; every list is held already
//   real_hold    the same into 1,000 route slots, each new list releasing an old
//   hit/N        lists of N communities, held already, received out of order
//   miss/N       lists of N communities, each new, and released at once
//   real_threads the received sequence on one shared table, by one or two threads
//   dedup/N      a list built by hand, one commIs a community, and interned
//
// `bytes` is what one list held takes on the heap, its share of the table and
// the allocator's overhead included, the holder's own handle left out.
#include <benchmark/benchmark.h>

#include <optional>

#include "bench/Peers.h"
#include "bench/Workload.h"

namespace Bench {
namespace {

void itemsAre(benchmark::State& state, std::size_t perRound) {
  state.SetItemsProcessed(static_cast<std::int64_t>(perRound) * state.iterations());
}

template <class Peer>
void holdAll(Peer& peer, const Attributes& attributes, std::vector<typename Peer::Handle>& held) {
  for (std::size_t i = 0; i < attributes.size(); ++i) held.push_back(peer.intern(attributes[i]));
}

template <class Peer>
void hits(benchmark::State& state, const Attributes& attributes) {
  Peer peer;
  std::vector<typename Peer::Handle> held;
  held.reserve(attributes.size());
  holdAll(peer, attributes, held);
  for (auto _ : state) {
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      benchmark::DoNotOptimize(peer.intern(attributes[i]));
    }
  }
  itemsAre(state, attributes.size());
}

template <class Peer>
void real(benchmark::State& state) {
  hits<Peer>(state, received());
}

template <class Peer>
void realHold(benchmark::State& state) {
  const Attributes& attributes = received();
  Peer peer;
  std::vector<std::optional<typename Peer::Handle>> slots(1000);
  std::size_t slot = 0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      slots[slot] = peer.intern(attributes[i]);
      slot = slot + 1 == slots.size() ? 0 : slot + 1;
    }
  }
  itemsAre(state, attributes.size());
}

template <class Peer>
void hit(benchmark::State& state) {
  hits<Peer>(state, made(1000, static_cast<std::size_t>(state.range(0))));
}

template <class Peer>
double bytesPerList(const Attributes& attributes) {
  Peer peer;
  std::vector<typename Peer::Handle> held;
  held.reserve(attributes.size());
  const double before = heapBytes();
  holdAll(peer, attributes, held);
  return (heapBytes() - before) / static_cast<double>(attributes.size());
}

template <class Peer>
void miss(benchmark::State& state) {
  const Attributes attributes = made(20000, static_cast<std::size_t>(state.range(0)));
  state.counters["bytes"] = bytesPerList<Peer>(attributes);
  Peer peer;
  for (auto _ : state) {
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      benchmark::DoNotOptimize(peer.intern(attributes[i]));
    }
  }
  itemsAre(state, attributes.size());
}

// One table for all threads; each thread replays its share of the sequence.
template <class Peer>
void realThreads(benchmark::State& state) {
  static std::optional<Peer> peer;
  static std::vector<typename Peer::Handle> held;
  const Attributes& attributes = received();
  if (state.thread_index() == 0) {
    peer.emplace();
    holdAll(*peer, attributes, held);
  }
  const std::size_t share = attributes.size() / static_cast<std::size_t>(state.threads());
  const std::size_t first = share * static_cast<std::size_t>(state.thread_index());
  for (auto _ : state) {
    for (std::size_t i = 0; i < share; ++i) {
      benchmark::DoNotOptimize(peer->intern(attributes[first + i]));
    }
  }
  itemsAre(state, share);
  if (state.thread_index() == 0) {
    held.clear();
    peer.reset();
  }
}

void dedup(benchmark::State& state) {
  Interned<false> interned;
  const auto length = static_cast<std::size_t>(state.range(0));
  const Comms comms = decoded(made(1, length)[0]);
  const auto table = Routing::Bgp::commListDedupTableFactory();
  const auto build = [&] {
    const auto list = Routing::Bgp::commListFactory();
    for (std::size_t i = length; i-- > 0;) list->commIs(comms[i]);
    return list->dedup(table.ptr());
  };
  const auto held = build();
  for (auto _ : state) benchmark::DoNotOptimize(build());
  itemsAre(state, 1);
}

template <class Set>
void dedupPeer(benchmark::State& state) {
  Set set;
  const auto length = static_cast<std::size_t>(state.range(0));
  const Attributes attributes = made(1, length);
  const auto held = set.intern(attributes[0]);
  for (auto _ : state) benchmark::DoNotOptimize(set.intern(attributes[0]));
  itemsAre(state, 1);
}

#define LENGTHS Arg(1)->Arg(8)->Arg(32)
#define FOR_EACH_PEER(function, Threads, ...)                                            \
  BENCHMARK(function<Interned<Threads>>)->Name(#function "/ours") __VA_ARGS__;           \
  BENCHMARK(function<SharedPtrSet<Threads>>)->Name(#function "/shared_ptr") __VA_ARGS__; \
  BENCHMARK(function<Flyweight<Threads>>)->Name(#function "/flyweight") __VA_ARGS__

FOR_EACH_PEER(real, false);
FOR_EACH_PEER(realHold, false);
FOR_EACH_PEER(hit, false, ->LENGTHS);
FOR_EACH_PEER(miss, false, ->LENGTHS);
FOR_EACH_PEER(realThreads, true, ->Threads(1)->Threads(2)->UseRealTime());
BENCHMARK(dedup)->Name("dedup/ours")->LENGTHS;
BENCHMARK(dedupPeer<SharedPtrSet<false>>)->Name("dedup/shared_ptr")->LENGTHS;
BENCHMARK(dedupPeer<Flyweight<false>>)->Name("dedup/flyweight")->LENGTHS;

#undef FOR_EACH_PEER
#undef LENGTHS

}  // namespace
}  // namespace Bench
