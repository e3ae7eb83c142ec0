#include <algorithm>
#include <thread>

#include "bench/Workload.h"
#include "bench/peers/ListPeers.h"
#include "bench/peers/ValuePeers.h"
#include "bench/ratios/Replay.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

// Samples so short that threads mostly keep their processors through one.
template <class Peer, class Sequence>
Contender shared(const char* name, const Sequence& sequence, const Scale& scale, U32 threads) {
  return {name, trial<SharedReplay<Peer, Sequence>>(&sequence, scale.of(100'000), scale.of(100'000),
                                                    threads)};
}

// `sequence()` lives as long as the program. One thread, of a table made for
// several, is what two are compared with.
template <class Ours, class P2, class Make>
Row rowOf(const std::string& work, const Make& sequence, const Scale& scale, U32 threads) {
  const auto contenders = [=] {
    std::vector<Contender> all = {shared<Ours>("ours", sequence(), scale, threads),
                                  shared<P2>("P2", sequence(), scale, threads)};
    if (threads == 2) all.push_back(shared<Ours>("one thread", sequence(), scale, 1));
    return all;
  };
  Row row{work + ", " + std::to_string(threads) + (threads == 1 ? " thread" : " threads"),
          contenders,
          {}};
  if (threads == 2) {
    row.goals = {{Measure::time, 0.75, {"P2"}}, {Measure::time, 1 / 1.5, {"one thread"}}};
  }
  row.series = work + " by threads";
  row.x = threads;
  return row;
}

template <class Ours, class P2, class Make>
void append(std::vector<Row>& to, const std::string& work, const Scale& scale,
            const Make& sequence) {
  const U32 most = std::max(2U, std::thread::hardware_concurrency());
  for (U32 threads = 1; threads <= most; threads *= 2) {
    to.push_back(rowOf<Ours, P2>(work, sequence, scale, threads));
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
    append<OurComms<true>, CommsP2>(rows, "real, " + nameOf(file), scale,
                                    [=]() -> const Attributes& { return received(file); });
  }
  const std::string& like = files.front();
  append<OurComms<true>, CommsP2>(rows, "scaled", scale, [=]() -> const Attributes& {
    return scaled(received(like), scale.of(519'000));
  });
  append<OurValues<true>, ValueP2>(
      rows, "values", scale, [=]() -> const std::vector<U64>& { return popularValues(scale); });
  return rows;
}

}  // namespace Bench
