// Prints results as a table of goals, a table of all contenders, and lines of JSON.
#ifndef BENCH_RATIOS_REPORT_H
#define BENCH_RATIOS_REPORT_H

#include <iosfwd>
#include <vector>

#include "bench/ratios/Result.h"

namespace Bench {

// A Markdown table with a row for each goal: ours, the best peer, the ratio, and whether it is
// met.
void printGoals(std::ostream& out, const std::vector<RowResult>& results);
// A Markdown table with the median time of every contender.
void printContenders(std::ostream& out, const std::vector<RowResult>& results);
// One JSON object per line: {"kind":"time",...} for a contender and {"kind":"goal",...} for a
// goal. scripts/plot_bench.py reads them.
void printJson(std::ostream& out, const std::vector<RowResult>& results);

}  // namespace Bench

#endif
