// What came out of a row.
#ifndef BENCH_RATIOS_RESULT_H
#define BENCH_RATIOS_RESULT_H

#include <string>
#include <vector>

#include "bench/ratios/Row.h"

namespace Bench {

// The middle one, and the ends of the middle half.
struct Spread {
  double median = 0;
  double low = 0;
  double high = 0;
};

Spread spreadOf(std::vector<double> values);

struct ContenderResult {
  std::string name;
  std::vector<double> samples;  // by round, in the row's unit
  double bytes = 0;
};

struct GoalResult {
  Goal goal;
  std::string peer;  // the best of those named; empty for an absolute figure
  double ours = 0;
  double theirs = 0;
  Spread figure;  // what the goal bounds: ours, as part of theirs if there is a peer
  bool met() const { return figure.median <= goal.atMost; }
};

struct RowResult {
  Row row;
  std::vector<ContenderResult> contenders;  // ours first
  std::vector<GoalResult> goals;
};

// Runs every contender `rounds` times, one after the other in an order that is
// shuffled each round: what drifts in the machine, drifts for all. So only times
// of the same round are compared. A name in `only` leaves all other contenders, and
// all goals, out.
RowResult run(const Row& row, U32 rounds, const std::string& only);

}  // namespace Bench

#endif
