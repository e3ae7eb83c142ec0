// Compares ours with the best peers that a good engineer would use instead: prints the ratios of
// times and bytes, all measured in one run. docs/performance.md describes the method.
#include <CLI/CLI.hpp>
#include <csignal>
#include <fstream>
#include <iostream>

#include "bench/ratios/Report.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

struct Options {
  bool quick = false;
  U32 rounds = 0;
  std::string only;
  std::string contender;
  std::string json;
  Files files;
};

// The subjects in the order of the report. A subject creates its rows when it is its turn, and a
// row creates its data when it runs.
std::vector<std::function<std::vector<Row>()>> subjects(const Options& options) {
  const Scale scale{options.quick};
  const Files files = options.files;
  return {[=] { return listRows(files, scale); }, [=] { return valueRows(scale); },
          [=] { return extListRows(scale); },     [=] { return threadRows(files, scale); },
          [=] { return textRows(scale); },        [=] { return toolRows(files); }};
}

// Shows the name of each row on standard error while it runs; the tables follow at the end.
std::vector<RowResult> runAll(const Options& options) {
  std::vector<RowResult> results;
  for (const auto& subject : subjects(options)) {
    for (const Row& row : subject()) {
      if (row.name.find(options.only) == row.name.npos) continue;
      std::cerr << row.name << '\n';
      const U32 rounds = Scale{options.quick}.rounds(options.rounds ? options.rounds : row.rounds);
      results.push_back(run(row, rounds, options.contender));
    }
  }
  return results;
}

// Writes the JSON lines first: a run takes minutes, and its figures must not be lost.
void report(const Options& options, const std::vector<RowResult>& results) {
  if (!options.json.empty()) {
    std::ofstream json(options.json);
    printJson(json, results);
    if (!json.flush()) throw std::runtime_error("cannot write " + options.json);
  }
  std::cout << "## Goals\n\n";
  printGoals(std::cout, results);
  std::cout << "\n## All contenders\n\n";
  printContenders(std::cout, results);
}

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Compare ours with its peers: times and bytes, as ratios");
  app.add_flag("--quick", options.quick,
               "Do a tenth of the work, in seconds; the figures are not valid");
  app.add_option("--rounds", options.rounds, "Number of samples of each contender");
  app.add_option("--only", options.only, "Run only the rows whose name contains this text");
  app.add_option("--contender", options.contender, "Run only this contender, for a profiler");
  app.add_option("--json", options.json,
                 "Write all results to this file, one JSON object per line");
  app.add_option("FILE", options.files, "Routing data in MRT format")
      ->envname("OVBGP_BENCH_MRT")
      ->check(CLI::ExistingFile);
  CLI11_PARSE(app, argc, argv);
  if (options.files.empty()) options.files = {OVBGP_SAMPLES_DIR "/speakers-updates.mrt.gz"};
  // Writing to a worker that has died must fail with an error, not end this process.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    report(options, runAll(options));
  } catch (const std::exception& reason) {
    std::cerr << "error: " << reason.what() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) { return Bench::main(argc, argv); }
