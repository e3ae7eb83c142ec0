// A random program over all tables at once: lists and values are interned, shared and
// dropped; snapshots are taken and edited; observers come, go, and call back; tables
// go while their members are held.  A naive model says from what is held what must be
// interned: sizes, references and what observers were told agree with it, equal
// contents are one object, and in the end everything is empty.
#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "OvBgpGlobals/OvBgpGlobals.h"
#include "fuzz/Input.h"
#include "fuzz/Lists.h"
#include "fuzz/Require.h"

namespace {

using namespace Routing::Bgp;
using Fuzz::Extended;
using Fuzz::Ip6Extended;
using Fuzz::Large;
using Fuzz::require;
using Fuzz::Standard;
using Fuzz::Tables;
using Fuzz::Wire;
using Fuzz::wireOf;
using Wires = std::vector<Wire>;

template <class Kind>
constexpr bool isExtended = requires {
  typename Kind::Value;
};

// ---- What must be interned.

// Sub-lists, by classification and members.
using Parts = std::set<std::pair<ExtCommClassification, Wires>>;

struct Expected {
  std::set<Wires> lists[4];
  Parts parts[2];
  std::set<Wire> values[2];
};

// Where a kind is in there: lists by `at`, parts and values by `at - 2`.
template <class Kind>
constexpr std::size_t at = 0;
template <>
constexpr std::size_t at<Large> = 1;
template <>
constexpr std::size_t at<Extended> = 2;
template <>
constexpr std::size_t at<Ip6Extended> = 3;

template <class Kind>
Parts partsOf(const typename Kind::List& list) {
  std::map<ExtCommClassification, Wires> parts;
  if constexpr (isExtended<Kind>) {
    for (const auto& member : list.commVector()) {
      parts[member->classification()].push_back(Kind::wire(member));
    }
  }
  return {parts.begin(), parts.end()};
}

// ---- The few communities that there are, so that programs meet themselves.

Wire wireOf(const Standard&, U8 number) {
  return wireOf(number < 8 ? 0xFFFFFF00U + number : number, Standard::memberSize);
}
Wire wireOf(const Large&, U8 number) {
  return wireOf(number & 1, 4) + wireOf(number >> 1 & 1, 4) + wireOf(number, 4);
}
Wire wireOf(const Extended&, U8 number) {
  constexpr U64 bases[] = {0x0002'fde8'0000'0000, 0x0102'0a00'0001'0000, 0x0202'0001'0000'0000,
                           0x0003'fde8'0000'0000, 0x030b'0000'0000'0000, 0x4004'fde8'3f80'0000,
                           0x4300'0000'0000'0000, 0x0600'0000'0000'0000};
  return wireOf(bases[number % 8] + number / 8, Extended::memberSize);
}
Wire wireOf(const Ip6Extended&, U8 number) {
  return wireOf(number & 1 ? 0x4002 : 0x0002, 2) + wireOf(0x20010db8'00000000, 8) +
         wireOf(number, 8) + wireOf(number >> 4, 2);
}

// ---- Observers.

// Mirrors the members of one table, and may call back.
class Mirror final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(Mirror)

 public:
  // `callBack` interns and releases in the observed table or below it.
  Mirror(const Kiv::Ptr<Dorn::DedupHashTable>& table, std::function<void()> callBack)
      : table_(table.ptr()), callBack_(std::move(callBack)) {}

  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    require(handle->isDeduped(), "told of what is not in the table");
    require(members_.insert(handle.ptr()).second, "told twice that one came");
    callBackOnce();
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    require(members_.erase(handle) == 1, "told that one went that had not come");
    callBackOnce();
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {
    stopped_ = true;
  }

  void check() const {
    if (!stopped_) require(members_.size() == table_->size(), "mirror");
  }

 private:
  void callBackOnce() {
    if (!callBack_ || calling_) return;
    calling_ = true;
    callBack_();
    calling_ = false;
  }

  const Dorn::DedupHashTable* const table_;
  const std::function<void()> callBack_;
  std::set<const Dorn::DedupHandle*> members_;
  bool calling_ = false;
  bool stopped_ = false;
};
KIV_OBJECT_DEFINE(Mirror)

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
  // Whoever keeps a notifier keeps the set's members.
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

// ---- What is held of one kind.

template <class Kind>
class Held {
 public:
  using List = typename Kind::List;
  using ListPtr = typename List::PtrConst;
  using SnapshotPtr = decltype(std::declval<const List&>().commSnapshot());

  void take(const Tables& in, Fuzz::Input& input) {
    switch (input.below(8)) {
      case 0:
      case 1:
        return intern(in, input);
      case 2:
        return share(input);
      case 3:
      case 4:
        return drop(input);
      case 5:
        return snapshot(input);
      case 6:
        return edit(in, input);
      default:
        return value(in, input);
    }
  }

  // What is held stays, though its tables are about to go.
  void tablesGo() {
    for (Slot& slot : slots_) {
      if (slot.list) orphans_.push_back(std::move(slot));
      slot = {};
    }
    for (Copy& copy : copies_) copy = {};
    for (auto& one : values_) one = nullptr;
  }
  void checkOrphans() const {
    for (const Slot& slot : orphans_) {
      require(!slot.list->isDeduped() && slot.list->everDeduped(), "in a table that is gone");
      require(Fuzz::wiresOf<Kind>(*slot.list) == slot.wires, "an orphan's members");
    }
  }
  void clear() {
    tablesGo();
    orphans_.clear();
  }

  void addTo(Expected& expected) const {
    for (const Slot& slot : slots_) {
      if (!slot.list) continue;
      expected.lists[at<Kind>].insert(slot.wires);
      if constexpr (isExtended<Kind>) {
        addParts(expected, slot.parts);
      }
    }
    if constexpr (isExtended<Kind>) {
      for (const Copy& copy : copies_) {
        addParts(expected, copy.parts);
        expected.values[at<Kind> - 2].insert(copy.wires.begin(), copy.wires.end());
      }
      for (const auto& one : values_) {
        if (one) expected.values[at<Kind> - 2].insert(Kind::wire(one));
      }
    }
  }

  void check() const {
    for (const Slot& slot : slots_) {
      if (slot.list) check(slot);
    }
    for (const Copy& copy : copies_) {
      if (copy.snapshot) check(copy);
    }
  }

 private:
  static constexpr std::size_t most = 6;

  struct Slot {
    Wires wires;
    ListPtr list;
    Parts parts;
  };
  struct Copy {
    std::set<Wire> wires;
    SnapshotPtr snapshot;
    Parts parts;
  };
  // Plain values have no objects of their own.
  static auto noValue() {
    if constexpr (isExtended<Kind>) {
      return typename Kind::Value::PtrConst();
    } else {
      return std::shared_ptr<int>();
    }
  }

  static void addParts(Expected& expected, const Parts& parts) {
    for (const auto& part : parts) {
      expected.parts[at<Kind> - 2].insert(part);
      expected.values[at<Kind> - 2].insert(part.second.begin(), part.second.end());
    }
  }

  Slot& someSlot(Fuzz::Input& input) { return slots_[input.below(most)]; }

  // Few members, or so many that they need the heap wherever the library spares it.
  static Wires wiresFrom(Fuzz::Input& input) {
    Wires wires;
    const U8 count = input.u8();
    if (count >= 0xF0) {
      for (U8 i = 0; i < 100; ++i) wires.push_back(wireOf(Kind(), static_cast<U8>(count * 7 + i)));
    }
    for (U8 i = 0; i < count % 8; ++i) wires.push_back(wireOf(Kind(), input.u8()));
    return wires;
  }

  void intern(const Tables& in, Fuzz::Input& input) {
    Slot& slot = someSlot(input);
    const U32 way = input.below(3);
    if (way == 2 && !orphans_.empty()) return adopt(in, slot);
    const Wires wires = wiresFrom(input);
    if (way == 0) {
      hold(slot, Fuzz::built<Kind>(in, wires), wires);
    } else {
      std::string octets;
      for (const Wire& wire : wires) octets += wire;
      hold(slot, Kind::ofAttribute(in, {reinterpret_cast<const U8*>(octets.data()), octets.size()}),
           wires);
    }
  }
  // From a list of tables that are gone.
  void adopt(const Tables& in, Slot& slot) {
    const Slot orphan = std::move(orphans_.back());
    orphans_.pop_back();
    if constexpr (isExtended<Kind>) {
      hold(slot, adopted(in, *orphan.list), orphan.wires);
    } else {
      hold(slot, Fuzz::built<Kind>(in, orphan.wires), orphan.wires);
    }
  }
  static auto adopted(const Tables& in, const ExtCommList& list) {
    return ExtCommList::dedupDestashed(in.extended.ptr(), in.values.ptr(), list);
  }
  static auto adopted(const Tables& in, const ExtCommIp6List& list) {
    return ExtCommIp6List::dedupDestashed(in.ip6.ptr(), in.ip6Values.ptr(), list);
  }
  void hold(Slot& slot, const ListPtr& list, const Wires& wires) {
    require(list->isDeduped(), "interned in no table");
    const Parts parts = partsOf<Kind>(*list);
    slot = {Fuzz::sortedUnique(wires), list, parts};
  }

  void share(Fuzz::Input& input) {
    const Slot& from = someSlot(input);
    Slot& to = someSlot(input);
    if (&from != &to) to = from;
  }
  void drop(Fuzz::Input& input) { someSlot(input) = {}; }

  void snapshot(Fuzz::Input& input) {
    Copy& copy = copies_[input.below(copies_.size())];
    const Slot& slot = someSlot(input);
    if (!slot.list || input.flag()) {
      copy = {};
    } else {
      copy = {{slot.wires.begin(), slot.wires.end()}, slot.list->commSnapshot(), slot.parts};
      if constexpr (!isExtended<Kind>) copy.parts.clear();
    }
  }

  void edit(const Tables& in, Fuzz::Input& input) {
    Copy& copy = copies_[input.below(copies_.size())];
    const Wire wire = wireOf(Kind(), input.u8());
    const U32 way = input.below(4);
    if (!copy.snapshot) return;
    if (way == 0) {
      require(copy.snapshot->commDel(Kind::key(wire)) == (copy.wires.erase(wire) == 1), "deletion");
    } else if (way == 1) {
      copy.snapshot->commDelAll();
      copy.wires.clear();
    } else if (way == 2) {
      insert(in, copy, wire);
    } else {
      partsDel(copy);
    }
  }
  void insert(const Tables& in, Copy& copy, const Wire& wire) {
    if constexpr (isExtended<Kind>) {
      copy.snapshot->commIs(Kind::member(in, wire));
    } else {
      copy.snapshot->commIs(Kind::key(wire), true);
    }
    copy.wires.insert(wire);
  }
  void partsDel(Copy& copy) {
    if constexpr (isExtended<Kind>) {
      copy.snapshot->classificationListDelAll();
      copy.parts.clear();
    }
  }

  void value(const Tables& in, Fuzz::Input& input) {
    const std::size_t which = input.below(most);
    const Wire wire = wireOf(Kind(), input.u8());
    const bool drops = input.flag();
    if constexpr (isExtended<Kind>) {
      values_[which] = drops ? nullptr : Kind::member(in, wire);
    }
  }

  void check(const Slot& slot) const {
    require(Fuzz::wiresOf<Kind>(*slot.list) == slot.wires, "members");
    U32 holders = 1;  // the table
    for (const Slot& other : slots_) {
      if (!other.list) continue;
      require((other.list == slot.list) == (other.wires == slot.wires), "one object, one content");
      holders += other.list == slot.list ? 1 : 0;
    }
    require(slot.list->references() == holders, "references");
  }
  static void check(const Copy& copy) {
    require(copy.snapshot->comm().size() == copy.wires.size(), "a snapshot's size");
    for (const Wire& wire : copy.wires) {
      require(copy.snapshot->commHas(Kind::key(wire)), "a snapshot's member");
    }
  }

  std::array<Slot, most> slots_;
  std::array<Copy, 2> copies_;
  std::array<decltype(noValue()), most> values_;
  std::vector<Slot> orphans_;
};

// ---- The program.

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
    const Mirror::Ptr mirror(new Mirror(tables[which], callBack));
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
    for (const auto& [which, mirror] : mirrors_) mirror->check();
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
  Fuzz::Input input(data, size);
  const Fuzz::NothingLeft guard;
  const bool severalThreads = input.flag();
  Kiv::VFPtrInterface::threadSafePointers = severalThreads;
  OvBgpGlobals::multiThreadedIs(severalThreads);
  Program(input).run();
  return 0;
}
