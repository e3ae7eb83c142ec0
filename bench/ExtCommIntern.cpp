// Interning of extended communities by their eight octets, and parsing them.
//
//   hit/N    values that are held already, N of them, asked for in random order
//   miss     values that nobody holds, each released at once
//   parse    the rule tree alone: a typed object made and destroyed
//
// The floor is a bare find in a hash map, which neither counts nor shares.
#include <benchmark/benchmark.h>

#include <boost/flyweight.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <memory>
#include <random>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Kiv/Hash.h"
#include "OvBgp/ExtCommDedupTable.h"
#include "OvBgp/Parse/ExtComm.h"
#include "bench/Workload.h"

namespace Bench {
namespace {

using Routing::Bgp::ExtComm;
using Routing::Bgp::ExtCommContent;

struct ValueHash {
  std::size_t operator()(U64 value) const noexcept { return Kiv::hashSingleAttr(0, value); }
};

// Route targets, route origins, colors and values of unknown types, all different.
std::vector<U64> valuesOf(std::size_t count) {
  constexpr U64 types[] = {0x0002, 0x0202, 0x0103, 0x030B, 0x4004, 0x0399, 0x0600};
  std::mt19937_64 random(3);
  std::vector<U64> values;
  for (std::size_t i = 0; i < count; ++i) {
    values.push_back(types[i % std::size(types)] << 48 | (random() & 0xFFFF00000000) | i);
  }
  return values;
}

class Interned {
 public:
  using Handle = ExtComm::PtrConst;
  Handle intern(U64 value) { return ExtComm::dedupContent(table_.ptr(), ExtCommContent(value)); }

 private:
  Routing::Bgp::BgpParseExtCommContainerSm::Ptr container_ =
      Routing::Bgp::bgpParseExtCommContainerSmFactory();
  Routing::Bgp::ExtCommDedupTable::Ptr table_ =
      Routing::Bgp::extCommDedupTableFactory(container_->extCommParser());
};

class SharedPtrSet {
 public:
  using Handle = std::shared_ptr<const U64>;

  Handle intern(U64 value) {
    const auto found = values_.find(value);
    if (found != values_.end()) return found->second.lock();
    const Handle handle(new U64(value), [this](const U64* gone) {
      values_.erase(*gone);
      delete gone;
    });
    values_.emplace(value, handle);
    return handle;
  }

 private:
  std::unordered_map<U64, std::weak_ptr<const U64>, ValueHash> values_;
};

class Flyweight {
 public:
  using Handle = boost::flyweight<U64, boost::flyweights::no_locking,
                                  boost::flyweights::hashed_factory<ValueHash>>;
  Handle intern(U64 value) { return Handle(value); }
};

class BareMap {
 public:
  using Handle = const U64*;

  Handle intern(U64 value) { return &values_.try_emplace(value, value).first->second; }

 private:
  std::unordered_map<U64, U64, ValueHash> values_;
};

template <class Peer>
void hit(benchmark::State& state) {
  std::vector<U64> values = valuesOf(static_cast<std::size_t>(state.range(0)));
  Peer peer;
  std::vector<typename Peer::Handle> held;
  held.reserve(values.size());
  const double before = heapBytes();
  for (const U64 value : values) held.push_back(peer.intern(value));
  state.counters["bytes"] = (heapBytes() - before) / static_cast<double>(values.size());
  std::shuffle(values.begin(), values.end(), std::mt19937(5));
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(peer.intern(values[i]));
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

template <class Peer>
void miss(benchmark::State& state) {
  const std::vector<U64> values = valuesOf(10000);
  Peer peer;
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(peer.intern(values[i]));
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

void parse(benchmark::State& state) {
  const auto container = Routing::Bgp::bgpParseExtCommContainerSmFactory();
  const std::vector<U64> values = valuesOf(1000);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        container->extCommParser()->parseExtendedCommunity(ExtCommContent(values[i])));
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

#define HELD Arg(1000)->Arg(100000)->Arg(1000000)
BENCHMARK(hit<Interned>)->Name("hit/ours")->HELD;
BENCHMARK(hit<SharedPtrSet>)->Name("hit/shared_ptr")->HELD;
BENCHMARK(hit<Flyweight>)->Name("hit/flyweight")->HELD;
BENCHMARK(hit<BareMap>)->Name("hit/floor")->HELD;
#undef HELD
BENCHMARK(miss<Interned>)->Name("miss/ours");
BENCHMARK(miss<SharedPtrSet>)->Name("miss/shared_ptr");
BENCHMARK(miss<Flyweight>)->Name("miss/flyweight");
BENCHMARK(parse)->Name("parse");

}  // namespace
}  // namespace Bench
