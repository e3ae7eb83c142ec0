#include "tools/bgp-communities/commands/MrtCommand.h"

#include <chrono>
#include <memory>
#include <ostream>

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/bgp/PathAttributes.h"
#include "tools/bgp-communities/commands/Running.h"
#include "tools/bgp-communities/mrt/MrtFiles.h"
#include "tools/bgp-communities/output/ErrorLines.h"
#include "tools/bgp-communities/output/Progress.h"
#include "tools/bgp-communities/output/RouteLines.h"
#include "tools/bgp-communities/output/RouteObjects.h"
#include "tools/bgp-communities/output/Summary.h"
#include "tools/bgp-communities/output/SummaryJson.h"
#include "tools/bgp-communities/rib/HeldRoutes.h"
#include "tools/bgp-communities/rib/Verification.h"

namespace CommTool {

namespace {

// Whether a list matches as in a route map. IPv6 extended communities have no match function of
// their own; they are matched by the text that policies use.
bool matches(const auto& list, const Routing::RouteMap::PosixRegex& regex) {
  return list.matchCommunitiesRegex(&regex);
}
bool matches(const Routing::Bgp::ExtCommIp6List& list, const Routing::RouteMap::PosixRegex& regex) {
  return regex.execute(list.commsStringForm().c_str()) == 0;
}

// The output of routes in the chosen form; null if routes are not printed.
std::unique_ptr<RouteOutput> routeOutput(const MrtOptions& options, TextOutput& out) {
  if (!options.printsRoutes()) return nullptr;
  if (options.json) return std::make_unique<RouteObjects>(out);
  return std::make_unique<RouteLines>(out);
}

// One run of the command. The reader delivers each batch of routes to handleRoutes(), which filters
// them, interns their lists, verifies and prints them, and keeps them for the summary.

class MrtRun : public RouteSink {
 public:
  MrtRun(const MrtOptions& options, int out, std::ostream& errors)
      : options_(options),
        out_(out),
        errorLines_(errors),
        output_(routeOutput(options, out_)),
        files_(*this) {
    if (output_) files_.observerAdd(*output_);
    // The progress line is added before the error lines, because it must be erased before an error
    // is printed.
    if (options.progress) {
      files_.observerAdd(progress_.emplace(errors, bytesOfFiles(options.files)));
    }
    files_.observerAdd(errorLines_);
  }

  // Reads all files and prints what the options ask for.
  ExitStatus run() {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& path : options_.files) {
      files_.read(path);
    }
    if (progress_) progress_->erase();
    if (options_.printsSummary() && files_.counts().files > 0) {
      summarize(std::chrono::steady_clock::now() - start);
    }
    out_.flush();
    return status();
  }

  // Filters the routes by peer, prefix and kind, which needs no lists.
  void handleRoutes(const RouteBatch& batch) override {
    if (!options_.selects()) return handleWanted(batch);
    if (!options_.filter.wantsPeer(batch.peer)) return;
    RouteBatch wanted = batch;
    wanted.routes = options_.filter.wantedOf(batch, wantedRoutes_);
    if (options_.filter.kinds) wanted.communities.keepOnly(*options_.filter.kinds);
    if (!wanted.routes.empty()) handleWanted(wanted);
  }

 private:
  // Handles routes that have passed the filters by peer and prefix. An announcement whose
  // communities do not pass still replaces the earlier route, so that one is removed.
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

  // Whether the communities pass. A withdrawal has none, so it passes only if neither a kind nor an
  // expression is required. The result of the match is cached by list.
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

  // Counts the flags of the attributes as received.
  void countFlags(const CommunityAttributes& attributes) {
    for (const CommunityKindRow& row : communityKindRows) {
      if (!attributes[row.kind]) continue;
      const U8 flags = attributes.flags(row.kind);
      const std::size_t kind = indexOf(row.kind);
      flags_.partial[kind] += (flags & partialFlag) != 0;
      flags_.extendedLength[kind] += (flags & extendedLengthFlag) != 0;
    }
  }

  // Prints the summary in the chosen form.
  void summarize(std::chrono::nanoseconds elapsed) {
    // The caches of the output and of the match keep lists alive that no route has any more. These
    // must not be counted as memory in use.
    if (output_) files_.observerDel(*output_);
    output_.reset();
    matching_.clear();
    const SummaryData data{
        .input = files_.counts(),
        .errors = files_.errorCounts(),
        .routes = held_,
        .flags = options_.verify ? &flags_ : nullptr,
        .elapsed = elapsed,
        .top = options_.top,
        .kinds = options_.filter.kinds.value_or(KindSet::all()),
    };
    options_.json ? printSummaryJson(data, out_) : printSummary(data, out_);
  }

  // An error of the files is more important than that no route passed.
  ExitStatus status() const {
    const ExitStatus ofFiles = statusOf(files_.counts());
    if (ofFiles != ExitStatus::fine) return ofFiles;
    return options_.selects() && !wanted_ ? ExitStatus::noMatch : ExitStatus::fine;
  }

  const MrtOptions& options_;
  TextOutput out_;
  ErrorLines errorLines_;
  std::optional<Progress> progress_;
  // Routes are kept only for the summary, because the lookups in their table are most of the work.
  const bool holds_ = options_.printsSummary();
  HeldRoutes held_;
  Routing::Bgp::PerList<bool> matching_;  // by list: whether it matches
  std::unique_ptr<RouteOutput> output_;
  MrtFiles files_;
  FlagCounts flags_;
  std::vector<Nlri> wantedRoutes_;  // of the current batch
  bool wanted_ = false;             // whether any route has passed
};

}  // namespace

// The run is created within writing(), because its constructor allocates.
ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors) {
  return writing(errors, [&] { return MrtRun(options, out, errors).run(); });
}

}  // namespace CommTool
