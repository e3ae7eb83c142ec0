// The rows of the table, by subject. `files` are files of routing data and must not be empty.
#ifndef BENCH_RATIOS_ROWS_H
#define BENCH_RATIOS_ROWS_H

#include <string>
#include <vector>

#include "bench/ratios/Row.h"

namespace Bench {

using Files = std::vector<std::string>;

// Interning of standard lists: as received, scaled up, all different, and by length.
std::vector<Row> listRows(const Files& files, const Scale& scale);
// Interning of extended communities: hits, a growing table, and insertions with releases.
std::vector<Row> valueRows(const Scale& scale);
// Interning of lists of extended communities that are already interned.
std::vector<Row> extListRows(const Scale& scale);
// One table used by several threads.
std::vector<Row> threadRows(const Files& files, const Scale& scale);
// The text of a standard list, and matching it with an expression.
std::vector<Row> textRows(const Scale& scale);
// The tool compared with other programs, on whole files.
std::vector<Row> toolRows(const Files& files);

}  // namespace Bench

#endif
