#include <algorithm>
#include <random>

#include "bench/Workload.h"
#include "bench/peers/Names.h"
#include "bench/peers/ValuePeers.h"
#include "bench/ratios/Replay.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

using Values = std::vector<U64>;
using SharedValues = std::shared_ptr<const Values>;

// All values are interned and held. A sample looks them up in random order, so every lookup is a
// hit.
template <class Peer>
class ValueHits final : public Trial {
 public:
  ValueHits(const Values& values, U32 operations) : asked_(values), operations_(operations) {
    // Reserved before the measurement: the handles are not part of the table's memory.
    held_.reserve(values.size());
    const double before = heapBytes();
    peer_ = std::make_unique<Peer>();
    for (const U64 value : values) held_.push_back(peer_->intern(value));
    bytes_ = (heapBytes() - before) / static_cast<double>(values.size());
    std::shuffle(asked_.begin(), asked_.end(), std::mt19937(5));
  }
  double sample() override {
    ask(operations_ / 8);  // warms the caches
    return nanoseconds([this] { ask(operations_); }) / operations_;
  }
  double bytes() override { return bytes_; }
  double objects() override { return differentObjects(held_); }

 private:
  void ask(U32 times) {
    for (U32 i = 0; i < times; ++i) {
      kept_ = peer_->intern(asked_[next_]);
      if (++next_ == asked_.size()) next_ = 0;
    }
  }

  Values asked_;
  const U32 operations_;
  std::unique_ptr<Peer> peer_;
  std::vector<typename Peer::Handle> held_;
  typename Peer::Handle kept_{};
  std::size_t next_ = 0;
  double bytes_ = 0;
};

// A sample creates a table and interns all values, so every interning is a miss and the table
// grows step by step. The release of the values is not measured.
template <class Peer>
class ValueGrowth final : public Trial {
 public:
  explicit ValueGrowth(const Values& values) : values_(values) {}
  double sample() override {
    Peer peer;
    std::vector<typename Peer::Handle> held;
    held.reserve(values_.size());
    const double time = nanoseconds([&] {
      for (const U64 value : values_) held.push_back(peer.intern(value));
    });
    objects_ = differentObjects(held);
    return time / static_cast<double>(values_.size());
  }
  double objects() override { return objects_; }

 private:
  const Values& values_;
  double objects_ = 0;
};

template <class Peer>
Contender hits(const char* name, const SharedValues& values, const Scale& scale) {
  const U32 operations = scale.of(200'000);
  return {name, [=] { return std::make_unique<ValueHits<Peer>>(*values, operations); }};
}

// With the lower bound as an additional contender.
Row hitRow(U32 held, const Scale& scale) {
  const auto contenders = [=]() -> std::vector<Contender> {
    const auto values = std::make_shared<const Values>(valuesOf(held));
    return {hits<OurValues<false>>(Name::ours, values, scale),
            hits<ValuesInFlatSet>(Name::flatSet, values, scale),
            hits<ValuesInFlyweight>(Name::flyweight, values, scale),
            hits<ValuesInSharedPtrSet>(Name::sharedPtrSet, values, scale),
            hits<ValuesFindOnly>(Name::findOnly, values, scale)};
  };
  Row row{"value hit, " + std::to_string(held) + " held",
          contenders,
          {{Measure::time, 1.0, {Name::flatSet}}}};
  row.series = "value hit by number held";
  row.x = held;
  return row;
}

template <class Peer>
Contender growth(const char* name, const SharedValues& values) {
  return {name, [=] { return std::make_unique<ValueGrowth<Peer>>(*values); }};
}

template <class Peer>
Contender replay(const char* name, const SharedValues& sequence, const Scale& scale) {
  const U32 slots = scale.of(100'000);
  const U32 operations = scale.of(200'000);
  return {name, [=] {
            return std::make_unique<Replay<Peer, Values>>(sequence.get(), slots, operations);
          }};
}

// Creating a million values takes long, so seven rounds must do.
Row growRow(const Scale& scale) {
  const auto contenders = [=]() -> std::vector<Contender> {
    const auto values = std::make_shared<const Values>(valuesOf(scale.of(1'000'000)));
    return {growth<OurValues<false>>(Name::ours, values),
            growth<ValuesInFlatSet>(Name::flatSet, values),
            growth<ValuesInShardedSet>(Name::shardedSet, values),
            growth<ValuesInFlyweight>(Name::flyweight, values),
            growth<ValuesInSharedPtrSet>(Name::sharedPtrSet, values)};
  };
  Row row{"value grow", contenders, {{Measure::time, 0.75, {Name::flatSet, Name::shardedSet}}}};
  row.rounds = 7;
  return row;
}

// `make()` creates the sequence when the row runs.
template <class Make>
Row replayRow(const char* name, const Scale& scale, const Make& make) {
  const auto contenders = [=]() -> std::vector<Contender> {
    const auto sequence = std::make_shared<const Values>(make());
    return {replay<OurValues<false>>(Name::ours, sequence, scale),
            replay<ValuesInFlatSet>(Name::flatSet, sequence, scale),
            replay<ValuesInShardedSet>(Name::shardedSet, sequence, scale),
            replay<ValuesInFlyweight>(Name::flyweight, sequence, scale),
            replay<ValuesInSharedPtrSet>(Name::sharedPtrSet, sequence, scale)};
  };
  return {name, contenders, {}};
}

}  // namespace

std::vector<Row> valueRows(const Scale& scale) {
  std::vector<Row> rows;
  for (const U32 held : {1'000U, 10'000U, 100'000U, 1'000'000U}) {
    if (held > scale.of(1'000'000)) break;
    rows.push_back(hitRow(held, scale));
  }
  rows[1].goals.clear();  // 10,000 values are only a point of the curve
  rows.back().goals.push_back({Measure::bytes, 48, {}});
  rows.push_back(growRow(scale));
  rows.push_back(replayRow("value churn", scale, [=] { return valuesOf(scale.of(1'000'000)); }));
  rows.back().goals.push_back({Measure::time, 0.85, {Name::flatSet, Name::shardedSet}});
  rows.push_back(replayRow("value Zipf", scale,
                           [=] { return zipfValues(scale.of(200'000), scale.of(1'000'000)); }));
  return rows;
}

}  // namespace Bench
