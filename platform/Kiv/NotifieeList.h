// The observers of an object's attributes.
//
// Notification is synchronous: the thread that changes an attribute runs the handler of every
// observer before the operation that changes it returns. A list and its observers have no lock of
// their own. They belong to one thread, or to the lock that guards the observed object.
//
// Observers that throw. All collections, tables and parse rules follow one rule:
// - Insertion, or replacement of a value. The exception ends the notification. The insertion is
//   undone. The observers that were notified of it, including the observer that threw, are notified
//   of a removal. Observers registered after the one that threw are notified of nothing. Then the
//   exception reaches the caller that inserted.
// - Removal. The exception is caught and traced (Kiv/ObserverFailure.h). The entry stays removed,
//   and all other observers are notified of the removal.
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
  // the object. For exceptions see the rule at the top of this file.
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

  // Notifies of an insertion: calls handleChange(change) of every observer that is registered when
  // the call begins and still registered at its turn. An observer that registers meanwhile is
  // notified from the next change on. The list may not exist any more on return.
  //
  // If an observer throws, calls `undo()`, which takes the insertion back, returns whether it did
  // so, and does not throw. If it did, notifies the observers up to the one that threw once more.
  // Then passes the exception on. `undo` is not called if an observer has destroyed the list.
  template <class Undo>
  void notifyOfInsertion(const Change& change, const Undo& undo) {
    if (notifiees_.empty()) return;
    deliverInsertion(
        change, [](const void* context) { return (*static_cast<const Undo*>(context))(); }, &undo);
  }
  // Notifies of a removal, in the same way. Exceptions of observers are caught and traced.
  void notifyOfRemoval(const Change& change) noexcept {
    if (!notifiees_.empty()) deliverRemoval(change);
  }
  // Notifies of a change that nobody can undo, such as that of a counter. If an observer throws,
  // later observers are not notified, the change remains, and the exception reaches the caller.
  void notify(const Change& change) {
    notifyOfInsertion(change, [] { return false; });
  }

  // The number of observers.
  std::size_t size() const noexcept;

 private:
  friend class Notifiee;

  class Delivery;

  // Takes back an insertion that `context` describes; returns whether there was anything to undo.
  using UndoCall = bool (*)(const void* context);

  void deliverInsertion(const Change& change, UndoCall undo, const void* context);
  void deliverRemoval(const Change& change) noexcept;
  // Notifies the first `count` observers, and traces what they throw.
  void deliverQuietly(const Delivery& delivery, const Change& change, std::size_t count) noexcept;
  void add(Notifiee* notifiee) { notifiees_.push_back(notifiee); }
  void remove(const Notifiee* notifiee) noexcept;

  std::vector<Notifiee*> notifiees_;  // null: unregistered during a delivery
  Delivery* delivery_ = nullptr;      // the innermost running delivery, or null
};

}  // namespace Kiv

#endif
