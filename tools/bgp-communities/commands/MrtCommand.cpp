#include "tools/bgp-communities/MrtCommand.h"

#include <chrono>
#include <memory>
#include <ostream>

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/MrtFiles.h"
#include "tools/bgp-communities/PathAttributes.h"
#include "tools/bgp-communities/RouteLines.h"
#include "tools/bgp-communities/RouteObjects.h"
#include "tools/bgp-communities/Running.h"
#include "tools/bgp-communities/Summary.h"
#include "tools/bgp-communities/SummaryJson.h"
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

// For the routes, or null if they are not printed.
std::unique_ptr<RouteOutput> routeOutput(const MrtOptions& options, TextOutput& out) {
  if (!options.printsRoutes()) return nullptr;
  if (options.json) return std::make_unique<RouteObjects>(out);
  return std::make_unique<RouteLines>(out);
}

// One run over all files.
class MrtRun : public RouteSink {
 public:
  MrtRun(const MrtOptions& options, int out, std::ostream& errors)
      : options_(options),
        out_(out),
        progress_(options.progress ? &errors : nullptr,
                  options.progress ? bytesOfFiles(options.files) : 0),
        output_(routeOutput(options, out_)),
        files_(*this, errors) {
    files_.outputIs(output_.get());
    files_.progressIs(&progress_);
  }

  ExitStatus run() {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& path : options_.files) {
      files_.read(path);
    }
    progress_.erase();
    if (options_.printsSummary() && files_.counts().files > 0) {
      summarize(std::chrono::steady_clock::now() - start);
    }
    out_.flush();
    return status();
  }

  void handleRoutes(const RouteBatch& batch) override {
    if (!options_.selects()) return handleWanted(batch);
    if (!options_.filter.wantsPeer(batch.peer)) return;
    RouteBatch wanted = batch;
    wanted.routes = options_.filter.wantedOf(batch, wantedRoutes_);
    if (options_.filter.kinds) wanted.communities.keepOnly(*options_.filter.kinds);
    if (!wanted.routes.empty()) handleWanted(wanted);
  }

 private:
  // Routes that are wanted unless their communities are not.
  void handleWanted(const RouteBatch& batch) {
    const RouteCommunities communities = held_.tables().intern(batch.communities);
    if (options_.verify) {
      verify(batch.communities, communities, files_.problems());
      countFlags(batch.communities);
    }
    const bool wanted = isWanted(batch.communities, communities);
    if (holds_) {
      wanted ? held_.add(batch, communities) : held_.drop(batch);
    }
    if (wanted && output_) output_->print(batch, communities);
    wanted_ |= wanted;
  }

  // A withdrawal has no lists: it is wanted only where every route is.
  bool isWanted(const CommunityAttributes& attributes, const RouteCommunities& communities) {
    if (options_.filter.kinds && attributes.empty()) return false;
    if (!options_.match) return true;
    bool wanted = false;
    communities.forEachList([&](CommunityKind, const auto& list) {
      wanted = wanted || matching_.of(list, [this](const auto& unknown) {
        return matches(unknown, *options_.match);
      });
    });
    return wanted;
  }

  void countFlags(const CommunityAttributes& attributes) {
    for (const CommunityKindRow& row : communityKindRows) {
      if (!attributes[row.kind]) continue;
      const U8 flags = attributes.flags(row.kind);
      const std::size_t kind = indexOf(row.kind);
      flags_.partial[kind] += (flags & partialFlag) != 0;
      flags_.extendedLength[kind] += (flags & extendedLengthFlag) != 0;
    }
  }

  void summarize(std::chrono::nanoseconds elapsed) {
    // Lists that no route holds any more must not count.
    files_.outputIs(nullptr);
    output_.reset();
    matching_.clear();
    if (options_.json) return printSummaryJson(files_, flags_, held_, options_, out_);
    printSummary(files_.counts(), flags_, held_, elapsed, options_, out_);
  }

  ExitStatus status() const {
    const ExitStatus ofFiles = files_.status();
    if (ofFiles != ExitStatus::fine) return ofFiles;
    return options_.selects() && !wanted_ ? ExitStatus::noMatch : ExitStatus::fine;
  }

  const MrtOptions& options_;
  TextOutput out_;
  Progress progress_;
  // Routes are held for the summary alone: to find them again is most of the work.
  const bool holds_ = options_.printsSummary();
  HeldRoutes held_;
  Routing::Bgp::PerList<bool> matching_;  // whether a list matches
  std::unique_ptr<RouteOutput> output_;
  MrtFiles files_;
  FlagCounts flags_;
  std::vector<Nlri> wantedRoutes_;
  bool wanted_ = false;  // whether any route was
};

}  // namespace

ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors) {
  return writing(errors, [&] { return MrtRun(options, out, errors).run(); });
}

}  // namespace CommTool
