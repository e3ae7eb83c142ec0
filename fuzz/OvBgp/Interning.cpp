// A random program over all tables at once: lists and values are interned, shared and
// dropped; snapshots are taken and edited; observers come, go, and call back; tables
// go while their members are held.  A naive model says from what is held what must be
// interned: sizes, references and what observers were told agree with it, equal
// contents are one object, and in the end everything is empty.
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "fuzz/support/InterningHeld.h"
#include "fuzz/support/InterningObservers.h"
#include "fuzz/support/Mirror.h"
#include "fuzz/support/Program.h"

namespace Fuzz {
KIV_OBJECT_DEFINE(Mirror)
}  // namespace Fuzz

namespace {

using namespace Fuzz::Interning;
using Fuzz::Extended;
using Fuzz::Ip6Extended;
using Fuzz::Large;
using Fuzz::Mirror;
using Fuzz::require;
using Fuzz::Standard;
using Fuzz::Tables;

class Program {
 public:
  explicit Program(Fuzz::Input& input) : input_(input) {}

  void run() {
    for (U32 step = 0; step < stepsMax && !input_.atEnd(); ++step) {
      take();
      if (step % 4 == 0) check();
    }
    check();
    end();
  }

 private:
  static constexpr U32 stepsMax = 400;

  void take() {
    switch (input_.below(24)) {
      case 0:
        return tablesAre();
      case 1:
        return mirrorIs();
      case 2:
        return mirrors_.clear();
      case 3:
        return targetsAre();
      case 4:
        return setsAre();
      default:
        break;
    }
    switch (input_.below(4)) {
      case 0:
        return standard_.take(*tables_, input_);
      case 1:
        return large_.take(*tables_, input_);
      case 2:
        return extended_.take(*tables_, input_);
      default:
        return ip6_.take(*tables_, input_);
    }
  }

  void forEachHeld(const auto& visit) {
    visit(standard_);
    visit(large_);
    visit(extended_);
    visit(ip6_);
  }

  // New ones; what was in the old ones belongs to nobody but its holders.
  void tablesAre() {
    observersGo();
    forEachHeld([](auto& held) { held.tablesGo(); });
    tables_ = std::make_unique<Tables>();
    forEachHeld([](auto& held) { held.checkOrphans(); });
  }

  std::vector<Kiv::Ptr<Dorn::DedupHashTable>> observable() const {
    return {
        tables_->standard->dedupTable(), tables_->large->dedupTable(),
        tables_->extended->dedupTable(), tables_->extended->extCommClassificationListDedupTable(),
        tables_->ip6->dedupTable(),      tables_->ip6->extCommClassificationListDedupTable(),
        tables_->ip6Values->dedupTable()};
  }
  void mirrorIs() {
    const auto tables = observable();
    const std::size_t which = input_.below(tables.size());
    std::function<void()> callBack;
    if (input_.flag()) callBack = [this, which, number = input_.u8()] { meddle(which, number); };
    const Mirror::Ptr mirror(new Mirror(callBack));
    mirrors_[which] = nullptr;  // a table has one observer
    tables[which]->lifeTimeNotifieeIs(mirror);
    mirrors_[which] = mirror;
  }
  // In the table of that position, or in one below it.
  void meddle(std::size_t which, U8 number) const {
    const Tables& in = *tables_;
    const Wires wires[] = {{wireOf(Standard(), number)},
                           {wireOf(Large(), number)},
                           {wireOf(Extended(), number)},
                           {wireOf(Ip6Extended(), number)}};
    if (which == 0) Fuzz::built<Standard>(in, wires[0]);
    if (which == 1) Fuzz::built<Large>(in, wires[1]);
    if (which == 2) Fuzz::built<Extended>(in, wires[2]);
    if (which == 3) Extended::member(in, wires[2][0]);
    if (which == 4) Fuzz::built<Ip6Extended>(in, wires[3]);
    if (which >= 5) Ip6Extended::member(in, wires[3][0]);
  }
  void targetsAre() {
    targets_ = nullptr;
    if (input_.flag()) targets_ = std::make_unique<RouteTargets>(*tables_, input_.u8() & 7);
  }
  void setsAre() {
    sets_ = nullptr;
    if (input_.flag()) sets_ = std::make_unique<RouteTargetSets>(*tables_, input_.u8() & 7);
  }
  void observersGo() {
    mirrors_.clear();
    targets_ = nullptr;
    sets_ = nullptr;
  }

  Expected expected() {
    Expected all;
    forEachHeld([&all](const auto& held) { held.addTo(all); });
    if (targets_) targets_->addTo(all);
    if (sets_) sets_->addTo(all);
    return all;
  }

  void check() {
    const Expected all = expected();
    forEachHeld([](const auto& held) { held.check(); });
    const auto parts = [](const auto& table) {
      return table->extCommClassificationListDedupTable()->size();
    };
    const Tables& in = *tables_;
    require(in.standard->size() == all.lists[0].size(), "standard lists");
    require(in.large->size() == all.lists[1].size(), "large lists");
    require(in.extended->size() == all.lists[2].size(), "extended lists");
    require(in.ip6->size() == all.lists[3].size(), "IPv6 lists");
    require(parts(in.extended) + in.extended->rtExtCommClassificationListDedupTable()->size() ==
                all.parts[0].size(),
            "parts");
    require(parts(in.ip6) == all.parts[1].size(), "IPv6 parts");
    require(in.values->size() == all.values[0].size(), "values");
    require(in.ip6Values->size() == all.values[1].size(), "IPv6 values");
    for (const auto& [which, mirror] : mirrors_) mirror->check(*observable()[which]);
    if (targets_) targets_->check(all);
    if (sets_) sets_->check(all);
  }

  // In one of several orders.
  void end() {
    const U32 order = input_.below(4);
    if (order == 0) {
      observersGo();
      forEachHeld([](auto& held) { held.clear(); });
      require(tables_->members() == 0, "interned and left");
    } else if (order == 1) {
      forEachHeld([](auto& held) { held.clear(); });
      check();
    } else if (order == 2) {
      tablesAre();
    } else {
      targets_ = nullptr;
      sets_ = nullptr;
      tables_ = nullptr;
    }
    observersGo();
  }

  Fuzz::Input& input_;
  Held<Standard> standard_;
  Held<Large> large_;
  Held<Extended> extended_;
  Held<Ip6Extended> ip6_;
  std::unique_ptr<Tables> tables_ = std::make_unique<Tables>();
  std::map<std::size_t, Mirror::Ptr> mirrors_;
  std::unique_ptr<RouteTargets> targets_;
  std::unique_ptr<RouteTargetSets> sets_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  return Fuzz::leavingNothing(data, size, [](Fuzz::Input& input) {
    Fuzz::severalThreadsFrom(input);
    Program(input).run();
  });
}
