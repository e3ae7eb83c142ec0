// Interning as in a daemon: each received list or value is interned and stored in the slot of its
// route. The slot releases the object that it held before. So hits, misses and releases occur in
// the mix of the given sequence.
#ifndef BENCH_RATIOS_REPLAY_H
#define BENCH_RATIOS_REPLAY_H

#include <memory>
#include <vector>

#include "bench/Workload.h"
#include "bench/ratios/Crew.h"
#include "bench/ratios/Objects.h"
#include "bench/ratios/Row.h"

namespace Bench {

// The route slots of one thread. It takes every `stride`-th item of the sequence, beginning with
// item `first`, and starts again at the end.
template <class Peer, class Sequence>
class Routes {
 public:
  using Handle = typename Peer::Handle;

  Routes(const Sequence& sequence, std::size_t slots, std::size_t first, std::size_t stride)
      : sequence_(sequence), slots_(slots), next_(first), stride_(stride), random_(first + 1) {}

  // Stores one item in each slot, so that every later store releases one.
  void fill(Peer& peer) {
    for (Handle& slot : slots_) slot = peer.intern(item());
  }
  // Stores `items` items in random slots, because routes change in no order.
  void replay(Peer& peer, std::size_t items) {
    for (std::size_t i = 0; i < items; ++i) slots_[slot()] = peer.intern(item());
  }
  const std::vector<Handle>& slots() const { return slots_; }

 private:
  decltype(auto) item() {
    const std::size_t at = next_;
    next_ += stride_;
    if (next_ >= sequence_.size()) next_ -= sequence_.size();
    return sequence_[at];
  }
  // A linear congruential generator: its cost is small beside an interning.
  std::size_t slot() {
    random_ = random_ * 6364136223846793005 + 1442695040888963407;
    return static_cast<std::size_t>((random_ >> 32) * slots_.size() >> 32);
  }

  const Sequence& sequence_;
  std::vector<Handle> slots_;
  std::size_t next_;
  const std::size_t stride_;
  U64 random_;
};

// A replay on one thread. The constructor fills the slots and replays until the table has
// reached its steady state.
template <class Peer, class Sequence>
class Replay final : public Trial {
 public:
  // `sequence` must outlive the trial.
  Replay(const Sequence* sequence, U32 slots, U32 operations)
      : routes_(*sequence, slots, 0, 1), before_(heapBytes()), operations_(operations) {
    peer_ = std::make_unique<Peer>();
    routes_.fill(*peer_);
    routes_.replay(*peer_, 2 * operations);
  }

  double sample() override {
    // Warm up without measuring: another contender has used the caches in between.
    routes_.replay(*peer_, operations_ / 8);
    return nanoseconds([this] { routes_.replay(*peer_, operations_); }) / operations_;
  }

  double bytes() override { return (heapBytes() - before_) / objects(); }
  double objects() override { return differentObjects(routes_.slots()); }

 private:
  Routes<Peer, Sequence> routes_;
  const double before_;
  std::unique_ptr<Peer> peer_;
  const U32 operations_;
};

// A replay on several threads that share the peer. Slots and sequence are dealt out to the
// threads. A sample is wall time per operation of all threads together.
template <class Peer, class Sequence>
class SharedReplay final : public Trial {
 public:
  SharedReplay(const Sequence* sequence, U32 slots, U32 operations, U32 threads)
      : operations_(operations),
        share_(operations / threads),
        crew_(threads, [this](U32 thread) { routes_[thread]->replay(peer_, share_); }) {
    for (U32 i = 0; i < threads; ++i) {
      routes_.push_back(
          std::make_unique<Routes<Peer, Sequence>>(*sequence, slots / threads, i, threads));
      routes_.back()->fill(peer_);
    }
    crew_.work();
  }

  double sample() override { return crew_.work() / operations_; }

 private:
  const U32 operations_;
  const U32 share_;
  Peer peer_;
  std::vector<std::unique_ptr<Routes<Peer, Sequence>>> routes_;
  Crew crew_;  // last, so that its threads end before the other members are destroyed
};

}  // namespace Bench

#endif
