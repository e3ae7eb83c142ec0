// The exit statuses of the program.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_EXIT_STATUS_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_EXIT_STATUS_H

#include "tools/bgp-communities/bgp/Counts.h"

namespace CommTool {

// If several apply, the program exits with the highest. The values are documented for users.
enum class ExitStatus : int {
  // Everything was read and printed.
  fine = 0,
  // A filter was given and no route passed it.
  noMatch = 1,
  // The command line cannot be understood.
  wrongUsage = 2,
  // Some of the input was damaged. The intact part was processed.
  damaged = 3,
  // No input could be read, or the output could not be written.
  impossible = 4,
};

// The status that reading files has led to: `impossible` if no file could be opened, `damaged`
// if some could not or if any input was damaged, else `fine`.
inline ExitStatus statusOf(const InputCounts& counts) {
  if (counts.files == 0 && counts.unopened > 0) return ExitStatus::impossible;
  return counts.damaged + counts.unopened > 0 ? ExitStatus::damaged : ExitStatus::fine;
}

}  // namespace CommTool

#endif
