// What a command of the tool makes of its arguments: its status, and what it prints.
#ifndef TESTS_TOOLS_OUTCOME_H
#define TESTS_TOOLS_OUTCOME_H

#include <sstream>
#include <string>

#include "tests/tools/TempFile.h"
#include "tools/bgp-communities/ExitStatus.h"

namespace CommTool {

struct Outcome {
  ExitStatus status{};
  std::string out;
  std::string errors;
};

// `run(out, errors)` is the command.
template <class Run>
Outcome outcomeOf(const Run& run) {
  const TempFile out;
  std::ostringstream errors;
  const ExitStatus status = run(out.fd(), errors);
  return {status, out.contents(), errors.str()};
}

}  // namespace CommTool

#endif
