// What the program ends with.
#ifndef TOOLS_BGP_COMMUNITIES_EXIT_STATUS_H
#define TOOLS_BGP_COMMUNITIES_EXIT_STATUS_H

namespace CommTool {

// The worst that happened counts.
enum class ExitStatus : int {
  fine = 0,
  noMatch = 1,  // no route was what was asked for
  wrongUsage = 2,
  damaged = 3,     // some input was damaged; all that was good is delivered
  impossible = 4,  // nothing could be read, or the output not be written
};

}  // namespace CommTool

#endif
