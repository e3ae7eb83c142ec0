// Runs a command and turns failures of output and memory into an exit status.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_RUNNING_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_RUNNING_H

#include <new>
#include <ostream>

#include "tools/bgp-communities/commands/ExitStatus.h"
#include "tools/bgp-communities/output/ErrorLines.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Runs `command`, which writes output and returns an ExitStatus. If the reader of the output closes
// its end of the pipe, as `head` does, the status is `fine`. A write error or lack of memory is
// printed to `errors`, and the status is `impossible`.
template <class Command>
ExitStatus writing(std::ostream& errors, const Command& command) {
  try {
    return command();
  } catch (const ClosedPipe&) {
    return ExitStatus::fine;
  } catch (const CannotWrite& reason) {
    printError(errors, std::string("cannot write: ") + reason.what());
  } catch (const std::bad_alloc&) {
    // Not by printError(), which allocates.
    errors << programPrefix << "out of memory" << std::endl;
  }
  return ExitStatus::impossible;
}

}  // namespace CommTool

#endif
