// An ordered map that notifies observers of its changes, entry by entry: one collection attribute
// of an object.
//
// A traits class describes the map, such as
//
//   struct OV_EXPORT PortNames {
//     using Key = U16;              // compared with <
//     using Value = Kiv::String;    // compared with ==
//     static constexpr char memberName[] = "Host::KivPortName";  // name of the type record
//   };
//
// The entries are shared objects, allocated one by one, so that a user can keep an entry after its
// removal and an iterator survives every change. Where that is not needed, Kiv/NotifyingSet.h is
// smaller.
#ifndef KIV_NOTIFYINGMAP_H
#define KIV_NOTIFYINGMAP_H

#include <cstddef>
#include <iterator>
#include <set>
#include <utility>

#include "Kiv/Detail/RunningInsertions.h"
#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace Kiv {

template <class Traits>
class NotifyingMap;

// One entry of a NotifyingMap. While the entry is in its map, the map may replace the value, but
// not the key. A user who holds a reference after the removal finds the last value in the entry.
template <class Traits>
class OV_EXPORT NotifyingMapMember final : public PtrInterface {
 public:
  // Ptr, PtrConst, RawPtr and RawPtrConst to an entry.
  KIV_POINTERS(NotifyingMapMember)
  // The type of the keys.
  using Key = typename Traits::Key;
  // The type of the values.
  using Value = typename Traits::Value;

  // A new entry; called by the map.
  NotifyingMapMember(Key key, Value value) : key_(std::move(key)), value_(std::move(value)) {}

  // The key, which never changes.
  const Key& key() const noexcept { return key_; }
  // The value at present. The reference stays valid with the entry, but set() may replace the
  // value.
  const Value& value() const noexcept { return value_; }

  // The type record of all entries of maps with these traits; its name is Traits::memberName. One
  // for the process, if the traits class is exported.
  static Type& kivType() noexcept {
    static constinit Type record{Traits::memberName};
    return record;
  }
  // The record of kivType().
  const Type& fwkType() const noexcept override { return kivType(); }
  // Allocates from the pool and counts the entry in its record. Throws std::bad_alloc.
  static void* operator new(std::size_t size) { return kivMemAlloc(size, kivType()); }
  // Frees what operator new allocated, and counts that.
  static void operator delete(void* memory, std::size_t size) noexcept {
    kivMemDealloc(memory, size, kivType());
  }

 private:
  friend class NotifyingMap<Traits>;

  const Key key_;
  Value value_;
};

// The map, an attribute of the object `owner`.
//
// After each insertion, each removal and each replacement of a value by an unequal one, the map
// notifies the observers of the owner, if the owner's notification is active. The Change has the
// attribute's number and the key. Observers run after the change, so they find the map in its new
// state. Observers that throw: see the rule in Kiv/NotifieeList.h.
//
// Observers may change the map and may destroy the owner. So the map may not exist any more when a
// changing operation returns, unless the caller holds a reference to the owner.
//
// Threads: as the NotifieeList of the owner. Costs are those of std::set: lookups take logarithmic
// time, and each entry takes two allocations.
template <class Traits>
class OV_EXPORT NotifyingMap {
 public:
  // The class of the entries.
  using Member = NotifyingMapMember<Traits>;
  // The type of the keys.
  using Key = typename Member::Key;
  // The type of the values.
  using Value = typename Member::Value;

  // A forward iterator over the entries in ascending order of their keys. It owns a reference to
  // its entry and searches the next entry by key, in logarithmic time. It therefore stays valid at
  // every change of the map, also at the removal of its entry. The map must outlive it.
  class Iterator {
   public:
    // The names that std::iterator_traits requires.
    using iterator_category = std::forward_iterator_tag;
    // Entries are read-only through an iterator; set() replaces values.
    using value_type = const Member;
    // As std::iterator_traits requires.
    using difference_type = std::ptrdiff_t;
    // Valid while the iterator, or another reference, keeps the entry.
    using pointer = const Member*;
    // As for `pointer`.
    using reference = const Member&;

    // A singular iterator: it compares equal to end(), but must not be incremented.
    Iterator() noexcept = default;

    // The entry, which may have been removed from the map meanwhile. Not at end().
    reference operator*() const noexcept { return *member_; }
    // The address of the entry. Not at end().
    pointer operator->() const noexcept { return member_.ptr(); }
    // Moves to the entry with the next greater key that is in the map now. Not at end().
    Iterator& operator++() {
      member_ = map_->at(map_->members_.upper_bound(member_->key()));
      return *this;
    }
    // As above; returns the position before.
    Iterator operator++(int) {
      Iterator before(*this);
      ++*this;
      return before;
    }
    // Whether both are at the same entry object, or both at the end.
    bool operator==(const Iterator& other) const noexcept { return member_ == other.member_; }

   private:
    friend class NotifyingMap;

    Iterator(const NotifyingMap& map, typename Member::Ptr member)
        : map_(&map), member_(std::move(member)) {}

    const NotifyingMap* map_ = nullptr;
    typename Member::Ptr member_;  // null: at the end
  };

  // An empty map. `owner` must outlive it; normally the map is a member of the owner. `attribute`
  // is the number that observers receive.
  NotifyingMap(const PtrInterface& owner, U32 attribute) : owner_(owner), attribute_(attribute) {}
  // Not copyable: a map belongs to its owner.
  NotifyingMap(const NotifyingMap&) = delete;
  // Not assignable: observers would not be notified of the differences.
  NotifyingMap& operator=(const NotifyingMap&) = delete;

  // Gives `key` the value `value`; returns whether that changed anything. Observers are notified
  // only in this case. An existing entry stays the same object and gets the new value. Throws
  // std::bad_alloc, and what an observer throws. In both cases nothing is changed, unless an
  // observer has changed the entry again; that change stands.
  bool set(const Key& key, Value value) {
    const typename Member::Ptr member = at(members_.find(key));
    if (!member) {
      insert(typename Member::Ptr(new Member(key, std::move(value))));
    } else if (member->value_ == value) {
      return false;
    } else {
      replace(member, value);
    }
    return true;
  }
  // Removes the entry of `key`; returns whether there was one. Observers are notified only in this
  // case; what they throw is traced. `key` may be a reference to the key of the entry itself.
  bool del(const Key& key) { return erase(members_.find(key)); }
  // Removes the entry at `position`, if this very entry is still in the map; returns whether it
  // was. A newer entry with the same key stays. Observers are notified as above. `position` stays
  // valid.
  bool del(const Iterator& position) { return erase(find(position.member_)); }
  // Removes the entries that are present when the call begins, with one notification for each.
  // Entries that observers insert meanwhile stay. The caller must hold a reference to the owner,
  // because an observer might drop the last one. Throws std::bad_alloc, and then changes nothing.
  void delAll() {
    for (const typename Member::Ptr& member : Members(members_)) erase(find(member));
  }

  // Whether there is an entry of `key`.
  bool has(const Key& key) const { return members_.contains(key); }
  // The entry of `key`, or end().
  Iterator find(const Key& key) const { return Iterator(*this, at(members_.find(key))); }
  // The entry with the smallest key, or end().
  Iterator begin() const { return Iterator(*this, at(members_.begin())); }
  // The position behind the last entry.
  Iterator end() const noexcept { return Iterator(*this, nullptr); }

  // The number of entries.
  U32 size() const noexcept { return static_cast<U32>(members_.size()); }
  // Whether there is no entry.
  bool empty() const noexcept { return members_.empty(); }
  // The object whose attribute this map is.
  const PtrInterface& owner() const noexcept { return owner_; }

 private:
  // Compares entries and bare keys alike, so that lookups need no entry.
  struct ByKey {
    using is_transparent = void;
    static const Key& keyOf(const typename Member::Ptr& member) { return member->key(); }
    static const Key& keyOf(const Key& key) { return key; }
    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const {
      return keyOf(left) < keyOf(right);
    }
  };
  using Members = std::set<typename Member::Ptr, ByKey>;

  // The position of this very entry, or the end if the map has none or another one for the key.
  typename Members::const_iterator find(const typename Member::Ptr& member) const {
    const auto found = members_.find(member);
    return found != members_.end() && *found == member ? found : members_.end();
  }
  typename Member::Ptr at(typename Members::const_iterator position) const {
    return position == members_.end() ? nullptr : *position;
  }
  void insert(const typename Member::Ptr& member) {
    members_.insert(member);
    notifyOfInsertion(member, [&] { members_.erase(member); });
  }
  // `value` then has the former value, which the caller destroys when it returns: the destructor
  // may run code that uses the map.
  void replace(const typename Member::Ptr& member, Value& value) {
    std::swap(member->value_, value);
    notifyOfInsertion(member, [&] { std::swap(member->value_, value); });
  }
  // The local reference keeps the entry, and with it the key that the observers receive, until the
  // notification has ended.
  bool erase(typename Members::const_iterator position) noexcept {
    if (position == members_.end()) return false;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): keeps the entry
    const typename Member::Ptr member = *position;
    members_.erase(position);
    insertions_.changed(member);
    if (owner_.hasNotificationActive()) {
      owner_.notifieeList()->notifyOfRemoval(Change(attribute_, member->key()));
    }
    return true;
  }
  // Notifies of an insertion or replacement, which `undo` takes back. Last in its operation: `this`
  // may not exist any more afterwards. The insertion is recorded even if nobody is notified,
  // because running ones of the same entry are then out of date.
  template <class Undo>
  void notifyOfInsertion(const typename Member::Ptr& member, const Undo& undo) {
    typename RunningInsertions<typename Member::Ptr>::Running insertion(insertions_, member);
    if (!owner_.hasNotificationActive()) return;
    owner_.notifieeList()->notifyOfInsertion(Change(attribute_, member->key()), [&] {
      if (!insertion.isLatest()) return false;
      undo();
      insertion.undone();
      return true;
    });
  }

  const PtrInterface& owner_;
  const U32 attribute_;
  Members members_;
  RunningInsertions<typename Member::Ptr> insertions_;
};

}  // namespace Kiv

#endif
