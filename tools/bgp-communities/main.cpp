// The command line of bgp-communities.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "tools/bgp-communities/MrtCommand.h"

namespace {

int usageError(const CLI::App& app, const CLI::ParseError& error) {
  const bool asked = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
  app.exit(error);
  return static_cast<int>(asked ? CommTool::ExitStatus::fine : CommTool::ExitStatus::wrongUsage);
}

}  // namespace

int main(int argc, char** argv) {
  CommTool::MrtOptions options;
  CLI::App app("Shows the BGP communities of routing data, interned as a routing agent does.");
  app.require_subcommand(1);
  CLI::App* mrt = app.add_subcommand("mrt", "Read MRT files, compressed or not");
  mrt->add_option("FILE", options.files, "MRT file; - is standard input")->required();
  mrt->add_flag("--routes", options.routes, "Print a line a route instead of the summary");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return usageError(app, error);
  }
  // A reader that goes away shows as an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
  return static_cast<int>(CommTool::runMrt(options, STDOUT_FILENO, std::cerr));
}
