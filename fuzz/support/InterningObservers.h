// Observers of the interned route targets, as values and as sub-lists of lists.
#ifndef FUZZ_SUPPORT_INTERNING_OBSERVERS_H
#define FUZZ_SUPPORT_INTERNING_OBSERVERS_H

#include <algorithm>
#include <set>
#include <vector>

#include "fuzz/support/InterningExpected.h"
#include "fuzz/support/Require.h"

namespace Fuzz::Interning {

// Mirrors the route targets that are interned; keeps some that come, and takes some
// back that go.
class RouteTargets final : public Kiv::Notifiee {
 public:
  RouteTargets(const Tables& in, U8 keeps) : in_(in), keeps_(keeps) {
    for (const RouteTarget& target : list().rt()) mirror_.insert(target.value());
    notifierIs(list().notifieeList());
  }
  // Before what it keeps goes.
  ~RouteTargets() override { notifierIs(nullptr); }
  RouteTargets(const RouteTargets&) = delete;
  RouteTargets& operator=(const RouteTargets&) = delete;

  void handleChange(const Kiv::Change& change) override {
    const U64 value = change.key<RouteTarget>().value();
    if (list().rtHas(RouteTarget(value))) {
      require(mirror_.insert(value).second, "a route target that came twice");
    } else {
      require(mirror_.erase(value) == 1, "a route target that went twice");
    }
    // Of those that come and of those that go.
    if (keeps_ == 0 || keep_.size() >= most) return;
    --keeps_;
    keep_.push_back(ExtComm::dedupContent(in_.values.ptr(), ExtCommContent(value)));
  }

  void check(const Expected& expected) const {
    std::set<U64> targets;
    for (const Wire& wire : expected.values[0]) {
      const auto member = Extended::member(in_, wire);
      if (member->classification() == extCommClassificationRouteTarget) {
        targets.insert(Extended::key(wire));
      }
    }
    require(mirror_ == targets, "mirror of route targets");
    require(list().rt().size() == targets.size(), "route targets");
  }
  void addTo(Expected& expected) const {
    for (const auto& member : keep_) expected.values[0].insert(Extended::wire(member));
  }

 private:
  static constexpr std::size_t most = 4;

  const NotifyingRouteTargetList& list() const { return *in_.values->producerRtList(); }

  const Tables& in_;
  U8 keeps_;
  std::set<U64> mirror_;
  std::vector<ExtComm::PtrConst> keep_;
};

// Mirrors the sets of route targets in use; keeps some of their notifiers.
class RouteTargetSets final : public Kiv::Notifiee {
 public:
  RouteTargetSets(const Tables& in, U8 keeps) : in_(in), keeps_(keeps) {
    for (const auto& notifier : collection().rtExtCommList()) mirror_.insert(notifier.ptr());
    notifierIs(collection().notifieeList());
  }
  ~RouteTargetSets() override { notifierIs(nullptr); }
  RouteTargetSets(const RouteTargetSets&) = delete;
  RouteTargetSets& operator=(const RouteTargetSets&) = delete;

  void handleChange(const Kiv::Change& change) override {
    const auto& notifier = change.key<RtExtCommListLifeTimeNotifier::Ptr>();
    if (collection().rtExtCommListHas(notifier)) {
      require(mirror_.insert(notifier.ptr()).second, "a set that came twice");
    } else {
      require(mirror_.erase(notifier.ptr()) == 1, "a set that went twice");
    }
    if (keeps_ == 0) return;
    --keeps_;
    keep_.push_back(notifier);
  }

  void check(const Expected& expected) const {
    const auto sets = std::ranges::count_if(expected.parts[0], [](const auto& part) {
      return part.first == extCommClassificationRouteTarget;
    });
    require(std::ssize(mirror_) == sets, "mirror of sets of route targets");
    require(collection().rtExtCommList().size() == mirror_.size(), "sets of route targets");
  }
  // A reference to a notifier keeps the set's members.
  void addTo(Expected& expected) const {
    for (const auto& notifier : keep_) {
      for (const auto& member : notifier->rtExtCommListRawPtr()->commVector()) {
        expected.values[0].insert(Extended::wire(member));
      }
    }
  }

 private:
  const NotifyingRtExtCommListCollection& collection() const {
    return *in_.extended->notifyingRtExtCommListCollection();
  }

  const Tables& in_;
  U8 keeps_;
  std::set<const RtExtCommListLifeTimeNotifier*> mirror_;
  std::vector<RtExtCommListLifeTimeNotifier::Ptr> keep_;
};

}  // namespace Fuzz::Interning

#endif
