// All rows of the table, by subject.
#ifndef BENCH_RATIOS_ROWS_H
#define BENCH_RATIOS_ROWS_H

#include <string>
#include <vector>

#include "bench/ratios/Row.h"

namespace Bench {

using Files = std::vector<std::string>;

// Interning of standard lists: received, scaled, distinct, by length.
std::vector<Row> listRows(const Files& files, const Scale& scale);
// Interning of extended communities: held, growing, changing.
std::vector<Row> valueRows(const Scale& scale);
// Interning of extended lists of values that are interned.
std::vector<Row> extListRows(const Scale& scale);
// One table used by several threads.
std::vector<Row> threadRows(const Files& files, const Scale& scale);
// Texts and matches of a standard list.
std::vector<Row> textRows(const Scale& scale);
// The tool beside others, on whole files.
std::vector<Row> toolRows(const Files& files);

}  // namespace Bench

#endif
