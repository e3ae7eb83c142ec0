// All tables at once, as in a routing daemon with several threads. Routes are added, share
// lists and are removed; observers are registered and stopped and call back into the tables;
// and the tables are destroyed while some lists are still in use.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <tuple>
#include <utility>

#include "tests/AllKinds.h"
#include "tests/stress/Stress.h"

namespace Stress {
namespace {

using namespace AllKinds;
using Clock = std::chrono::steady_clock;
using Random = std::minstd_rand;

// Every list is a subset of these few communities, so that threads often use the same list.
constexpr U32 communities = 5;
constexpr U32 subsets = 1U << communities;

std::atomic<U64> wrong{0};
std::atomic<U64> operations{0};

void expect(bool holds) {
  if (!holds) ++wrong;
}

U32 upTo(U32 end, Random& random) { return static_cast<U32>(random() >> 4) % end; }

// The attribute value of a subset: ascending, or descending with the first member repeated.
template <class List>
Kiv::String octetsOfSubset(U32 subset, bool ascending) {
  Kiv::String octets;
  for (U32 i = 0; i < communities; ++i) {
    const U32 at = ascending ? i : communities - 1 - i;
    if ((subset >> at & 1) == 0) continue;
    const Kiv::String member = Kind<List>::memberOctets(at);
    octets += octets.empty() && !ascending ? member + member : member;
  }
  return octets;
}

template <class List>
Kiv::Ptr<const List> ofSubset(const Tables& tables, U32 subset, Random& random) {
  return Kind<List>::intern(tables, octetsOfSubset<List>(subset, random() % 2 == 0));
}

template <class List>
Kiv::Ptr<const List> rebuiltByHand(const Tables& tables, const List& list) {
  const auto copy = Kind<List>::make();
  const auto& members = membersOf(list);
  for (U32 i = members.size(); i-- != 0;) copy->commIs(members[i]);
  return copy->dedup(Kind<List>::table(tables));
}

// --- Observers ---

// An observer that checks that equal lists are never in the table at the same time. Some of its
// notifications intern another list in the same table, which it keeps for a while.
template <class List>
class BusyObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
 public:
  using Ptr = Kiv::Ptr<BusyObserver>;

  BusyObserver(const Tables& tables, unsigned seed) : tables_(tables), random_(seed) {}
  ~BusyObserver() override { expect(present_.empty() && !kept_); }

  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    expect(present_.insert(textOf(*handle)).second);
    callBack();
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    expect(present_.erase(textOf(*handle)) == 1);
    callBack();
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {
    present_.clear();
    kept_ = nullptr;
  }

  static Kiv::Type& kivType() noexcept {
    static constinit Kiv::Type record{"BusyObserver"};
    return record;
  }
  const Kiv::Type& fwkType() const noexcept override { return kivType(); }
  static void* operator new(std::size_t size) { return Kiv::kivMemAlloc(size, kivType()); }
  static void operator delete(void* memory, std::size_t size) noexcept {
    Kiv::kivMemDealloc(memory, size, kivType());
  }

 private:
  static Kiv::String textOf(const Dorn::DedupHandle& handle) {
    return static_cast<const List&>(handle).toStrep();
  }

  // Runs under the table's notification lock, so the members need no lock of their own. The
  // flag stops the recursion, because interning notifies this observer again.
  void callBack() {
    if (isCalling_ || upTo(8, random_) != 0) return;
    isCalling_ = true;
    auto other = ofSubset<List>(tables_, upTo(subsets, random_), random_);
    expect(other->isDeduped());
    kept_ = upTo(2, random_) == 0 ? std::move(other) : nullptr;
    isCalling_ = false;
  }

  const Tables& tables_;
  Random random_;
  std::set<Kiv::String> present_;
  Kiv::Ptr<const List> kept_;
  bool isCalling_ = false;
};

// An observer of the route targets, or of the sets of route targets. It counts the entries by their
// notifications, and compares the count with the collection. Some of its notifications intern a
// value or release one.
class TargetListener : public Kiv::Notifiee {
 public:
  // `has(change)` returns whether the collection has the key now; `size()` is its size.
  TargetListener(const Tables& tables, Kiv::NotifieeList* list,
                 std::function<bool(const Kiv::Change&)> has, std::function<U32()> size)
      : tables_(tables), has_(std::move(has)), size_(std::move(size)) {
    notifierIs(list);
  }
  // Runs under the notification lock, so the members need no lock of their own.
  void handleChange(const Kiv::Change& change) override {
    has_(change) ? ++present_ : --present_;
    expect(present_ == size_());
    ++heard_;
    if (heard_ % 8 == 0) {
      kept_ = ExtComm::dedupContent(tables_.values.ptr(),
                                    ExtCommContent(0x030b'0000'0001'0000 + heard_));
    } else if (heard_ % 8 == 3) {
      kept_ = nullptr;
    }
  }
  void end() {
    expect(heard_ > 0);
    notifierIs(nullptr);
    kept_ = nullptr;
  }

 private:
  const Tables& tables_;
  const std::function<bool(const Kiv::Change&)> has_;
  const std::function<U32()> size_;
  U32 present_ = 0;
  U64 heard_ = 0;
  ExtComm::PtrConst kept_;
};

// Observers of both collections.
struct TargetListeners {
  explicit TargetListeners(const Tables& tables)
      : list(tables.values->producerRtList()),
        collection(tables.extCommLists->notifyingRtExtCommListCollection()),
        targets(
            tables, list->notifieeList(),
            [this](const Kiv::Change& change) { return list->rtHas(change.key<RouteTarget>()); },
            [this] { return list->rt().size(); }),
        sets(
            tables, collection->notifieeList(),
            [this](const Kiv::Change& change) {
              return collection->rtExtCommListHas(change.key<RtExtCommListLifeTimeNotifier::Ptr>());
            },
            [this] { return collection->rtExtCommList().size(); }) {}

  const NotifyingRouteTargetList::Ptr list;
  const NotifyingRtExtCommListCollection::Ptr collection;
  TargetListener targets;
  TargetListener sets;
};

// --- Routes ---

template <class List>
struct Held {
  U32 subset = 0;
  Kiv::Ptr<const List> list;
};

// Passes lists between threads, so that many lists are released by a thread that did not intern
// them.
template <class List>
class Exchange {
 public:
  void swap(Held<List>& held, U32 at) {
    const std::lock_guard lock(mutex_);
    std::swap(places_[at % places_.size()], held);
  }
  void clear() { places_ = {}; }
  const std::array<Held<List>, 4>& places() const { return places_; }

 private:
  std::mutex mutex_;
  std::array<Held<List>, 4> places_;
};

template <class List>
void snapshotTaken(const List& list) {
  const auto copy = list.commSnapshot();
  expect(copy->comm().size() == membersOf(list).size());
  copy->commDelAll();
}

// The routes of one thread with lists of one kind.
template <class List>
class Routes {
 public:
  Routes(const Tables& tables, Exchange<List>& exchange) : tables_(tables), exchange_(exchange) {}

  void step(Random& random) {
    Held<List>& held = held_[upTo(3, random)];
    switch (upTo(8, random)) {
      case 0:
        held.list = nullptr;
        break;
      case 1:
        exchange_.swap(held, upTo(4, random));
        break;
      case 2:
        held_[0] = held;
        break;
      case 3:
        if (held.list) expect(rebuiltByHand(tables_, *held.list) == held.list);
        break;
      case 4:
        if (held.list) snapshotTaken(*held.list);
        break;
      default:
        held.subset = upTo(subsets, random);
        held.list = ofSubset<List>(tables_, held.subset, random);
    }
    check(held);
  }

  static void check(const Held<List>& held) {
    if (!held.list) return;
    const auto members = static_cast<U32>(__builtin_popcount(held.subset));
    expect(held.list->isDeduped() && membersOf(*held.list).size() == members);
    if constexpr (requires { held.list->classificationListVector(); }) {
      for (const auto& subList : held.list->classificationListVector()) {
        expect(!subList || subList->isDeduped());
      }
    }
  }

 private:
  const Tables& tables_;
  Exchange<List>& exchange_;
  std::array<Held<List>, 3> held_;
};

// --- All together ---

template <template <class> class Of>
using OfEach = std::tuple<Of<CommList>, Of<LargeCommList>, Of<ExtCommList>, Of<ExtCommIp6List>>;

struct Agent {
  Tables tables;
  OfEach<Exchange> exchanges;

  void routes(unsigned seed, Clock::time_point until) {
    Random random(seed);
    auto all = std::apply([this](auto&... exchange) { return std::tuple(routesOf(exchange)...); },
                          exchanges);
    U64 steps = 0;
    for (; steps % 64 != 0 || Clock::now() < until; ++steps) {
      std::apply([&random](auto&... routes) { (routes.step(random), ...); }, all);
      if (upTo(256, random) == 0) walk();
    }
    operations += steps * std::tuple_size_v<decltype(all)>;
  }

  // Registers and stops observers of the lists' tables, one after the other. Stops and starts the
  // library's own observer of the sets of route targets.
  void observers(unsigned seed, Clock::time_point until) {
    while (Clock::now() < until) {
      observed<CommList>(++seed);
      observed<LargeCommList>(++seed);
      observed<ExtCommList>(++seed);
      observed<ExtCommIp6List>(++seed);
      const auto& targetSets = tables.extCommLists->rtExtCommClassificationListDedupTable();
      targetSets->lifeTimeNotifieeDel();
      std::this_thread::yield();
      targetSets->lifeTimeNotifieeIs(tables.extCommLists->rtExtCommListLifeTimeNotifiee());
    }
  }

 private:
  template <class List>
  Routes<List> routesOf(Exchange<List>& exchange) {
    return Routes<List>(tables, exchange);
  }

  // Visits all members. While a reference to a member is held, it stays in its table.
  void walk() const {
    tables.commLists->dedupTable()->membersVisit(
        [](const Dorn::DedupHandle::Ptr& member) { expect(member->references() >= 2); });
    for (const Dorn::DedupHandle::Ptr& member : tables.values->dedupTable()->members()) {
      expect(member->isDeduped());
    }
  }

  template <class List>
  void observed(unsigned seed) {
    const auto& table = Kind<List>::table(tables)->dedupTable();
    typename BusyObserver<List>::Ptr observer(new BusyObserver<List>(tables, seed));
    table->lifeTimeNotifieeIs(observer);
    std::this_thread::sleep_for(std::chrono::milliseconds(seed % 4));
    if (seed % 2 == 0) table->lifeTimeNotifieeDel();
    observer = nullptr;  // otherwise its destruction stops it
  }
};

// A list that outlives its table keeps its members and is no longer interned.
template <class List>
void outlives(const Held<List>& held) {
  if (!held.list) return;
  expect(!held.list->isDeduped() && held.list->everDeduped());
  expect(membersOf(*held.list).size() == static_cast<U32>(__builtin_popcount(held.subset)));
}

// Makes a new agent and uses it until `until`. Every second agent first drops the lists that
// are in exchange; its tables must then be empty. The other agents are destroyed before these
// lists.
void liveOnce(unsigned threads, unsigned seed, Clock::time_point until) {
  auto agent = std::make_unique<Agent>();
  auto listeners = std::make_unique<TargetListeners>(agent->tables);
  inThreads(threads + 1, [&](unsigned i) {
    i == 0 ? agent->observers(seed, until) : agent->routes(seed + i, until);
  });
  listeners->targets.end();
  listeners->sets.end();
  if (seed % 2 == 0) {
    std::apply([](auto&... exchange) { (exchange.clear(), ...); }, agent->exchanges);
    EXPECT_EQ((std::array<U32, 11>{}), agent->tables.sizes());
    return;
  }
  const auto left = std::apply(
      [](const auto&... exchange) { return std::tuple(exchange.places()...); }, agent->exchanges);
  listeners = nullptr;
  agent = nullptr;
  const auto outliveAll = [](const auto& places) {
    for (const auto& held : places) outlives(held);
  };
  std::apply([&](const auto&... places) { (outliveAll(places), ...); }, left);
}

class AllTablesStress : public testing::TestWithParam<unsigned> {};

TEST_P(AllTablesStress, LeavesNothingWrongAndNothingBehind) {
  wrong = operations = 0;
  const U64 objects = objectsAlive();
  unsigned lives = 0;
  const auto end = Clock::now() + time();
  {
    const Threaded threaded;
    while (Clock::now() < end || lives < 2) {
      const auto until = Clock::now() + time() / 8;
      ++lives;
      liveOnce(GetParam(), lives * 1000 + lives % 2, until);
      ASSERT_EQ(0U, wrong) << "in life " << lives;
      ASSERT_EQ(objects, objectsAlive()) << "after life " << lives;
    }
  }
  std::cout << GetParam() << " threads: " << operations << " operations in " << lives << " lives\n";
}

INSTANTIATE_TEST_SUITE_P(Threads, AllTablesStress, testing::Values(2U, 8U));

}  // namespace
}  // namespace Stress
