// The lists of one kind that a random program over all tables holds.
#ifndef FUZZ_SUPPORT_INTERNING_HELD_H
#define FUZZ_SUPPORT_INTERNING_HELD_H

#include <array>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/support/Input.h"
#include "fuzz/support/InterningExpected.h"
#include "fuzz/support/Require.h"

namespace Fuzz::Interning {

template <class Kind>
class Held {
 public:
  using List = typename Kind::List;
  using ListPtr = typename List::PtrConst;
  using SnapshotPtr = decltype(std::declval<const List&>().commSnapshot());

  void take(const Tables& in, Input& input) {
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

  // Lists that users hold outlive their tables.
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
      require(wiresOf<Kind>(*slot.list) == slot.wires, "an orphan's members");
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

  Slot& someSlot(Input& input) { return slots_[input.below(most)]; }

  // Few members, or so many that they need the heap wherever the library spares it.
  static Wires wiresFrom(Input& input) {
    Wires wires;
    const U8 count = input.u8();
    if (count >= 0xF0) {
      for (U8 i = 0; i < 100; ++i) wires.push_back(wireOf(Kind(), static_cast<U8>(count * 7 + i)));
    }
    for (U8 i = 0; i < count % 8; ++i) wires.push_back(wireOf(Kind(), input.u8()));
    return wires;
  }

  void intern(const Tables& in, Input& input) {
    Slot& slot = someSlot(input);
    const U32 way = input.below(3);
    if (way == 2 && !orphans_.empty()) return adopt(in, slot);
    const Wires wires = wiresFrom(input);
    if (way == 0) {
      hold(slot, built<Kind>(in, wires), wires);
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
      hold(slot, built<Kind>(in, orphan.wires), orphan.wires);
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
    slot = {sortedUnique(wires), list, parts};
  }

  void share(Input& input) {
    const Slot& from = someSlot(input);
    Slot& to = someSlot(input);
    if (&from != &to) to = from;
  }
  void drop(Input& input) { someSlot(input) = {}; }

  void snapshot(Input& input) {
    Copy& copy = copies_[input.below(copies_.size())];
    const Slot& slot = someSlot(input);
    if (!slot.list || input.flag()) {
      copy = {};
    } else {
      copy = {{slot.wires.begin(), slot.wires.end()}, slot.list->commSnapshot(), slot.parts};
      if constexpr (!isExtended<Kind>) copy.parts.clear();
    }
  }

  void edit(const Tables& in, Input& input) {
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

  void value(const Tables& in, Input& input) {
    const std::size_t which = input.below(most);
    const Wire wire = wireOf(Kind(), input.u8());
    const bool drops = input.flag();
    if constexpr (isExtended<Kind>) {
      values_[which] = drops ? nullptr : Kind::member(in, wire);
    }
  }

  void check(const Slot& slot) const {
    require(wiresOf<Kind>(*slot.list) == slot.wires, "members");
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

}  // namespace Fuzz::Interning

#endif
