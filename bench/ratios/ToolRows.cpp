#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <stdexcept>
#include <system_error>

#include "bench/Workload.h"
#include "bench/peers/Names.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

using Command = std::vector<std::string>;

// Runs a command to its end and discards its output. A sample is wall time in milliseconds.
class CommandRun final : public Trial {
 public:
  explicit CommandRun(Command command) : command_(std::move(command)) {
    for (std::string& word : command_) words_.push_back(word.data());
    words_.push_back(nullptr);
    posix_spawn_file_actions_init(&actions_);
    for (const int out : {1, 2}) {
      posix_spawn_file_actions_addopen(&actions_, out, "/dev/null", O_WRONLY, 0);
    }
    spawn();  // brings the file and the program into the page cache
  }
  ~CommandRun() override { posix_spawn_file_actions_destroy(&actions_); }
  double sample() override {
    return wallNanoseconds([this] { spawn(); }) / 1e6;
  }

 private:
  // Throws if the command cannot be started or fails.
  void spawn() {
    pid_t process = 0;
    const int error = posix_spawnp(&process, words_[0], &actions_, nullptr, words_.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category(), words_[0]);
    int status = 0;
    waitpid(process, &status, 0);
    if (status != 0) throw std::runtime_error("failed: " + command_[0]);
  }

  Command command_;
  std::vector<char*> words_;
  posix_spawn_file_actions_t actions_;
};

Contender command(const char* name, const Command& words) {
  return {name, trial<CommandRun>(words)};
}

// A row with one peer. Programs take milliseconds, so nine rounds are enough.
Row row(const std::string& name, const Command& ours, const char* peer, const Command& theirs,
        double atMost) {
  const auto contenders = [=]() -> std::vector<Contender> {
    return {command(Name::ours, ours), command(peer, theirs)};
  };
  Row made{name, contenders, {{Measure::time, atMost, {peer}}}};
  made.unit = "ms";
  made.rounds = 9;
  return made;
}

}  // namespace

std::vector<Row> toolRows(const Files& files) {
  const std::string tool = OVBGP_TOOL;
  std::vector<Row> rows;
  for (const std::string& file : files) {
    // bgpdump prints each route, so --routes is compared with it. A summary must decompress the
    // file; the goal bounds the work beyond the decompression.
    rows.push_back(row("mrt --routes, " + nameOf(file), {tool, "mrt", "--routes", file},
                       "bgpdump -m", {"bgpdump", "-m", file}, 0.1));
    rows.push_back(row("mrt, summary, " + nameOf(file), {tool, "mrt", file}, "gzip -dc",
                       {"gzip", "-dc", file}, 2.5));
  }
  return rows;
}

}  // namespace Bench
