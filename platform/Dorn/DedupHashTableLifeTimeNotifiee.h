// An observer of one interning table.
#ifndef DORN_DEDUPHASHTABLELIFETIMENOTIFIEE_H
#define DORN_DEDUPHASHTABLELIFETIMENOTIFIEE_H

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Dorn {

class DedupHashTable;

// Hears of each member's arrival and departure, in the order in which they
// happen, on the thread that caused them and under the table's notification
// lock.  A handler may intern, release and look up in the observed table and in
// the tables below it (list, then sub-list, then value); two observers that
// reached across in opposite directions could wait for each other for ever.
//
// The table does not own its observer.  An observer that goes, or whose table
// goes, is told to stop first (handleNotificationStop).  Register and destroy it
// on one thread; it must not be registered on a second table at the same time.
class OV_EXPORT DedupHashTableLifeTimeNotifiee : public Kiv::PtrInterface {
 public:
  using Ptr = Kiv::Ptr<DedupHashTableLifeTimeNotifiee>;

  // Which members it hears of: those of which DedupHandle::isNotable() says so, or
  // all. What happens to the others takes no notification lock.
  enum class Interest : U8 { all, notable };

  // `handle` is a member now.  If this throws, the insertion is taken back.
  virtual void handleInsert(const Kiv::Ptr<DedupHandle>& handle) = 0;
  // `handle` is a member no more and is about to be dropped: read it, but take no
  // reference.  Must not throw.
  virtual void handleRemove(DedupHandle* handle) = 0;
  // No more will be heard of `table`, whose members stay: neither after this nor of
  // what happens meanwhile.  To walk them, hold them (members()).  May let itself
  // go, but not register another observer.  Must not throw.
  virtual void handleNotificationStop(const Kiv::Ptr<const DedupHashTable>& table) = 0;

  void zeroReferencesIs() noexcept override;

 protected:
  explicit DedupHashTableLifeTimeNotifiee(Interest interest = Interest::all) noexcept
      : interest_(interest) {}

 private:
  friend class DedupHashTable;

  const Interest interest_;
  DedupHashTable* table_ = nullptr;
};

}  // namespace Dorn

#endif
