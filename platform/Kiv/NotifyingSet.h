// A set that notifies observers of its changes: one collection attribute of an object.
#ifndef KIV_NOTIFYINGSET_H
#define KIV_NOTIFYINGSET_H

#include <functional>
#include <new>
#include <vector>

#include "Kiv/Detail/FlatSet.h"
#include "Kiv/Detail/RunningInsertions.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Kiv {

// A hash set of keys, stored by value, that is an attribute of the object `owner`.
//
// After each insertion and each removal of a key, the set notifies the observers of the owner, if
// the owner's notification is active. The Change has the attribute's number and the key. Observers
// run after the change, so they find the set in its new state; has() tells whether the key was
// inserted or removed. Observers that throw: see the rule in Kiv/NotifieeList.h.
//
// Threads: as the NotifieeList of the owner. Reading counts as use, too (Kiv/Detail/FlatSet.h).
// Requirements for Key and Hash are those of FlatSet.
template <class Key, class Hash = std::hash<Key>>
class NotifyingSet {
 public:
  // An empty set. `owner` must outlive it; normally the set is a member of the owner. `attribute`
  // is the number that observers receive.
  NotifyingSet(const PtrInterface& owner, U32 attribute) : owner_(owner), attribute_(attribute) {}
  // Not copyable: a set belongs to its owner.
  NotifyingSet(const NotifyingSet&) = delete;
  // Not assignable: observers would not be notified of the difference.
  NotifyingSet& operator=(const NotifyingSet&) = delete;

  // Inserts `key`; returns whether it was absent. Observers are notified only in this case. Throws
  // std::bad_alloc, and what an observer throws. In both cases nothing is changed, except that the
  // key stays if an observer has removed it and inserted it anew. An observer may destroy the
  // owner, so the set may not exist any more on return, unless the caller holds a reference to the
  // owner.
  bool add(Key key) {
    if (!keys_.add(key)) return false;
    if (owner_.hasNotificationActive()) notifyOfInsertion(key);
    return true;
  }
  // Removes `key`; returns whether it was present. Observers are notified only in this case; what
  // they throw is traced. As for add(), the set may not exist any more on return.
  bool del(Key key) noexcept {
    if (!keys_.del(key)) return false;
    insertions_.changed(key);
    if (owner_.hasNotificationActive()) {
      owner_.notifieeList()->notifyOfRemoval(Change(attribute_, key));
    }
    return true;
  }
  // Removes the keys that are present when the call begins, with one notification for each. Keys
  // that an observer inserts meanwhile stay. The caller must hold a reference to the owner, because
  // an observer might drop the last one.
  //
  // The keys are copied first. If memory is short for the copy, the call removes as many keys as
  // were present, one at a time; keys that observers insert may then be among them.
  void delAll() {
    std::vector<Key> present;
    try {
      present = keys();
    } catch (const std::bad_alloc&) {
      for (U32 left = size(); left != 0 && size() != 0; --left) del(*begin());
    }
    for (const Key& key : present) del(key);
  }

  // Whether `key` is present.
  bool has(const Key& key) const { return keys_.has(key); }
  // The number of keys.
  U32 size() const noexcept { return keys_.size(); }
  // The first key, in no particular order. Any change of the set invalidates iterators.
  auto begin() const noexcept { return keys_.begin(); }
  // The position behind the last key.
  auto end() const noexcept { return keys_.end(); }
  // A copy of the keys, in no particular order, for loops during which the set may change. Throws
  // std::bad_alloc.
  std::vector<Key> keys() const { return {keys_.begin(), keys_.end()}; }

 private:
  // Last in its operation: `this` may not exist any more afterwards.
  void notifyOfInsertion(const Key& key) {
    typename RunningInsertions<Key>::Running insertion(insertions_, key);
    owner_.notifieeList()->notifyOfInsertion(Change(attribute_, key), [&] {
      if (!insertion.isLatest()) return false;
      keys_.del(key);
      insertion.undone();
      return true;
    });
  }

  const PtrInterface& owner_;
  const U32 attribute_;
  FlatSet<Key, Hash> keys_;
  RunningInsertions<Key> insertions_;
};

}  // namespace Kiv

#endif
