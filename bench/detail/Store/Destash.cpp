// Creates 1,000 lists from images in a shared-memory store, compared with creating the same lists
// from the octets of their attributes.
//
//   destash/KIND                           from images, not interned
//   wire/KIND                              from octets, member by member, not interned
//   destash+intern/KIND, wire+intern/KIND  interned in empty tables
//
// Lists have 1 to 16 members, as on real routes. Several lists share an extended value.
#include "OvBgp/Store/Destash.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/Store/StashLists.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"

namespace Bench {
namespace {

using namespace Routing::Bgp;

constexpr std::size_t listCount = 1000;
using Value = std::vector<U8>;

U32 wordAt(const U8* at) {
  return U32{at[0]} << 24 | U32{at[1]} << 16 | U32{at[2]} << 8 | U32{at[3]};
}

// A kind of community. `vary` changes a random member so that several lists share it, `build`
// creates a list that is not interned, and `intern` creates an interned one.
struct Standard {
  using List = CommList;
  static constexpr std::size_t size = 4;
  const CommListDedupTable::Ptr table = commListDedupTableFactory();

  static void vary(U8*, std::mt19937&) {}
  List::Ptr build(const Value& value) const {
    const auto list = commListFactory();
    for (std::size_t i = 0; i < value.size(); i += size) list->commIs(wordAt(&value[i]));
    return list;
  }
  List::PtrConst intern(const Value& value) const {
    return List::dedupAttributeValue(table.ptr(), value);
  }
  List::PtrConst intern(const List::Ptr& list) const { return list->dedup(table.ptr()); }
};

struct Large {
  using List = LargeCommList;
  static constexpr std::size_t size = 12;
  const LargeCommListDedupTable::Ptr table = largeCommListDedupTableFactory();

  static void vary(U8*, std::mt19937&) {}
  List::Ptr build(const Value& value) const {
    const auto list = largeCommListFactory();
    for (std::size_t i = 0; i < value.size(); i += size) {
      list->commIs({wordAt(&value[i]), wordAt(&value[i + 4]), wordAt(&value[i + 8])});
    }
    return list;
  }
  List::PtrConst intern(const Value& value) const {
    return List::dedupAttributeValue(table.ptr(), value);
  }
  List::PtrConst intern(const List::Ptr& list) const { return list->dedup(table.ptr()); }
};

// The tables of a kind whose members are interned values. Such a list cannot be built from octets
// without interning its values, so wire/KIND includes this.
template <class Family>
struct Values {
  using List = typename Family::List;
  using ListPtr = Kiv::Ptr<const List>;

  ListPtr intern(const Value& value) const {
    return List::dedupAttributeValue(table.ptr(), values.ptr(), value);
  }
  ListPtr intern(const Kiv::Ptr<List>& list) const {
    return List::dedupDestashed(table.ptr(), values.ptr(), *list);
  }

  Values(Kiv::Ptr<typename Family::ValueTable> (*valueTable)(
             const BgpParseExtendedCommunityRule::PtrConst&),
         Kiv::Ptr<typename Family::ListTable> (*listTable)())
      : values(valueTable(parser->extCommParser())), table(listTable()) {}

  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  const Kiv::Ptr<typename Family::ValueTable> values;
  const Kiv::Ptr<typename Family::ListTable> table;
};

struct Extended : Values<ExtCommFamily> {
  static constexpr std::size_t size = 8;

  Extended() : Values(extCommDedupTableFactory, extCommListDedupTableFactory) {}

  // One of 4,096 route targets.
  static void vary(U8* at, std::mt19937& random) {
    const U32 number = static_cast<U32>(random() % 4096);
    const U8 octets[] = {
        0, 2, 0xFD, 0xE8, 0, 0, static_cast<U8>(number >> 8), static_cast<U8>(number)};
    std::copy(std::begin(octets), std::end(octets), at);
  }
  ExtCommList::Ptr build(const Value& value) const {
    const auto list = extCommListFactory();
    for (std::size_t i = 0; i < value.size(); i += size) {
      list->commIs(ExtComm::dedupContent(
          values.ptr(), ExtCommContent(U64{wordAt(&value[i])} << 32 | wordAt(&value[i + 4]))));
    }
    return list;
  }
};

struct Ipv6 : Values<ExtCommIp6Family> {
  static constexpr std::size_t size = 20;

  Ipv6() : Values(extCommIp6DedupTableFactory, extCommIp6ListDedupTableFactory) {}

  static void vary(U8* at, std::mt19937& random) {
    const U32 number = static_cast<U32>(random() % 4096);
    std::fill(at, at + size, U8{0});
    at[1] = 2;
    at[18] = static_cast<U8>(number >> 8);
    at[19] = static_cast<U8>(number);
  }
  ExtCommIp6List::Ptr build(const Value& value) const {
    const auto list = extCommIp6ListFactory();
    for (std::size_t i = 0; i < value.size(); i += size) {
      Ovnet::Ip6Addr::Octets addr{};
      std::copy_n(&value[i + 2], addr.size(), addr.begin());
      list->commIs(ExtCommIp6::dedupContent(
          values.ptr(), {value[i], value[i + 1], Ovnet::Ip6Addr(addr),
                         static_cast<U16>(value[i + 18] << 8 | value[i + 19])}));
    }
    return list;
  }
};

// The attribute values of all lists; the members of each ascend.
template <class Kind>
std::vector<Value> valuesOf() {
  std::mt19937 random(9);
  std::vector<Value> values(listCount);
  for (Value& value : values) {
    std::set<std::array<U8, Kind::size>> members;
    for (std::size_t left = 1 + random() % 16; left > 0; --left) {
      std::array<U8, Kind::size> member;
      for (U8& octet : member) octet = static_cast<U8>(random());
      Kind::vary(member.data(), random);
      members.insert(member);
    }
    for (const auto& member : members) value.insert(value.end(), member.begin(), member.end());
  }
  return values;
}

// A store with the images of all lists. Their writer interned them, so they are sorted.
template <class Kind>
class Store {
 public:
  Store() {
    const Kind kind;
    for (const Value& value : valuesOf<Kind>()) {
      stored.push_back(writer_.storedAddress(stashPut(writer_, *kind.intern(value))));
    }
    Stash::storeRemove(name_);  // removes the name; the mapping stays valid
  }

  const KivStash::StoreManager::Ptr& manager() const { return manager_; }
  std::vector<const void*> stored;

 private:
  const Stash::StoreName name_{"ovbgp-bench-" + std::to_string(::getpid())};
  KivStash::StoreWriter writer_{name_};
  const KivStash::StoreManager::Ptr manager_ = KivStash::storeManagerFactory(name_);
};

// A reader that only wants the lists.
template <class Kind>
void destash(benchmark::State& state) {
  const Store<Kind> store;
  for (auto _ : state) {
    for (const void* const stored : store.stored) {
      benchmark::DoNotOptimize(Kind::List::destash(stored, store.manager().ptr()));
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t{listCount});
}

template <class Kind>
void wire(benchmark::State& state) {
  const Kind kind;
  const std::vector<Value> values = valuesOf<Kind>();
  for (auto _ : state) {
    for (const Value& value : values) benchmark::DoNotOptimize(kind.build(value));
  }
  state.SetItemsProcessed(state.iterations() * int64_t{listCount});
}

// A reader that continues with the lists of a restarted writer interns them. Each list is released
// at once, so every interning is a miss.
template <class Kind>
void destashAndIntern(benchmark::State& state) {
  const Store<Kind> store;
  const Kind kind;
  for (auto _ : state) {
    for (const void* const stored : store.stored) {
      benchmark::DoNotOptimize(kind.intern(Kind::List::destash(stored, store.manager().ptr())));
    }
  }
  state.SetItemsProcessed(state.iterations() * int64_t{listCount});
}

template <class Kind>
void wireAndIntern(benchmark::State& state) {
  const Kind kind;
  const std::vector<Value> values = valuesOf<Kind>();
  for (auto _ : state) {
    for (const Value& value : values) benchmark::DoNotOptimize(kind.intern(value));
  }
  state.SetItemsProcessed(state.iterations() * int64_t{listCount});
}

#define BENCHMARK_KIND(Kind, name)                                 \
  BENCHMARK(destash<Kind>)->Name("destash/" name);                 \
  BENCHMARK(wire<Kind>)->Name("wire/" name);                       \
  BENCHMARK(destashAndIntern<Kind>)->Name("destash+intern/" name); \
  BENCHMARK(wireAndIntern<Kind>)->Name("wire+intern/" name)
BENCHMARK_KIND(Standard, "standard");
BENCHMARK_KIND(Large, "large");
BENCHMARK_KIND(Extended, "extended");
BENCHMARK_KIND(Ipv6, "ipv6");
#undef BENCHMARK_KIND

}  // namespace
}  // namespace Bench
