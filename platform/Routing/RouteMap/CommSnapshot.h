// The common base of snapshots of community lists.
#ifndef ROUTING_ROUTEMAP_COMMSNAPSHOT_H
#define ROUTING_ROUTEMAP_COMMSNAPSHOT_H

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingMap.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Routing::RouteMap {

// A copy of a list's communities that can be read, edited and observed entry by entry. It is
// independent of the list: changes of the snapshot do not change the list. Observers
// (Kiv/NotifieeList.h) are notified after each change, with attribute `commAttribute` and the key
// of the entry that was inserted, deleted or given another value.
//
// `CommTraits` defines key and value of the map `comm` (Kiv/NotifyingMap.h). If it has a function
// `keyOf`, the key follows from the value. One thread at a time, also for reading.
template <class CommTraits>
class OV_EXPORT CommSnapshot : public Kiv::PtrInterface {
 public:
  // The map of the communities.
  using CommMap = Kiv::NotifyingMap<CommTraits>;
  // One entry of the map.
  using KivComm = typename CommMap::Member;
  // The key of an entry: the community, or what identifies it.
  using CommKey = typename CommMap::Key;
  // The value of an entry.
  using CommValue = typename CommMap::Value;

  // The attribute number in notifications about `comm`.
  static constexpr U32 commAttribute = 130;

  // The observers of this snapshot; part of the object, never null.
  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  // All entries, in ascending order of key.
  const CommMap& comm() const noexcept { return comm_; }
  // Whether an entry with this key exists.
  bool commHas(const CommKey& key) const { return comm_.has(key); }
  // Inserts an entry, or replaces the value of the existing one. Raises std::bad_alloc.
  void commIs(const CommKey& key, CommValue value) { comm_.set(key, std::move(value)); }
  // As above, for values that determine their key. `value` must not be null.
  template <class Traits = CommTraits>
  requires requires(const CommValue& value) { Traits::keyOf(value); }
  void commIs(const CommValue& value) { comm_.set(Traits::keyOf(value), value); }
  // Deletes the entry with this key, and returns whether it existed. Observers are notified only if
  // it did.
  bool commDel(const CommKey& key) { return comm_.del(key); }
  // Deletes the entry at the iterator, which stays valid and then refers to the next entry. The
  // iterator must not be at the end.
  bool commDel(const typename CommMap::Iterator& position) { return comm_.del(position); }
  // Deletes, one by one, the entries that exist when it begins; an observer may insert others
  // meanwhile. Holds a reference to the snapshot until it has finished. Raises std::bad_alloc, and
  // has deleted none then.
  void commDelAll() {
    const Kiv::PtrInterface::PtrConst self(this);
    comm_.delAll();
  }

 private:
  mutable Kiv::NotifieeList notifieeList_;
  CommMap comm_{*this, commAttribute};
};

}  // namespace Routing::RouteMap

#endif
