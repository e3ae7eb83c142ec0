// Ours and the peers that intern extended communities. Each has one operation: intern(value)
// returns a handle, where `value` is the eight octets in host byte order.
#ifndef BENCH_PEERS_VALUEPEERS_H
#define BENCH_PEERS_VALUEPEERS_H

#include <absl/container/flat_hash_map.h>
#include <absl/hash/hash.h>

#include <boost/flyweight.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <memory>

#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "bench/peers/ListPeers.h"
#include "bench/peers/Peers.h"
#include "bench/peers/SharedPtrSet.h"

namespace Bench {

// A value in a FlatSet or a ShardedSet. `Count` is atomic for several threads.
template <class Count>
struct ValueNode {
  using Key = U64;

  static ValueNode* make(void* owner, Key value) { return new ValueNode{owner, {0}, value}; }
  static void destroy(ValueNode* node) { delete node; }
  Key key() const { return value; }
  static std::size_t hash(Key value) { return absl::Hash<U64>{}(value); }
  static bool equal(Key a, Key b) { return a == b; }

  void* const owner;
  Count count;
  const U64 value;
};

using ValuesInFlatSet = FlatSet<ValueNode<U32>>;
using ValuesInShardedSet = ShardedSet<ValueNode<std::atomic<U32>>>;

// Boost.Flyweight without locks; its factory is global.
class ValuesInFlyweight {
 public:
  using Handle = boost::flyweight<U64, boost::flyweights::no_locking,
                                  boost::flyweights::hashed_factory<absl::Hash<U64>>>;
  Handle intern(U64 value) { return Handle(value); }
};

using ValuesInSharedPtrSet = SharedPtrSet<U64, absl::Hash<U64>>;

// The lower bound for a hit: a bare find in a flat_hash_map. It counts no references and never
// erases a value.
class ValuesFindOnly {
 public:
  using Handle = const U64*;
  Handle intern(U64 value) {
    const auto found = values_.find(value);
    if (found != values_.end()) return &found->second;
    return &values_.emplace(value, value).first->second;
  }

 private:
  absl::flat_hash_map<U64, U64> values_;
};

// Our interning of extended communities, with the standard rule tree. `Threads` selects the
// locking and the atomic counts.
template <bool Threads>
class OurValues {
 public:
  using Handle = Routing::Bgp::ExtComm::PtrConst;

  Handle intern(U64 value) {
    return Routing::Bgp::ExtComm::dedupContent(table_.ptr(), Routing::Bgp::ExtCommContent(value));
  }

 private:
  static Routing::Bgp::ExtCommDedupTable::Ptr tableNew() {
    threadsAre(Threads);
    const auto container = Routing::Bgp::bgpParseExtCommContainerSmFactory();
    return Routing::Bgp::extCommDedupTableFactory(container->extCommParser());
  }
  Routing::Bgp::ExtCommDedupTable::Ptr table_ = tableNew();
};

}  // namespace Bench

#endif
