// The command line of bgp-communities: options, help texts and the choice of the command.
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
#include "tools/bgp-communities/commands/AttributeCommand.h"
#include "tools/bgp-communities/commands/CommunityArgument.h"
#include "tools/bgp-communities/commands/MrtCommand.h"
#include "tools/bgp-communities/commands/Running.h"
#include "tools/bgp-communities/commands/ShowCommand.h"
#include "tools/bgp-communities/commands/StoreCommand.h"
#include "tools/bgp-communities/output/Json.h"

namespace {

using CommTool::ExitStatus;

// A subcommand and the function that runs it. The function refers to the options that parsing
// fills.
struct Command {
  CLI::App* app;
  std::function<ExitStatus()> run;
};

// Shown at the end of every help text. See ExitStatus.h.
constexpr const char* exitStatuses =
    "Exit status: 0 success; 1 no route matched; 2 wrong usage; 3 some input was damaged\n"
    "(the intact part was processed); 4 no input could be read, or no output written.";

// Handles the exceptions by which the parser ends: a request for help or version, or an error. Help
// is written through TextOutput, so that a closed pipe is no error here either.
ExitStatus usageError(const CLI::App& app, const CLI::ParseError& error) {
  // The parser prints help to `asked`, and errors to standard error.
  std::ostringstream asked;
  const int code = app.exit(error, asked, std::cerr);
  return CommTool::writing(std::cerr, [&] {
    CommTool::TextOutput out(STDOUT_FILENO);
    out.append(asked.str());
    out.flush();
    return code == 0 ? ExitStatus::fine : ExitStatus::wrongUsage;
  });
}

// The matching functions expect UTF-8, and the expression must compile.
Routing::RouteMap::PosixRegex regexOf(const std::string& text) {
  if (!CommTool::isUtf8(text))
    throw CLI::ValidationError("--match", "the expression is not valid UTF-8");
  try {
    return Routing::RouteMap::PosixRegex(text);
  } catch (const Kiv::RangeException& reason) {
    throw CLI::ValidationError("--match", reason.what());
  }
}

// Adds an option whose text is parsed by `read` and assigned to `to`. If `read` returns nothing,
// `problem` says why.
template <class Target, class Read, class Problem>
void addReadOption(CLI::App& app, const char* name, const char* type, const char* help, Target& to,
                   Read read, Problem problem) {
  app.add_option_function<std::string>(
         name,
         [&to, read, problem, name](const std::string& text) {
           auto value = read(text);
           if (!value) throw CLI::ValidationError(name, problem(text));
           to = std::move(value);
         },
         help)
      ->type_name(type);
}

// Why CommTool::readAsText() does not accept a text.
std::string asTextProblem(const std::string& text) {
  return text + " is not an AS number such as 65000 or 1.10";
}

// --kind takes one kind at a time and may be repeated. Otherwise the option would take the files
// that follow as kinds.
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
         "Keep only routes that carry communities of this kind, and print\n"
         "only that kind: standard, large, extended or ipv6; may be repeated")
      ->option_text("KIND")
      ->expected(1)
      ->take_all()
      ->check(CLI::IsMember(names));
}

// The options that select routes.
void addFilters(CLI::App& app, CommTool::MrtOptions& options) {
  addKinds(app, options.filter);
  app.add_option_function<std::string>(
         "--match", [&options](const std::string& text) { options.match = regexOf(text); },
         "Keep only routes with a list that matches, as in a route map: a\n"
         "POSIX extended regular expression on the text of the whole list")
      ->type_name("REGEX");
  addReadOption(app, "--prefix", "CIDR", "Keep only routes to this prefix or a more specific one",
                options.filter.within, CommTool::readPrefixText, CommTool::prefixTextProblem);
  addReadOption(app, "--peer", "AS", "Keep only routes of peers with this AS number",
                options.filter.peerAs, CommTool::readAsText, asTextProblem);
}

// The next functions add one command each, with its options, help texts and examples.
void addMrt(CLI::App& app, std::vector<Command>& commands, CommTool::MrtOptions& options) {
  CLI::App* mrt = app.add_subcommand(
      "mrt", "Read MRT files, compressed or not, and print a summary or their routes");
  mrt->add_option("FILE", options.files, "MRT file; - is standard input")->required();
  mrt->add_flag("--routes", options.routes, "Print one line for each route instead of the summary");
  mrt->add_flag("--json", options.json,
                "Print JSON Lines: one object for each route; with --summary,\n"
                "only the summary, as one object");
  mrt->add_flag("--summary", options.summary,
                "Print the summary (the default without --routes and --json);\n"
                "with --routes, print it after the routes");
  mrt->add_option("--top", options.top, "Number of most used lists that the summary names")
      ->check(CLI::Range(0, 1000000))
      ->option_text("N (5)");
  addFilters(*mrt, options);
  mrt->add_flag("--verify", options.verify,
                "Re-encode each list, compare it with the received attribute, and\n"
                "count the flags Partial and Extended Length");
  mrt->add_flag_callback(
      "--no-progress", [&options] { options.progress = false; },
      "Do not show the progress line (shown on a terminal by default)");
  mrt->footer(
      std::string("Fields of a line: seconds|A (announced), W (withdrawn) or B (table)|peer|AS|\n"
                  "prefix|standard|large|extended|IPv6 extended\n\nExamples:\n"
                  "  bgp-communities mrt updates.gz\n"
                  "  bgp-communities mrt --routes --match '(^| )65000:1' rib.bz2\n"
                  "  bgp-communities mrt --json --kind large --prefix 192.0.2.0/24 -\n\n") +
      exitStatuses);
  commands.push_back({mrt, [&options] {
                        // Routes on the same terminal would be mixed with the progress line.
                        const bool mixed = options.printsRoutes() && ::isatty(STDOUT_FILENO) == 1;
                        options.progress =
                            options.progress && !mixed && ::isatty(STDERR_FILENO) == 1;
                        return runMrt(options, STDOUT_FILENO, std::cerr);
                      }});
}

void addShow(CLI::App& app, std::vector<Command>& commands, CommTool::ShowOptions& options) {
  CLI::App* show =
      app.add_subcommand("show", "Explain single communities and print all their text forms");
  show->add_option("VALUE", options.values, std::string(CommTool::communityForms))->required();
  show->add_flag("--asdot", options.asdot,
                 "Print AS numbers above 65535 as two numbers with a period: 1.10");
  show->add_flag("--weighted", options.weighted, "Print link bandwidth as a weight");
  show->add_flag("--json", options.json, "Print JSON Lines: one object for each value");
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
                   "One or more path attributes with their headers, in hexadecimal;\n"
                   "blanks, colons and 0x are allowed between octets")
      ->required();
  attribute->add_flag("--json", options.json, "Print JSON Lines: one object for each attribute");
  attribute->footer(std::string("Examples:\n"
                                "  bgp-communities attribute c0080400010002\n"
                                "  bgp-communities attribute --json 'c0 08 04 ff:ff:ff:01'\n\n") +
                    exitStatuses);
  commands.push_back(
      {attribute, [&options] { return runAttribute(options, STDOUT_FILENO, std::cerr); }});
}

// The options of all commands on stores.
struct StoreOptions {
  CommTool::StoreWriteOptions write;
  CommTool::StoreReadOptions read;
  std::string info;
  std::string remove;
};

// Adds a command on a store, whose first argument is the name of the store.
CLI::App* addStoreCommand(CLI::App& store, const char* command, const char* text,
                          std::string& name) {
  CLI::App* added = store.add_subcommand(command, text);
  added->add_option("NAME", name, "Name of POSIX shared memory, or path of a file (with a slash)")
      ->required();
  return added;
}

// Runs the subcommand that was given. The last one needs no check, since one of them is required.
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
  CLI::App* store = app.add_subcommand("store", "Share lists of communities with other processes");
  store->require_subcommand(1);
  CLI::App* write = addStoreCommand(*store, "write", "Create a store with the lists of MRT files",
                                    options.write.name);
  write->add_option("FILE", options.write.files, "MRT file; - is standard input")->required();
  write
      ->add_option_function<U32>(
          "--churn",
          [&options](U32 seconds) { options.write.churn = std::chrono::seconds(seconds); },
          "Then rewrite lists for this time, or until interrupted")
      ->type_name("SECONDS");
  write->add_option("--size", options.write.size, "Maximum size of the store")
      ->check(CLI::Range(Stash::storeLengthMin, std::size_t{Stash::storeMaximumLimit}))
      ->option_text("OCTETS");
  CLI::App* read = addStoreCommand(*store, "read", "Rebuild all lists of a store and count them",
                                   options.read.name);
  read->add_flag("--lists", options.read.lists, "Also print one line for each list");
  read->add_flag("--follow", options.read.follow,
                 "Read the store again and again, until interrupted");
  addStoreCommand(*store, "info", "Show the header of a store and the number of its lists",
                  options.info);
  addStoreCommand(*store, "remove", "Delete a store", options.remove);
  commands.push_back({store, [store, &options] { return runStore(*store, options); }});
}

// If the caller has closed descriptor 0, 1 or 2, the next open() would get its number, and output
// or error messages could overwrite that file, for example a store. So each gap is filled with
// /dev/null, opened in the wrong direction: reads from standard input and writes to standard output
// and error still fail, as they do on a closed descriptor.
void fillClosedDescriptors() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(fd, F_GETFD) >= 0) continue;
    // open() returns the lowest free descriptor, which is this one.
    (void)::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

// The parser requires exactly one subcommand, so one of them was parsed.
ExitStatus runAskedFor(const std::vector<Command>& commands) {
  const auto asked =
      std::ranges::find_if(commands, [](const Command& command) { return command.app->parsed(); });
  return asked->run();
}

// The options live here, as the commands refer to them. Progress is on by default; --no-progress
// and a standard error that is no terminal turn it off.
ExitStatus run(int argc, char** argv) {
  CommTool::MrtOptions mrt;
  mrt.progress = true;
  CommTool::ShowOptions show;
  CommTool::AttributeOptions attribute;
  StoreOptions store;
  CLI::App app(
      "Shows the BGP communities of routing data and interns them as a routing agent does.");
  app.set_version_flag("--version", "bgp-communities " OVBGP_VERSION);
  app.require_subcommand(1);
  app.footer(std::string("bgp-communities COMMAND --help explains a command.\n\n") + exitStatuses);
  std::vector<Command> commands;
  addMrt(app, commands, mrt);
  addShow(app, commands, show);
  addAttribute(app, commands, attribute);
  addStore(app, commands, store);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return usageError(app, error);
  }
  return runAskedFor(commands);
}

}  // namespace

// Parsing options and compiling an expression need memory too, so they run within writing().
int main(int argc, char** argv) {
  // If the reader of the output closes the pipe, write() must fail and not end the process.
  std::signal(SIGPIPE, SIG_IGN);
  fillClosedDescriptors();
  return static_cast<int>(CommTool::writing(std::cerr, [&] { return run(argc, argv); }));
}
