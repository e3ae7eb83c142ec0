#include "tools/bgp-communities/MrtCommand.h"

#include <chrono>
#include <ostream>

#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/MrtDecoder.h"
#include "tools/bgp-communities/RouteLines.h"
#include "tools/bgp-communities/Running.h"
#include "tools/bgp-communities/Summary.h"
#include "tools/bgp-communities/Verification.h"

namespace CommTool {

namespace {

// As a route map matches; IPv6 communities by the one text that policies know.
bool matches(const auto& list, const Routing::RouteMap::PosixRegex& regex) {
  return list.matchCommunitiesRegex(&regex);
}
bool matches(const Routing::Bgp::ExtCommIp6List& list, const Routing::RouteMap::PosixRegex& regex) {
  return regex.execute(list.commsStringForm().c_str()) == 0;
}

// One run over all files.
class MrtRun : public RouteSink {
 public:
  MrtRun(const MrtOptions& options, int out, std::ostream& errors)
      : options_(options), errors_(errors), out_(out), lines_(out_) {}

  ExitStatus run() {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& path : options_.files) {
      readFile(path);
    }
    if (!options_.routes && counts_.files > 0) {
      printSummary(counts_, held_, std::chrono::steady_clock::now() - start, out_);
    }
    out_.flush();
    return status();
  }

  void handleRoutes(const RouteBatch& batch) override {
    const RouteCommunities communities = held_.tables().intern(batch.communities);
    if (options_.verify) {
      verify(batch.communities, communities, problems_);
    }
    if (!isWanted(communities)) return held_.drop(batch);
    wanted_ = true;
    held_.add(batch, communities);
    if (options_.routes) {
      lines_.print(batch, communities);
    }
  }

 private:
  // A withdrawal has no lists: it is wanted only where every route is.
  bool isWanted(const RouteCommunities& communities) const {
    if (!options_.match) return true;
    bool wanted = false;
    communities.forEachList([&](CommunityKind, const auto& list) {
      wanted = wanted || matches(list, *options_.match);
    });
    return wanted;
  }

  void readFile(const std::string& path) {
    const std::string name = path == "-" ? "standard input" : path;
    try {
      Input input(path);
      ++counts_.files;
      readRecords(input, name);
    } catch (const CannotOpen& reason) {
      ++counts_.unopened;
      printError(name + ": " + reason.what());
    }
  }

  // A record that cannot be decoded is reported and the next one read; where
  // the frame is broken, this file has ended.
  void readRecords(Input& input, const std::string& name) {
    MrtReader reader(input);
    MrtDecoder decoder(*this, counts_);
    try {
      while (const MrtRecord* record = reader.next()) {
        decoder.decode(*record, problems_);
        if (!problems_.empty()) {
          report(name, *record, problems_.text());
          problems_.clear();
        }
      }
    } catch (const Malformed& malformed) {
      ++counts_.damaged;
      report(name, reader.position(), malformed.what());
    }
  }

  void report(const std::string& name, const MrtRecord& record, const std::string& what) {
    printError(name + ": record " + std::to_string(record.number) + " at octet " +
               std::to_string(record.offset) + ": " + what);
  }

  // In one piece, as others may write to the same terminal or log.
  void printError(const std::string& text) {
    errors_ << std::string(programPrefix).append(text).append("\n") << std::flush;
  }

  ExitStatus status() const {
    if (counts_.files == 0 && counts_.unopened > 0) {
      return ExitStatus::impossible;
    }
    if (counts_.damaged + counts_.unopened > 0) {
      return ExitStatus::damaged;
    }
    return options_.match && !wanted_ ? ExitStatus::noMatch : ExitStatus::fine;
  }

  const MrtOptions& options_;
  std::ostream& errors_;
  TextOutput out_;
  RouteLines lines_;
  HeldRoutes held_;
  InputCounts counts_;
  Problems problems_;    // of the record that is being decoded
  bool wanted_ = false;  // whether any route was
};

}  // namespace

ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors) {
  return writing(errors, [&] { return MrtRun(options, out, errors).run(); });
}

}  // namespace CommTool
