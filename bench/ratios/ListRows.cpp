#include "bench/Workload.h"
#include "bench/peers/ListPeers.h"
#include "bench/peers/Names.h"
#include "bench/ratios/Replay.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

// The peers for one thread that replay the same sequence.
std::vector<Contender> replays(const Attributes& sequence, U32 slots, U32 operations) {
  const Attributes* const all = &sequence;
  return {
      {Name::ours, trial<Replay<OurComms<false>, Attributes>>(all, slots, operations)},
      {Name::flatSet, trial<Replay<CommsInFlatSet, Attributes>>(all, slots, operations)},
      {Name::flyweight, trial<Replay<CommsInFlyweight, Attributes>>(all, slots, operations)},
      {Name::sharedPtrSet, trial<Replay<CommsInSharedPtrSet, Attributes>>(all, slots, operations)}};
}

// All `lists` are interned and held. A sample looks up the lists of `asked`, in random order, so
// every lookup is a hit.
template <class Peer>
class Hits final : public Trial {
 public:
  Hits(const Attributes* lists, const Attributes* asked) : asked_(*asked) {
    for (std::size_t i = 0; i < lists->size(); ++i) held_.push_back(peer_.intern((*lists)[i]));
  }
  double sample() override {
    // Warm up without measuring: another contender has used the caches in between.
    for (std::size_t i = 0; i < asked_.size() / 8; ++i) kept_ = peer_.intern(asked_[i]);
    return nanoseconds([this] {
             for (std::size_t i = 0; i < asked_.size(); ++i) kept_ = peer_.intern(asked_[i]);
           }) /
           static_cast<double>(asked_.size());
  }
  double objects() override { return differentObjects(held_); }

 private:
  const Attributes& asked_;
  Peer peer_;
  std::vector<typename Peer::Handle> held_;
  typename Peer::Handle kept_;
};

// The contenders of a row share its data until the last one is destroyed.
using Shared = std::shared_ptr<const Attributes>;

template <class Peer>
Contender hits(const char* name, const Shared& lists, const Shared& asked) {
  return {name, [lists, asked] { return std::make_unique<Hits<Peer>>(lists.get(), asked.get()); }};
}

// These rows have no goal; they give the curve over the length of a list.
Row ofLength(U32 length, const Scale& scale) {
  const auto contenders = [=]() -> std::vector<Contender> {
    const auto lists = std::make_shared<const Attributes>(made(scale.of(10'000), length));
    const auto asked = std::make_shared<const Attributes>(drawn(*lists, 0, scale.of(200'000)));
    return {hits<OurComms<false>>(Name::ours, lists, asked),
            hits<CommsInFlatSet>(Name::flatSet, lists, asked),
            hits<CommsInFlyweight>(Name::flyweight, lists, asked),
            hits<CommsInSharedPtrSet>(Name::sharedPtrSet, lists, asked)};
  };
  Row row{"list hit, length " + std::to_string(length), contenders, {}};
  row.rounds = 9;
  row.series = "list hit by length";
  row.x = length;
  return row;
}

}  // namespace

std::vector<Row> listRows(const Files& files, const Scale& scale) {
  const U32 slots = scale.of(100'000);
  const U32 operations = scale.of(200'000);
  std::vector<Row> rows;
  for (const std::string& file : files) {
    rows.push_back({"list intern, real, " + nameOf(file),
                    [=] { return replays(received(file), slots, operations); },
                    {{Measure::time, 0.75, {Name::flatSet}}}});
  }
  const std::vector<Goal> goals = {{Measure::time, 0.95, {Name::flatSet}},
                                   {Measure::bytes, 0.9, {Name::flatSet}}};
  // The lengths of the synthetic lists are those in the first file.
  const std::string& like = files.front();
  rows.push_back(
      {"list intern, scaled",
       [=] { return replays(scaled(received(like), scale.of(519'000)), slots, operations); },
       goals});
  rows.push_back(
      {"list intern, distinct",
       [=] { return replays(distinct(received(like), scale.of(1'000'000)), slots, operations); },
       goals});
  for (const U32 length : {1U, 2U, 4U, 8U, 16U, 32U, 64U}) rows.push_back(ofLength(length, scale));
  return rows;
}

}  // namespace Bench
