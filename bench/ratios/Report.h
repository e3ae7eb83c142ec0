// Prints results: the table of goals, that of all contenders, and lines of JSON.
#ifndef BENCH_RATIOS_REPORT_H
#define BENCH_RATIOS_REPORT_H

#include <iosfwd>
#include <vector>

#include "bench/ratios/Result.h"

namespace Bench {

// Markdown.
void printGoals(std::ostream& out, const std::vector<RowResult>& results);
void printContenders(std::ostream& out, const std::vector<RowResult>& results);
// One object a line: {"kind":"time",...} a contender, {"kind":"goal",...} a goal.
void printJson(std::ostream& out, const std::vector<RowResult>& results);

}  // namespace Bench

#endif
