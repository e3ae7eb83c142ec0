// A random program over one interning table, whose members' hashes meet as often as
// the input wants, against std::unordered_map.  Members come and go one by one and by
// the hundred, also while the table is walked or an observer is told of another.
#include <deque>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Dorn/DedupHashTable.h"
#include "fuzz/support/Mirror.h"
#include "fuzz/support/Program.h"

namespace Fuzz {
KIV_OBJECT_DEFINE(Mirror)
}  // namespace Fuzz

namespace {

using Dorn::DedupHashTable;
using Fuzz::Mirror;
using Fuzz::require;

// How numbers are hashed: by their remainder, and then in high bits or low ones.
struct Hashing {
  U32 modulus = 0;  // 0: the number itself, spread
  U32 shift = 0;

  U32 operator()(U32 number) const {
    return (modulus == 0 ? number * 0x9E37'79B1U : number % modulus) << shift;
  }
};
Hashing hashing;

struct NumberContent : Dorn::DedupContentHandle {
  explicit NumberContent(U32 n) : number(n) {}
  U32 number;
};

class Number final : public Dorn::DedupHandle {
  KIV_OBJECT(Number)

 public:
  explicit Number(U32 n) : number(n) {}
  U32 hash() const override { return hashing(number); }
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override {
    return static_cast<const Number*>(other)->number == number;
  }
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return static_cast<const NumberContent&>(key).number == number;
  }

  const U32 number;
};
KIV_OBJECT_DEFINE(Number)

// How many references the program holds to each number.
using Model = std::unordered_map<U32, U32>;

class Program {
 public:
  Program(Fuzz::Input& input, bool threadSafe)
      : input_(input),
        table_(Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe)) {}

  void run() {
    for (U32 step = 0; step < stepsMax && !input_.atEnd(); ++step) {
      take();
      require(table_->size() == model_.size(), "size");
    }
    check();
    if (input_.flag()) orphan();
    while (!held_.empty()) dropOne(held_.size() - 1);
    if (table_) require(table_->size() == 0, "interned and left");
  }

 private:
  static constexpr U32 stepsMax = 150;
  static constexpr std::size_t heldMax = 800;

  U32 number() { return input_.below(4) == 0 ? input_.u16() : input_.u8(); }

  void take() {
    switch (input_.below(12)) {
      case 0:
      case 1:
        return intern(number());
      case 2:
        return lookup(number());
      case 3:
        return share();
      case 4:
      case 5:
        return drop();
      case 6:
        return internMany();
      case 7:
        return dropMany();
      case 8:
        return walk();
      case 9:
        return observe();
      case 10:
        return again();
      default:
        return check();
    }
  }

  void hold(const Number::Ptr& member) {
    held_.push_back(member);
    ++model_[member->number];
  }
  void intern(U32 which) {
    if (held_.size() >= heldMax) return;
    hold(Kiv::staticPtrCast<Number>(table_->dedup(Number::Ptr(new Number(which)))));
  }
  void lookup(U32 which) {
    const auto found =
        Kiv::staticPtrCast<Number>(table_->lookupByContent(NumberContent(which), hashing(which)));
    require(static_cast<bool>(found) == model_.contains(which), "lookup");
    if (!found) return;
    require(found->number == which && found->isDeduped(), "found another");
    hold(found);
  }
  void share() {
    if (!held_.empty()) hold(held_[input_.u16() % held_.size()]);
  }
  void dropOne(std::size_t at) {
    const auto entry = model_.find(held_[at]->number);
    if (--entry->second == 0) model_.erase(entry);
    std::swap(held_[at], held_.back());
    held_.pop_back();
  }
  void drop() {
    if (!held_.empty()) dropOne(input_.u16() % held_.size());
  }
  void internMany() {
    const U32 first = input_.u16();
    const U32 step = 1 + input_.below(8);
    for (U32 left = input_.u8() * 2U; left > 0; --left) intern(first + left * step);
  }
  void dropMany() {
    for (U32 left = input_.u8() * 2U; left > 0 && !held_.empty(); --left) {
      dropOne(std::size_t{left} * 7919 % held_.size());
    }
  }

  // The walk visits each member that exists during the whole walk, whatever else changes.
  void walk() {
    std::unordered_set<U32> met;
    U32 changes = input_.u8();
    const Model before = model_;
    const U32 fresh = input_.u16();
    std::unordered_set<U32> gone;
    table_->membersVisit([&](const Dorn::DedupHandle::Ptr& member) {
      met.insert(static_cast<const Number*>(member.ptr())->number);
      if (changes == 0) return;
      --changes;
      if (changes % 2 == 0) {
        intern(fresh + changes);
      } else if (!held_.empty()) {
        gone.insert(held_[changes % held_.size()]->number);
        dropOne(changes % held_.size());
      }
    });
    for (const auto& [which, references] : before) {
      require(met.contains(which) || gone.contains(which), "a member not met");
    }
  }

  // The one that is there goes, and another comes or none.
  void observe() {
    std::function<void()> callBack;
    const U32 which = number();
    if (input_.flag()) {
      callBack = [this, which] {
        (void)table_->dedup(Number::Ptr(new Number(which)));
        (void)table_->lookupByContent(NumberContent(which + 1), hashing(which + 1));
      };
    }
    const Mirror::Ptr former = observer_;
    observer_ = input_.below(4) == 0 ? nullptr : Mirror::Ptr(new Mirror(callBack));
    table_->lifeTimeNotifieeIs(observer_);
    require(!former || former->stopped(), "an observer that was not told to stop");
  }

  // A lookup must not find a former member.
  void again() {
    if (held_.empty()) return;
    const Number::Ptr member = held_[input_.u16() % held_.size()];
    const auto same = table_->dedup(Number::Ptr(new Number(member->number)));
    require(same == member, "two objects of one content");
  }

  void check() {
    std::unordered_set<U32> members;
    for (const auto& member : table_->members()) {
      require(members.insert(static_cast<const Number*>(member.ptr())->number).second, "twice");
    }
    require(members.size() == model_.size(), "members");
    for (const auto& [which, references] : model_) {
      require(members.contains(which), "a member missing");
      const auto found = table_->lookupByContent(NumberContent(which), hashing(which));
      require(found && found->references() == references + 2, "references");
    }
    if (observer_) observer_->check(*table_);
  }

  // The table goes; who holds its members keeps them.
  void orphan() {
    table_ = nullptr;
    require(!observer_ || observer_->stopped(), "an observer of a table that is gone");
    for (const Number::Ptr& member : held_) {
      require(!member->isDeduped() && member->everDeduped(), "in a table that is gone");
    }
  }

  Fuzz::Input& input_;
  DedupHashTable::Ptr table_;
  Mirror::Ptr observer_;
  std::deque<Number::Ptr> held_;
  Model model_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  return Fuzz::leavingNothing(data, size, [](Fuzz::Input& input) {
    const bool severalThreads = Fuzz::severalThreadsFrom(input);
    constexpr U32 moduli[] = {0, 1, 2, 3, 7, 16, 255, 1000};
    hashing.modulus = moduli[input.below(8)];
    hashing.shift = input.below(4) * 8;
    Program(input, severalThreads).run();
  });
}
