// The command line of bgp-communities.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "Kiv/Exception.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "tools/bgp-communities/CommunityArgument.h"
#include "tools/bgp-communities/MrtCommand.h"
#include "tools/bgp-communities/ShowCommand.h"

namespace {

int usageError(const CLI::App& app, const CLI::ParseError& error) {
  const bool asked = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
  app.exit(error);
  return static_cast<int>(asked ? CommTool::ExitStatus::fine : CommTool::ExitStatus::wrongUsage);
}

Routing::RouteMap::PosixRegex regexOf(const std::string& text) {
  try {
    return Routing::RouteMap::PosixRegex(text);
  } catch (const Kiv::RangeException& reason) {
    throw CLI::ValidationError("--match", reason.what());
  }
}

void addMrt(CLI::App& app, CommTool::MrtOptions& options) {
  CLI::App* mrt = app.add_subcommand("mrt", "Read MRT files, compressed or not");
  mrt->add_option("FILE", options.files, "MRT file; - is standard input")->required();
  mrt->add_flag("--routes", options.routes, "Print a line a route instead of the summary");
  mrt->add_flag("--verify", options.verify, "Compare what each list serializes to with its origin");
  mrt->add_option_function<std::string>(
         "--match", [&options](const std::string& text) { options.match = regexOf(text); },
         "Keep the routes of which a list matches, as in a route map")
      ->type_name("REGEX");
}

void addShow(CLI::App& app, CommTool::ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Explain single communities");
  show->add_option("VALUE", options.values, std::string(CommTool::communityForms))->required();
  show->add_flag("--asdot", options.asdot, "Print AS numbers above 65535 as two halves");
  show->add_flag("--weighted", options.weighted, "Print link bandwidth as a weight");
  show->add_flag("--json", options.json, "Print JSON Lines, an object a value");
}

}  // namespace

int main(int argc, char** argv) {
  CommTool::MrtOptions mrt;
  CommTool::ShowOptions show;
  CLI::App app("Shows the BGP communities of routing data, interned as a routing agent does.");
  app.require_subcommand(1);
  addMrt(app, mrt);
  addShow(app, show);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return usageError(app, error);
  }
  // A reader that goes away shows as an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
  const CommTool::ExitStatus status = app.got_subcommand("show")
                                          ? CommTool::runShow(show, STDOUT_FILENO, std::cerr)
                                          : CommTool::runMrt(mrt, STDOUT_FILENO, std::cerr);
  return static_cast<int>(status);
}
