// A set whose changes observers hear of: one collection attribute of an object.
#ifndef KIV_NOTIFYINGSET_H
#define KIV_NOTIFYINGSET_H

#include <functional>
#include <new>
#include <vector>

#include "Kiv/FlatSet.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Kiv {

// Holds keys by value and tells the observers of `owner`, the object that it is an
// attribute of, while the owner's notification is on: under the attribute's number,
// of each key that comes or goes, after the change, so that they see the set as it
// is now. Threads: as the owner's NotifieeList.
template <class Key, class Hash = std::hash<Key>>
class NotifyingSet {
 public:
  NotifyingSet(const PtrInterface& owner, U32 attribute) : owner_(owner), attribute_(attribute) {}
  NotifyingSet(const NotifyingSet&) = delete;
  NotifyingSet& operator=(const NotifyingSet&) = delete;

  // Both return whether anything changed; only then are observers told. The set
  // may be gone when they return, if an observer destroyed the object.
  bool add(Key key) {
    if (!keys_.add(key)) return false;
    notify(key);
    return true;
  }
  bool del(Key key) {
    if (!keys_.del(key)) return false;
    notify(key);
    return true;
  }
  // Deletes those that are there when it begins, one notice a key; or, without memory
  // to remember them, as many. The caller holds the owner, which observers may let go.
  void delAll() {
    std::vector<Key> present;
    try {
      present = keys();
    } catch (const std::bad_alloc&) {
      for (U32 left = size(); left != 0 && size() != 0; --left) del(*begin());
    }
    for (const Key& key : present) del(key);
  }

  bool has(const Key& key) const { return keys_.has(key); }
  U32 size() const noexcept { return keys_.size(); }
  auto begin() const noexcept { return keys_.begin(); }
  auto end() const noexcept { return keys_.end(); }
  // A copy, for walks during which the set may change.
  std::vector<Key> keys() const { return {keys_.begin(), keys_.end()}; }

 private:
  void notify(const Key& key) const {
    if (owner_.hasNotificationActive()) owner_.notifieeList()->notify(Change(attribute_, key));
  }

  const PtrInterface& owner_;
  const U32 attribute_;
  FlatSet<Key, Hash> keys_;
};

}  // namespace Kiv

#endif
