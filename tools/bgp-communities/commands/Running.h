// How commands end when their output or memory does.
#ifndef TOOLS_BGP_COMMUNITIES_RUNNING_H
#define TOOLS_BGP_COMMUNITIES_RUNNING_H

#include <new>
#include <ostream>
#include <string>
#include <string_view>

#include "tools/bgp-communities/ExitStatus.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

inline constexpr const char* programPrefix = "bgp-communities: ";

// In one piece, as others may write to the same terminal or log.
inline void printError(std::ostream& errors, std::string_view text) {
  errors << std::string(programPrefix).append(text).append("\n") << std::flush;
}

// Runs `command`, which writes output and returns an ExitStatus. A reader of the
// output who has gone is no error.
template <class Command>
ExitStatus writing(std::ostream& errors, const Command& command) {
  try {
    return command();
  } catch (const ClosedPipe&) {
    return ExitStatus::fine;
  } catch (const CannotWrite& reason) {
    errors << programPrefix << "cannot write: " << reason.what() << std::endl;
  } catch (const std::bad_alloc&) {
    errors << programPrefix << "out of memory" << std::endl;
  }
  return ExitStatus::impossible;
}

}  // namespace CommTool

#endif
