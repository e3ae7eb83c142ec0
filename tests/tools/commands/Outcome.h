// Runs a command of the tool and collects its exit status, output and error messages.
#ifndef TESTS_TOOLS_COMMANDS_OUTCOME_H
#define TESTS_TOOLS_COMMANDS_OUTCOME_H

#include <sstream>
#include <string>

#include "tests/tools/TempFile.h"
#include "tools/bgp-communities/commands/ExitStatus.h"

namespace CommTool {

// The result of a command.
struct Outcome {
  ExitStatus status{};
  std::string out;
  std::string errors;
};

// Calls `run(out, errors)`, which is the command, with a file and a stream to print to.
template <class Run>
Outcome outcomeOf(const Run& run) {
  const TempFile out;
  std::ostringstream errors;
  const ExitStatus status = run(out.fd(), errors);
  return {status, out.contents(), errors.str()};
}

}  // namespace CommTool

#endif
