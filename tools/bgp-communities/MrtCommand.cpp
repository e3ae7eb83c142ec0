#include "tools/bgp-communities/MrtCommand.h"

#include <chrono>
#include <ostream>

#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/MrtFiles.h"
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
      : options_(options), out_(out), lines_(out_), files_(*this, errors) {}

  ExitStatus run() {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& path : options_.files) {
      files_.read(path);
    }
    if (!options_.routes && files_.counts().files > 0) {
      printSummary(files_.counts(), held_, std::chrono::steady_clock::now() - start, out_);
    }
    out_.flush();
    return status();
  }

  void handleRoutes(const RouteBatch& batch) override {
    const RouteCommunities communities = held_.tables().intern(batch.communities);
    if (options_.verify) {
      verify(batch.communities, communities, files_.problems());
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

  ExitStatus status() const {
    const ExitStatus ofFiles = files_.status();
    if (ofFiles != ExitStatus::fine) return ofFiles;
    return options_.match && !wanted_ ? ExitStatus::noMatch : ExitStatus::fine;
  }

  const MrtOptions& options_;
  TextOutput out_;
  RouteLines lines_;
  HeldRoutes held_;
  MrtFiles files_;
  bool wanted_ = false;  // whether any route was
};

}  // namespace

ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors) {
  return writing(errors, [&] { return MrtRun(options, out, errors).run(); });
}

}  // namespace CommTool
