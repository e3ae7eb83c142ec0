// The same interning by every library that a good engineer might take, and by
// ours, behind one face: intern(value octets) -> handle; a handle keeps its list.
#ifndef BENCH_PEERS_H
#define BENCH_PEERS_H

#include <algorithm>
#include <boost/flyweight.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <memory>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "Dorn/DedupHashTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Bench {

using Comms = std::vector<U32>;

// What all peers do first.
inline Comms decoded(std::span<const U8> value) {
  Comms comms(value.size() / 4);
  for (std::size_t i = 0; i < comms.size(); ++i) {
    const U8* const at = value.data() + 4 * i;
    comms[i] = U32{at[0]} << 24 | U32{at[1]} << 16 | U32{at[2]} << 8 | at[3];
  }
  std::sort(comms.begin(), comms.end());
  comms.erase(std::unique(comms.begin(), comms.end()), comms.end());
  return comms;
}

struct CommsHash {
  std::size_t operator()(const Comms& comms) const noexcept {
    U64 h = 0x9E3779B97F4A7C15;
    for (const U32 c : comms) {
      h = (h ^ c) * 0xBF58476D1CE4E5B9;
      h ^= h >> 32;
    }
    return static_cast<std::size_t>(h);
  }
};
inline std::size_t hash_value(const Comms& comms) { return CommsHash{}(comms); }

// Ours; `Threads` sets both switches, as a host with several threads would.
template <bool Threads>
class Interned {
 public:
  using Handle = Routing::Bgp::CommList::PtrConst;

  Interned() {
    OvBgpGlobals::multiThreadedIs(Threads);
    Kiv::VFPtrInterface::threadSafePointers = Threads;
    table_ = Routing::Bgp::commListDedupTableFactory();
  }
  Handle intern(std::span<const U8> value) {
    return Routing::Bgp::CommList::dedupAttributeValue(table_.ptr(), value);
  }

 private:
  Routing::Bgp::CommListDedupTable::Ptr table_;
};

// A set that owns nothing: the last handle takes its list out.
template <bool Threads>
class SharedPtrSet {
 public:
  using Handle = std::shared_ptr<const Comms>;

  Handle intern(std::span<const U8> value) {
    Comms comms = decoded(value);
    const std::unique_lock lock = locked();
    const auto found = lists_.find(&comms);
    if (found != lists_.end()) {
      // The last handle may be on its way to take the list out.
      if (Handle handle = (*found)->weak.lock()) return handle;
      lists_.erase(found);
    }
    auto* const entry = new Entry{std::move(comms), {}};
    const std::shared_ptr<Entry> owner(entry, [this](Entry* gone) { leave(gone); });
    entry->weak = Handle(owner, &entry->comms);
    lists_.insert(entry);
    return {owner, &entry->comms};
  }

 private:
  struct Entry {
    Comms comms;
    std::weak_ptr<const Comms> weak;
  };
  struct ByContents {
    using is_transparent = void;
    static const Comms& of(const Entry* entry) { return entry->comms; }
    static const Comms& of(const Comms* comms) { return *comms; }
    std::size_t operator()(const auto* a) const { return CommsHash{}(of(a)); }
    bool operator()(const auto* a, const auto* b) const { return of(a) == of(b); }
  };

  std::unique_lock<std::mutex> locked() {
    return Threads ? std::unique_lock(mutex_) : std::unique_lock<std::mutex>();
  }
  void leave(Entry* gone) {
    {
      const std::unique_lock lock = locked();
      const auto found = lists_.find(gone);
      if (found != lists_.end() && *found == gone) lists_.erase(found);
    }
    delete gone;
  }

  std::mutex mutex_;
  std::unordered_set<Entry*, ByContents, ByContents> lists_;
};

// Its factory is global, so all sets of one kind are one.
template <bool Threads>
class Flyweight {
 public:
  using Locking =
      std::conditional_t<Threads, boost::flyweights::simple_locking, boost::flyweights::no_locking>;
  using Handle = boost::flyweight<Comms, Locking, boost::flyweights::hashed_factory<CommsHash>>;

  Handle intern(std::span<const U8> value) { return Handle(decoded(value)); }
};

}  // namespace Bench

#endif
