// A set whose changes observers hear of: one collection attribute of an object.
#ifndef KIV_NOTIFYINGSET_H
#define KIV_NOTIFYINGSET_H

#include <functional>
#include <unordered_set>
#include <vector>

#include "Kiv/NotifieeList.h"
#include "Kiv/Types.h"

namespace Kiv {

// Holds keys by value and tells the object's observers, under the attribute's
// number, of each key that comes or goes: after the change, so that they see the
// set as it is now. Threads: as the object's NotifieeList.
template <class Key, class Hash = std::hash<Key>>
class NotifyingSet {
 public:
  NotifyingSet(NotifieeList& observers, U32 attribute)
      : observers_(observers), attribute_(attribute) {}
  NotifyingSet(const NotifyingSet&) = delete;
  NotifyingSet& operator=(const NotifyingSet&) = delete;

  // Both return whether anything changed; only then are observers told. The set
  // may be gone when they return, if an observer destroyed the object.
  bool add(Key key) {
    if (!keys_.insert(key).second) return false;
    observers_.notify(Change(attribute_, key));
    return true;
  }
  bool del(Key key) {
    if (keys_.erase(key) == 0) return false;
    observers_.notify(Change(attribute_, key));
    return true;
  }
  // One notice a key.
  void delAll() {
    for (const Key& key : keys()) del(key);
  }

  bool has(const Key& key) const { return keys_.contains(key); }
  U32 size() const noexcept { return static_cast<U32>(keys_.size()); }
  auto begin() const noexcept { return keys_.begin(); }
  auto end() const noexcept { return keys_.end(); }
  // A copy, for walks during which the set may change.
  std::vector<Key> keys() const { return {keys_.begin(), keys_.end()}; }

 private:
  NotifieeList& observers_;
  const U32 attribute_;
  std::unordered_set<Key, Hash> keys_;
};

}  // namespace Kiv

#endif
