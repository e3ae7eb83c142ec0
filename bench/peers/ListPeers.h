// Standard community lists, interned from the value octets of an attribute by ours
// and by each library that a good engineer might take:
// intern(octets) -> handle.
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

// The communities of an attribute, in host order, sorted and unique. They live as long
// as one lookup.
class DecodedComms {
 public:
  explicit DecodedComms(std::span<const U8> wire)
      : room_(wire.size() / sizeof(U32)), comms_(room_.all()) {
    for (std::size_t i = 0; i < comms_.size(); ++i) {
      U32 word = 0;
      std::memcpy(&word, wire.data() + i * sizeof word, sizeof word);
      comms_[i] = __builtin_bswap32(word);
    }
    // Nearly all lists arrive in order. The test has no branch, so that the compiler
    // vectorises it.
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

// The communities follow the node in its one allocation.
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

using CommsP1 = CommsSet<PlainSet, U32>;
using CommsP2 = CommsSet<ShardedSet, std::atomic<U32>>;

struct CommsHash {
  std::size_t operator()(const Comms& comms) const noexcept { return CommsNode<U32>::hash(comms); }
};

inline Comms commsOf(std::span<const U8> wire) {
  const DecodedComms decoded(wire);
  return {decoded.comms().begin(), decoded.comms().end()};
}

// P3.  Its factory is global, so all sets of one kind are one.
class CommsP3 {
 public:
  using Handle = boost::flyweight<Comms, boost::flyweights::no_locking,
                                  boost::flyweights::hashed_factory<CommsHash>>;
  Handle intern(std::span<const U8> wire) { return Handle(commsOf(wire)); }
};

class CommsP4 {
 public:
  using Handle = std::shared_ptr<const Comms>;
  Handle intern(std::span<const U8> wire) { return set_.intern(commsOf(wire)); }

 private:
  SharedPtrSet<Comms, CommsHash> set_;
};

// Both switches, as a host with several threads sets them before it makes tables.
// They are the process's.
inline void threadsAre(bool several) {
  OvBgpGlobals::multiThreadedIs(several);
  Kiv::VFPtrInterface::threadSafePointers = several;
}

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
