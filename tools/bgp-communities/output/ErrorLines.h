// Error messages of the program, one line each.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_ERROR_LINES_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_ERROR_LINES_H

#include <ostream>
#include <string>
#include <string_view>

#include "tools/bgp-communities/mrt/ReadObserver.h"

namespace CommTool {

// Every message on standard error begins with the program's name, as is usual for commands.
inline constexpr const char* programPrefix = "bgp-communities: ";

// Prints a message with the program's name before it. The line is written in one piece, because
// other processes may write to the same terminal or log. Allocates the line.
inline void printError(std::ostream& errors, std::string_view text) {
  errors << std::string(programPrefix).append(text).append("\n") << std::flush;
}

// Prints each error of the reading as a line of its own.
class ErrorLines : public ReadObserver {
 public:
  // `to` must live as long as this object.
  explicit ErrorLines(std::ostream& to) : to_(to) {}

  // Prints `text` as printError() does.
  void errorFound(const std::string& text) override { printError(to_, text); }

 private:
  std::ostream& to_;
};

}  // namespace CommTool

#endif
