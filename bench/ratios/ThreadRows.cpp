#include <algorithm>
#include <thread>

#include "bench/Workload.h"
#include "bench/peers/ListPeers.h"
#include "bench/peers/Names.h"
#include "bench/peers/ValuePeers.h"
#include "bench/ratios/Replay.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

// A sample is short, so a thread seldom loses its processor during a sample.
template <class Peer, class Sequence>
Contender shared(const char* name, const Sequence& sequence, const Scale& scale, U32 threads) {
  return {name, trial<SharedReplay<Peer, Sequence>>(&sequence, scale.of(100'000), scale.of(100'000),
                                                    threads)};
}

// `sequence()` returns a reference that stays valid until the process ends. The row for two
// threads also has ours on one thread, with the same kind of table, to show how ours scales.
template <class Ours, class Sharded, class Make>
Row rowOf(const std::string& work, const Make& sequence, const Scale& scale, U32 threads) {
  const auto contenders = [=] {
    std::vector<Contender> all = {shared<Ours>(Name::ours, sequence(), scale, threads),
                                  shared<Sharded>(Name::shardedSet, sequence(), scale, threads)};
    if (threads == 2) all.push_back(shared<Ours>(Name::oursOnOneThread, sequence(), scale, 1));
    return all;
  };
  Row row{work + ", " + std::to_string(threads) + (threads == 1 ? " thread" : " threads"),
          contenders,
          {}};
  if (threads == 2) {
    row.goals = {{Measure::time, 0.75, {Name::shardedSet}},
                 {Measure::time, 1 / 1.5, {Name::oursOnOneThread}}};
  }
  row.series = work + " by threads";
  row.x = threads;
  return row;
}

// Adds rows for 1, 2, 4 ... threads, up to the number of processors.
template <class Ours, class Sharded, class Make>
void append(std::vector<Row>& to, const std::string& work, const Scale& scale,
            const Make& sequence) {
  const U32 most = std::max(2U, std::thread::hardware_concurrency());
  for (U32 threads = 1; threads <= most; threads *= 2) {
    to.push_back(rowOf<Ours, Sharded>(work, sequence, scale, threads));
  }
}

const std::vector<U64>& popularValues(const Scale& scale) {
  static const auto values = zipfValues(scale.of(200'000), scale.of(1'000'000));
  return values;
}

}  // namespace

std::vector<Row> threadRows(const Files& files, const Scale& scale) {
  std::vector<Row> rows;
  for (const std::string& file : files) {
    append<OurComms<true>, CommsInShardedSet>(
        rows, "real, " + nameOf(file), scale,
        [=]() -> const Attributes& { return received(file); });
  }
  const std::string& like = files.front();
  append<OurComms<true>, CommsInShardedSet>(rows, "scaled", scale, [=]() -> const Attributes& {
    return scaled(received(like), scale.of(519'000));
  });
  append<OurValues<true>, ValuesInShardedSet>(
      rows, "values", scale, [=]() -> const std::vector<U64>& { return popularValues(scale); });
  return rows;
}

}  // namespace Bench
