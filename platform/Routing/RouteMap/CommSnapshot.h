// What all snapshots of community lists have in common: their communities.
#ifndef ROUTING_ROUTEMAP_COMMSNAPSHOT_H
#define ROUTING_ROUTEMAP_COMMSNAPSHOT_H

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingMap.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Routing::RouteMap {

// A copy of a list's contents, to be read, edited and watched entry by entry; the
// list knows nothing of it. Observers (Kiv/NotifieeList.h) hear of attribute
// `commAttribute` at the key that came, went or got another value, after the change.
//
// `CommTraits` says what `comm` is a map of (Kiv/NotifyingMap.h); where a value says
// its key, it does so by `keyOf`. Threads: one, or those that a lock lets in one by
// one; reading counts, too.
template <class CommTraits>
class OV_EXPORT CommSnapshot : public Kiv::PtrInterface {
 public:
  using CommMap = Kiv::NotifyingMap<CommTraits>;
  using KivComm = typename CommMap::Member;
  using CommKey = typename CommMap::Key;
  using CommValue = typename CommMap::Value;

  // The number under which observers hear of `comm`.
  static constexpr U32 commAttribute = 130;

  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  // In ascending order.
  const CommMap& comm() const noexcept { return comm_; }
  bool commHas(const CommKey& key) const { return comm_.has(key); }
  // Inserts an entry, or gives the one that is there another value.
  void commIs(const CommKey& key, CommValue value) { comm_.set(key, std::move(value)); }
  // The same of a value that says its key, and is never null.
  template <class Traits = CommTraits>
  requires requires(const CommValue& value) { Traits::keyOf(value); }
  void commIs(const CommValue& value) { comm_.set(Traits::keyOf(value), value); }
  // Whether it was there; only then are observers told.
  bool commDel(const CommKey& key) { return comm_.del(key); }
  // The iterator stays valid, and finds the next one.  Requires: not at the end.
  bool commDel(const typename CommMap::Iterator& position) { return comm_.del(position); }
  // Deletes, one by one, those that are there when it begins.  Throws std::bad_alloc,
  // and has deleted none.
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
