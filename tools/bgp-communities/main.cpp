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
#include "tools/bgp-communities/StoreCommand.h"

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

struct StoreOptions {
  CommTool::StoreWriteOptions write;
  CommTool::StoreReadOptions read;
  std::string info;
  std::string remove;
};

CLI::App* addStoreCommand(CLI::App& store, const char* command, const char* text,
                          std::string& name) {
  CLI::App* added = store.add_subcommand(command, text);
  added->add_option("NAME", name, "Shared memory by its name, or a file by a path with a slash")
      ->required();
  return added;
}

void addStore(CLI::App& app, StoreOptions& options) {
  CLI::App* store = app.add_subcommand("store", "Share lists with other processes");
  store->require_subcommand(1);
  CLI::App* write =
      addStoreCommand(*store, "write", "Keep the lists of MRT files", options.write.name);
  write->add_option("FILE", options.write.files, "MRT file; - is standard input")->required();
  write
      ->add_option_function<U32>(
          "--churn",
          [&options](U32 seconds) { options.write.churn = std::chrono::seconds(seconds); },
          "Go on rewriting the lists for that long, or until interrupted")
      ->type_name("SECONDS");
  write->add_option("--size", options.write.size, "What the store may grow to")
      ->type_name("OCTETS");
  CLI::App* read = addStoreCommand(*store, "read", "Rebuild all lists", options.read.name);
  read->add_flag("--lists", options.read.lists, "Print a line a list, too");
  read->add_flag("--follow", options.read.follow, "Read again and again, until interrupted");
  addStoreCommand(*store, "info", "Show what is in a store", options.info);
  addStoreCommand(*store, "remove", "Delete a store", options.remove);
}

CommTool::ExitStatus runStore(const CLI::App& store, const StoreOptions& options) {
  if (store.got_subcommand("write")) {
    return runStoreWrite(options.write, STDOUT_FILENO, std::cerr);
  }
  if (store.got_subcommand("read")) return runStoreRead(options.read, STDOUT_FILENO, std::cerr);
  if (store.got_subcommand("info")) {
    return CommTool::runStoreInfo(options.info, STDOUT_FILENO, std::cerr);
  }
  return CommTool::runStoreRemove(options.remove, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
  CommTool::MrtOptions mrt;
  CommTool::ShowOptions show;
  StoreOptions store;
  CLI::App app("Shows the BGP communities of routing data, interned as a routing agent does.");
  app.require_subcommand(1);
  addMrt(app, mrt);
  addShow(app, show);
  addStore(app, store);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return usageError(app, error);
  }
  // A reader that goes away shows as an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
  CommTool::ExitStatus status{};
  if (app.got_subcommand("store")) {
    status = runStore(*app.get_subcommand("store"), store);
  } else if (app.got_subcommand("show")) {
    status = CommTool::runShow(show, STDOUT_FILENO, std::cerr);
  } else {
    status = CommTool::runMrt(mrt, STDOUT_FILENO, std::cerr);
  }
  return static_cast<int>(status);
}
