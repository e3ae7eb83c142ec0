// The command line of bgp-communities.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <functional>
#include <iostream>
#include <sstream>

#include "Kiv/Exception.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "Stash/StoreLayout.h"
#include "tools/bgp-communities/AttributeCommand.h"
#include "tools/bgp-communities/CommunityArgument.h"
#include "tools/bgp-communities/Json.h"
#include "tools/bgp-communities/MrtCommand.h"
#include "tools/bgp-communities/Running.h"
#include "tools/bgp-communities/ShowCommand.h"
#include "tools/bgp-communities/StoreCommand.h"

namespace {

using CommTool::ExitStatus;

// What to run once the command line is read, by the subcommand that was asked for.
struct Command {
  CLI::App* app;
  std::function<ExitStatus()> run;
};

constexpr const char* exitStatuses =
    "Exit status: 0 all fine; 1 nothing matched; 2 wrong usage; 3 some input was damaged,\n"
    "and all that was good is delivered; 4 nothing could be read, or output not written.";

// What ends the program before it begins: help that is asked for, or an error.
ExitStatus usageError(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream asked;
  const int code = app.exit(error, asked, std::cerr);
  return CommTool::writing(std::cerr, [&] {
    CommTool::TextOutput out(STDOUT_FILENO);
    out.append(asked.str());
    out.flush();
    return code == 0 ? ExitStatus::fine : ExitStatus::wrongUsage;
  });
}

Routing::RouteMap::PosixRegex regexOf(const std::string& text) {
  if (!CommTool::isUtf8(text)) throw CLI::ValidationError("--match", "not UTF-8 text");
  try {
    return Routing::RouteMap::PosixRegex(text);
  } catch (const Kiv::RangeException& reason) {
    throw CLI::ValidationError("--match", reason.what());
  }
}

// An option whose text `read` turns into what it assigns to `to`.
template <class Target, class Read>
void addReadOption(CLI::App& app, const char* name, const char* type, const char* help, Target& to,
                   Read read) {
  app.add_option_function<std::string>(
         name,
         [&to, read, name, type](const std::string& text) {
           auto value = read(text);
           if (!value) throw CLI::ValidationError(name, text + " is no " + type);
           to = std::move(value);
         },
         help)
      ->type_name(type);
}

void addKinds(CLI::App& app, CommTool::RouteFilter& filter) {
  std::vector<std::string> names;
  names.reserve(CommTool::communityKindRows.size());
  for (const CommTool::CommunityKindRow& row : CommTool::communityKindRows) {
    names.emplace_back(row.option);
  }
  app.add_option_function<std::vector<std::string>>(
         "--kind",
         [&filter](const std::vector<std::string>& chosen) {
           CommTool::KindSet kinds;
           for (const CommTool::CommunityKindRow& row : CommTool::communityKindRows) {
             if (std::ranges::count(chosen, row.option) > 0) kinds.add(row.kind);
           }
           filter.kinds = kinds;
         },
         "Only routes with communities of this kind, and no other kinds of these:\n"
         "standard, large, extended or ipv6; may be repeated")
      ->option_text("KIND")
      ->expected(1)
      ->take_all()
      ->check(CLI::IsMember(names));
}

void addFilters(CLI::App& app, CommTool::MrtOptions& options) {
  addKinds(app, options.filter);
  app.add_option_function<std::string>(
         "--match", [&options](const std::string& text) { options.match = regexOf(text); },
         "Only routes of which a list matches, as in a route map: a POSIX\n"
         "extended expression that sees the list as one line")
      ->type_name("REGEX");
  addReadOption(app, "--prefix", "CIDR", "Only routes to this prefix or a part of it",
                options.filter.within, CommTool::readPrefixText);
  addReadOption(app, "--peer", "AS", "Only routes of the peers with this AS number",
                options.filter.peerAs, CommTool::readAsText);
}

void addMrt(CLI::App& app, std::vector<Command>& commands, CommTool::MrtOptions& options) {
  CLI::App* mrt = app.add_subcommand("mrt", "Read MRT files, compressed or not, and sum them up");
  mrt->add_option("FILE", options.files, "MRT file; - is standard input")->required();
  mrt->add_flag("--routes", options.routes, "Print a line a route instead of the summary");
  mrt->add_flag("--json", options.json,
                "Print JSON Lines: an object a route; with --summary, the\n"
                "summary alone, as one object");
  mrt->add_flag("--summary", options.summary,
                "Print the summary: the default without --routes and --json,\n"
                "and with --routes what follows the routes");
  mrt->add_option("--top", options.top, "How many of the lists in most use the summary names")
      ->check(CLI::Range(0, 1000000))
      ->option_text("N (5)");
  addFilters(*mrt, options);
  mrt->add_flag("--verify", options.verify,
                "Compare what each list serializes to with its origin, and\n"
                "count the flags Partial and Extended Length");
  mrt->add_flag_callback(
      "--no-progress", [&options] { options.progress = false; },
      "Show no progress, which long work does on a terminal");
  mrt->footer(
      std::string("Fields of a line: seconds|A, W or B (table)|peer|AS|prefix|standard|large|"
                  "extended|IPv6\n\nExamples:\n"
                  "  bgp-communities mrt updates.gz\n"
                  "  bgp-communities mrt --routes --match '(^| )65000:1' rib.bz2\n"
                  "  bgp-communities mrt --json --kind large --prefix 192.0.2.0/24 -\n\n") +
      exitStatuses);
  commands.push_back({mrt, [&options] {
                        // Routes on the same terminal show how far it is.
                        const bool mixed = options.printsRoutes() && ::isatty(STDOUT_FILENO) == 1;
                        options.progress =
                            options.progress && !mixed && ::isatty(STDERR_FILENO) == 1;
                        return runMrt(options, STDOUT_FILENO, std::cerr);
                      }});
}

void addShow(CLI::App& app, std::vector<Command>& commands, CommTool::ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Explain single communities, in every form of text");
  show->add_option("VALUE", options.values, std::string(CommTool::communityForms))->required();
  show->add_flag("--asdot", options.asdot, "Print AS numbers above 65535 as two halves");
  show->add_flag("--weighted", options.weighted, "Print link bandwidth as a weight");
  show->add_flag("--json", options.json, "Print JSON Lines, an object a value");
  show->footer(std::string("Examples:\n"
                           "  bgp-communities show 65535:65281 graceful-shutdown 4200000000:7:8\n"
                           "  bgp-communities show --json 0x0002fde800000064\n\n") +
               exitStatuses);
  commands.push_back({show, [&options] { return runShow(options, STDOUT_FILENO, std::cerr); }});
}

void addAttribute(CLI::App& app, std::vector<Command>& commands,
                  CommTool::AttributeOptions& options) {
  CLI::App* attribute =
      app.add_subcommand("attribute", "Explain path attributes given in hexadecimal");
  attribute
      ->add_option("HEX", options.octets,
                   "Octets of a path attribute or of a run of them, headers and\n"
                   "all; blanks, colons and 0x may stand between")
      ->required();
  attribute->add_flag("--json", options.json, "Print JSON Lines, an object an attribute");
  attribute->footer(std::string("Examples:\n"
                                "  bgp-communities attribute c0080400010002\n"
                                "  bgp-communities attribute --json 'c0 08 04 ff:ff:ff:01'\n\n") +
                    exitStatuses);
  commands.push_back(
      {attribute, [&options] { return runAttribute(options, STDOUT_FILENO, std::cerr); }});
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

ExitStatus runStore(const CLI::App& store, const StoreOptions& options) {
  if (store.got_subcommand("write")) {
    return runStoreWrite(options.write, STDOUT_FILENO, std::cerr);
  }
  if (store.got_subcommand("read")) return runStoreRead(options.read, STDOUT_FILENO, std::cerr);
  if (store.got_subcommand("info")) {
    return CommTool::runStoreInfo(options.info, STDOUT_FILENO, std::cerr);
  }
  return CommTool::runStoreRemove(options.remove, std::cerr);
}

void addStore(CLI::App& app, std::vector<Command>& commands, StoreOptions& options) {
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
      ->check(CLI::Range(Stash::storeLengthMin, std::size_t{Stash::storeMaximumLimit}))
      ->option_text("OCTETS");
  CLI::App* read = addStoreCommand(*store, "read", "Rebuild all lists", options.read.name);
  read->add_flag("--lists", options.read.lists, "Print a line a list, too");
  read->add_flag("--follow", options.read.follow, "Read again and again, until interrupted");
  addStoreCommand(*store, "info", "Show what is in a store", options.info);
  addStoreCommand(*store, "remove", "Delete a store", options.remove);
  commands.push_back({store, [store, &options] { return runStore(*store, options); }});
}

// A standard descriptor that the caller has closed would be the next file's, and if that
// is a store, it would be written over.  What takes its place fails as one that is
// closed does: it can be read where one writes, and written where one reads.
void closedDescriptorsTake() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(fd, F_GETFD) >= 0) continue;
    // The lowest that is free, which is this one.
    (void)::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

ExitStatus runAskedFor(const std::vector<Command>& commands) {
  const auto asked =
      std::ranges::find_if(commands, [](const Command& command) { return command.app->parsed(); });
  return asked->run();
}

int run(int argc, char** argv) {
  CommTool::MrtOptions mrt;
  mrt.progress = true;
  CommTool::ShowOptions show;
  CommTool::AttributeOptions attribute;
  StoreOptions store;
  CLI::App app("Shows the BGP communities of routing data, interned as a routing agent does.");
  app.set_version_flag("--version", "bgp-communities " OVBGP_VERSION);
  app.require_subcommand(1);
  app.footer(std::string("bgp-communities COMMAND --help tells all of a command.\n\n") +
             exitStatuses);
  std::vector<Command> commands;
  addMrt(app, commands, mrt);
  addShow(app, commands, show);
  addAttribute(app, commands, attribute);
  addStore(app, commands, store);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return static_cast<int>(usageError(app, error));
  }
  return static_cast<int>(runAskedFor(commands));
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away shows as an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
  closedDescriptorsTake();
  return run(argc, argv);
}
