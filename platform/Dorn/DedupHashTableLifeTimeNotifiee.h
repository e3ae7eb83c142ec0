// DedupHashTableLifeTimeNotifiee: the base of an observer of one interning table.
#ifndef DORN_DEDUPHASHTABLELIFETIMENOTIFIEE_H
#define DORN_DEDUPHASHTABLELIFETIMENOTIFIEE_H

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Dorn {

class DedupHashTable;

// Is notified of each insertion and removal of a member. DedupHashTable::lifeTimeNotifieeIs
// registers it.
//
// Threads. The handlers run on the thread that inserts or releases the member, under the table's
// notification lock. Therefore they run one at a time, and in the order of the changes. A handler
// may intern, release and look up in the observed table and in the tables below it (list, then
// sub-list, then value). It must not use a table above the observed table, because two observers
// that use each other's tables in opposite directions could wait for each other for ever.
//
// Ownership. The table does not own its observer. If the observer or the table is about to be
// destroyed, the observer is first notified that it must stop (handleNotificationStop). Register
// and destroy an observer on one thread, and do not register it on two tables at the same time.
class OV_EXPORT DedupHashTableLifeTimeNotifiee : public Kiv::PtrInterface {
 public:
  // A counted pointer to an observer.
  using Ptr = Kiv::Ptr<DedupHashTableLifeTimeNotifiee>;

  // The members that an observer is notified of. Insertion and removal of all other members take
  // no notification lock.
  enum class Interest : U8 {
    all,      // every member
    notable,  // members for which DedupHandle::isNotable() is true
  };

  // `handle` has become a member. Other threads may have found it already. If this throws, the
  // insertion is undone and the exception is passed on to the caller of dedup().
  virtual void handleInsert(const Kiv::Ptr<DedupHandle>& handle) = 0;
  // `handle` is no longer a member, and the table drops its reference after this call. The
  // handler may read it, but must not take a reference, because that ends the process. An exception
  // of the handler is caught and traced (the rule of Kiv/NotifieeList.h); the member stays removed.
  virtual void handleRemove(DedupHandle* handle) = 0;
  // The observer is unregistered from `table`, whose members stay. It is notified of nothing
  // after this call, nor of changes that this call causes. To look at the members here, use
  // DedupHashTable::members() or membersVisit(). This function may give up the last reference
  // to the observer. It must not register another observer, and must not throw.
  virtual void handleNotificationStop(const Kiv::Ptr<const DedupHashTable>& table) = 0;

  // Called when the last reference to the observer has been given up. Unregisters it, which
  // calls handleNotificationStop, and destroys it.
  void zeroReferencesIs() noexcept override;

  // The members that this observer is notified of.
  Interest interest() const noexcept { return interest_; }

 protected:
  // An observer that is not registered. The interest cannot change later.
  explicit DedupHashTableLifeTimeNotifiee(Interest interest = Interest::all) noexcept
      : interest_(interest) {}

 private:
  friend class DedupHashTable;

  const Interest interest_;
  // The table that it is registered on, or null. Changed under the notification lock, read
  // without one: hence the rule that one thread registers and destroys it.
  DedupHashTable* table_ = nullptr;
};

}  // namespace Dorn

#endif
