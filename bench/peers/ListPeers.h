// Ours and the peers that intern standard community lists from the value octets of an attribute.
// Each has one operation: intern(octets) returns a handle.
//
// All peers decode, check the order and sort in the same way (DecodedComms). They differ only in
// the set and in the handle.
#ifndef BENCH_PEERS_LISTPEERS_H
#define BENCH_PEERS_LISTPEERS_H

#include <absl/hash/hash.h>
#include <absl/types/span.h>

#include <algorithm>
#include <array>
#include <boost/flyweight.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <cstring>
#include <memory>
#include <new>
#include <span>

#include "Kiv/PtrInterface.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgpGlobals/OvBgpGlobals.h"
#include "bench/peers/Peers.h"
#include "bench/peers/SharedPtrSet.h"
#include "bench/peers/ShortRoom.h"

namespace Bench {

// The communities of an attribute in host byte order, sorted and without duplicates. The object
// is a temporary of one lookup.
class DecodedComms {
 public:
  explicit DecodedComms(std::span<const U8> wire)
      : room_(wire.size() / sizeof(U32)), comms_(room_.all()) {
    for (std::size_t i = 0; i < comms_.size(); ++i) {
      U32 word = 0;
      std::memcpy(&word, wire.data() + i * sizeof word, sizeof word);
      comms_[i] = __builtin_bswap32(word);
    }
    // Nearly all lists arrive in order. The check has no branch, so the compiler can vectorise
    // the loop.
    bool ascends = true;
    for (std::size_t i = 1; i < comms_.size(); ++i) ascends &= comms_[i - 1] < comms_[i];
    if (!ascends) sort();
  }

  std::span<const U32> comms() const { return comms_; }

 private:
  void sort() {
    std::sort(comms_.begin(), comms_.end());
    const auto end = std::unique(comms_.begin(), comms_.end());
    comms_ = comms_.first(static_cast<std::size_t>(end - comms_.begin()));
  }

  ShortRoom<U32> room_;
  std::span<U32> comms_;
};

// A list with its communities behind it in the same allocation. `Count` is a plain integer for
// one thread and an atomic one for several.
template <class Count>
struct CommsNode {
  using Key = std::span<const U32>;

  CommsNode(void* set, Key key) : owner(set), length(static_cast<U32>(key.size())) {
    std::memcpy(static_cast<void*>(this + 1), key.data(), key.size_bytes());
  }
  static CommsNode* make(void* owner, Key key) {
    return new (::operator new(sizeof(CommsNode) + key.size_bytes())) CommsNode(owner, key);
  }
  static void destroy(CommsNode* node) {
    ::operator delete(node, sizeof(CommsNode) + node->length * sizeof(U32));
  }
  Key key() const { return {reinterpret_cast<const U32*>(this + 1), length}; }
  static std::size_t hash(Key key) {
    const absl::Span<const U32> comms(key.data(), key.size());
    return absl::Hash<absl::Span<const U32>>{}(comms);
  }
  static bool equal(Key a, Key b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size_bytes()) == 0;
  }

  void* const owner;
  Count count{0};
  const U32 length;
};

// The peer: lists of standard communities in a FlatSet or a ShardedSet.
template <template <class> class Set, class Count>
class CommsSet {
 public:
  using Handle = typename Set<CommsNode<Count>>::Handle;
  Handle intern(std::span<const U8> wire) {
    const DecodedComms decoded(wire);
    return set_.intern(decoded.comms());
  }

 private:
  Set<CommsNode<Count>> set_;
};

using CommsInFlatSet = CommsSet<FlatSet, U32>;
using CommsInShardedSet = CommsSet<ShardedSet, std::atomic<U32>>;

struct CommsHash {
  std::size_t operator()(const Comms& comms) const noexcept { return CommsNode<U32>::hash(comms); }
};

inline Comms commsOf(std::span<const U8> wire) {
  const DecodedComms decoded(wire);
  return {decoded.comms().begin(), decoded.comms().end()};
}

// Boost.Flyweight without locks. Its factory is global, so all objects of this class share one
// set; therefore a process must not use two of them.
class CommsInFlyweight {
 public:
  using Handle = boost::flyweight<Comms, boost::flyweights::no_locking,
                                  boost::flyweights::hashed_factory<CommsHash>>;
  Handle intern(std::span<const U8> wire) { return Handle(commsOf(wire)); }
};

class CommsInSharedPtrSet {
 public:
  using Handle = std::shared_ptr<const Comms>;
  Handle intern(std::span<const U8> wire) { return set_.intern(commsOf(wire)); }

 private:
  SharedPtrSet<Comms, CommsHash> set_;
};

// Sets both switches of the library for one thread or for several. They hold for the whole
// process and must be set before a table is created.
inline void threadsAre(bool several) {
  OvBgpGlobals::multiThreadedIs(several);
  Kiv::VFPtrInterface::threadSafePointers = several;
}

// Our interning of standard lists. `Threads` selects the locking and the atomic counts.
template <bool Threads>
class OurComms {
 public:
  using Handle = Routing::Bgp::CommList::PtrConst;

  Handle intern(std::span<const U8> wire) {
    return Routing::Bgp::CommList::dedupAttributeValue(table_.ptr(), wire);
  }

 private:
  static Routing::Bgp::CommListDedupTable::Ptr tableNew() {
    threadsAre(Threads);
    return Routing::Bgp::commListDedupTableFactory();
  }
  Routing::Bgp::CommListDedupTable::Ptr table_ = tableNew();
};

}  // namespace Bench

#endif
