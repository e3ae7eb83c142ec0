// The observers of an object's attributes.
//
// Notification is synchronous: the thread that changes an attribute runs the handler of every
// observer before the operation that changes it returns. A list and its observers have no lock of
// their own. They belong to one thread, or to the lock that guards the observed object.
#ifndef KIV_NOTIFIEELIST_H
#define KIV_NOTIFIEELIST_H

#include <cstddef>
#include <typeinfo>
#include <vector>

#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Kiv {

class NotifieeList;

// One change: an entry of a collection attribute was inserted, replaced or removed. A Change says
// only where; the handler looks at the object to see the entry's present state. It refers to the
// key without owning it, so it is valid only during the notification.
class Change {
 public:
  // A change of the attribute with the number `attribute` at `key`, which must outlive this object.
  template <class Key>
  Change(U32 attribute, const Key& key)
      : attribute_(attribute), key_(&key), keyType_(typeid(Key)) {}

  // The number of the attribute; the class of the observed object defines these numbers.
  U32 attribute() const noexcept { return attribute_; }
  // The key of the entry. `Key` must be exactly the key type of the attribute; otherwise an
  // assertion stops the process. Copy the key to keep it beyond the notification.
  template <class Key>
  const Key& key() const {
    KIV_ASSERT(keyType_ == typeid(Key), "keyType_ == typeid( Key )", "Kiv/NotifieeList");
    return *static_cast<const Key*>(key_);
  }

 private:
  U32 attribute_;
  const void* key_;
  const std::type_info& keyType_;
};

// The base of an observer. It observes at most one object at a time and unregisters itself when it
// is destroyed. Neither observer nor observed object owns the other; either may be destroyed first.
class OV_EXPORT Notifiee {
 public:
  // An observer that observes nothing yet.
  Notifiee() noexcept = default;
  // Not copyable: the list holds the address of the observer.
  Notifiee(const Notifiee&) = delete;
  // Not assignable: notifierIs() changes the observed object explicitly.
  Notifiee& operator=(const Notifiee&) = delete;
  // Unregisters the observer, also in the middle of a notification.
  virtual ~Notifiee();

  // Called after each change of the observed object. The handler may change the object again (which
  // causes a nested notification), register and unregister observers, and destroy this observer or
  // the object. An exception ends the notification: later observers are not notified, the change
  // remains, and the exception reaches the caller that made the change.
  virtual void handleChange(const Change& change) = 0;

  // Observes the object with this list, in place of the one observed before; null: observes
  // nothing. Throws std::bad_alloc, and then changes nothing.
  void notifierIs(NotifieeList* list);
  // The list of the observed object, or null if there is none or if the object was destroyed.
  NotifieeList* notifier() const noexcept { return list_; }

 private:
  friend class NotifieeList;

  NotifieeList* list_ = nullptr;
};

// The observers of one object, in the order of their registration. A member of the observed object;
// it does not own the observers.
class OV_EXPORT NotifieeList {
 public:
  // A list without observers; allocates nothing.
  NotifieeList() noexcept = default;
  // Not copyable: observers hold the address of the list.
  NotifieeList(const NotifieeList&) = delete;
  // Not assignable, as it is not copyable.
  NotifieeList& operator=(const NotifieeList&) = delete;
  // Unregisters all observers. Ends notifications that are running, so a handler may destroy the
  // object.
  ~NotifieeList();

  // Calls handleChange(change) of every observer that is registered when the call begins and still
  // registered at its turn. An observer that registers meanwhile is notified from the next change
  // on. Exceptions: see Notifiee::handleChange(). The list may not exist any more on return.
  void notify(const Change& change) {
    if (!notifiees_.empty()) deliver(change);
  }

  // The number of observers.
  std::size_t size() const noexcept;

 private:
  friend class Notifiee;

  class Delivery;

  void deliver(const Change& change);
  void add(Notifiee* notifiee) { notifiees_.push_back(notifiee); }
  void remove(const Notifiee* notifiee) noexcept;

  std::vector<Notifiee*> notifiees_;  // null: unregistered during a delivery
  Delivery* delivery_ = nullptr;      // the innermost running delivery, or null
};

}  // namespace Kiv

#endif
