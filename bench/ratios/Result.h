// The measured figures of a row, and whether it meets its goals.
#ifndef BENCH_RATIOS_RESULT_H
#define BENCH_RATIOS_RESULT_H

#include <string>
#include <vector>

#include "bench/ratios/Row.h"

namespace Bench {

// The median and the quartiles.
struct Spread {
  double median = 0;
  double low = 0;
  double high = 0;
};

// All zero for no values.
Spread spreadOf(std::vector<double> values);

struct ContenderResult {
  std::string name;
  std::vector<double> samples;  // by round, in the row's unit
  double bytes = 0;
};

struct GoalResult {
  Goal goal;
  std::string peer;  // the best peer of the goal; empty if the goal bounds an absolute figure
  double ours = 0;
  double theirs = 0;
  Spread figure;  // the bounded figure: the ratio ours/theirs, or ours if there is no peer
  bool met() const { return figure.median <= goal.atMost; }
};

struct RowResult {
  Row row;
  std::vector<ContenderResult> contenders;  // ours first
  std::vector<GoalResult> goals;
};

// Takes one sample of every contender in each of `rounds` rounds, in an order that is shuffled
// each round. A drift in the speed of the machine affects all contenders of a round alike, so
// only times of the same round are compared. If `only` is not empty, only the contender of that
// name runs and no goal is computed. Throws std::runtime_error if the contenders do not hold the
// same number of objects at the end.
RowResult run(const Row& row, U32 rounds, const std::string& only);

}  // namespace Bench

#endif
