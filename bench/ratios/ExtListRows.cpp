#include <random>
#include <set>

#include "bench/Workload.h"
#include "bench/peers/ExtListPeers.h"
#include "bench/peers/Names.h"
#include "bench/ratios/Replay.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

constexpr std::size_t differentValues = 5'000;

// The size of the work: the length of a list, the number of different lists, the number of route
// slots, and the number of operations per sample.
struct Work {
  U32 length;
  U32 lists;
  U32 slots;
  U32 operations;
};

// The sequence of lists that one peer interns, as handles to values of this peer. The members of
// a list ascend; popular lists repeat.
template <class Peer>
class ExtLists {
 public:
  ExtLists(Peer& peer, const Work& work)
      : length_(work.length), order_(zipf(work.lists, 0.9, std::size_t{2} * work.lists)) {
    const std::vector<U64> contents = valuesOf(differentValues);
    std::mt19937 random(1);
    for (U32 i = 0; i < work.lists; ++i) {
      std::set<U64> list;
      while (list.size() < length_) list.insert(contents[random() % contents.size()]);
      for (const U64 content : list) members_.push_back(peer.value(content));
    }
  }
  std::size_t size() const { return order_.size(); }
  std::span<const typename Peer::ValueHandle> operator[](std::size_t i) const {
    return {members_.data() + std::size_t{order_[i]} * length_, length_};
  }

 private:
  const std::size_t length_;
  const std::vector<U32> order_;
  std::vector<typename Peer::ValueHandle> members_;
};

// As Replay, but with lists of the peer's own values. The lists must be created with the peer,
// hence the members are in this order.
template <class Peer>
class ExtListReplay final : public Trial {
 public:
  explicit ExtListReplay(const Work& work)
      : operations_(work.operations), lists_(peer_, work), routes_(lists_, work.slots, 0, 1) {
    routes_.fill(peer_);
    routes_.replay(peer_, 2 * operations_);
  }
  double sample() override {
    routes_.replay(peer_, operations_ / 8);  // warms the caches
    return nanoseconds([this] { routes_.replay(peer_, operations_); }) / operations_;
  }
  double objects() override { return differentObjects(routes_.slots()); }

 private:
  const U32 operations_;
  Peer peer_;
  ExtLists<Peer> lists_;
  Routes<Peer, ExtLists<Peer>> routes_;
};

}  // namespace

std::vector<Row> extListRows(const Scale& scale) {
  std::vector<Row> rows;
  for (const U32 length : {2U, 8U, 32U}) {
    const Work work{length, scale.of(50'000), scale.of(20'000), scale.of(100'000)};
    rows.push_back({"extended list, length " + std::to_string(length),
                    [work]() -> std::vector<Contender> {
                      return {
                          {Name::ours, trial<ExtListReplay<OurExtLists>>(work)},
                          {Name::flatSetWithSubLists,
                           trial<ExtListReplay<ExtListsInFlatSet<GroupedLists>>>(work)},
                          {Name::flatSet,
                           trial<ExtListReplay<ExtListsInFlatSet<FlatSet<ExtListNode>>>>(work)}};
                    },
                    {{Measure::time, 0.75, {Name::flatSetWithSubLists}},
                     {Measure::time, 0.75, {Name::flatSet}}}});
    rows.back().series = "extended list by length";
    rows.back().x = length;
  }
  return rows;
}

}  // namespace Bench
