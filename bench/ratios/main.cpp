// Ours beside the best that a good engineer would use instead, as ratios of times
// and bytes taken in one run. docs/performance.md says how.
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

// Each lists its rows; their work is made when they run.
std::vector<std::function<std::vector<Row>()>> subjects(const Options& options) {
  const Scale scale{options.quick};
  const Files files = options.files;
  return {[=] { return listRows(files, scale); }, [=] { return valueRows(scale); },
          [=] { return extListRows(scale); },     [=] { return threadRows(files, scale); },
          [=] { return textRows(scale); },        [=] { return toolRows(files); }};
}

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
  CLI::App app("Ours beside its peers: times and bytes, as ratios");
  app.add_flag("--quick", options.quick, "A tenth of the work, in seconds; no figures to quote");
  app.add_option("--rounds", options.rounds, "Samples of each contender");
  app.add_option("--only", options.only, "Only rows whose name has this in it");
  app.add_option("--contender", options.contender, "Only this one, to see where its time goes");
  app.add_option("--json", options.json, "Write all results to this file, one object a line");
  app.add_option("FILE", options.files, "Routing data in MRT format")
      ->envname("OVBGP_BENCH_MRT")
      ->check(CLI::ExistingFile);
  CLI11_PARSE(app, argc, argv);
  if (options.files.empty()) options.files = {OVBGP_SAMPLES_DIR "/speakers-updates.mrt.gz"};
  std::signal(SIGPIPE, SIG_IGN);  // a contender that dies is told by an error
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
