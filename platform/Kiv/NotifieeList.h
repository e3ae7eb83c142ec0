// Observers of an object's attributes.
//
// Notices are synchronous: whoever changes an attribute runs every observer's
// handler before the change returns, on his own thread. A list and its observers
// belong to one thread, or to whatever lock guards the object.
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

// What happened: something came to, or left, attribute `attribute` at a key. The
// key is borrowed for the notice.
class Change {
 public:
  template <class Key>
  Change(U32 attribute, const Key& key)
      : attribute_(attribute), key_(&key), keyType_(typeid(Key)) {}

  U32 attribute() const noexcept { return attribute_; }
  // Requires: `Key` is the attribute's type of key.
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

// An observer. It unregisters itself when it is destroyed.
class OV_EXPORT Notifiee {
 public:
  Notifiee() noexcept = default;
  Notifiee(const Notifiee&) = delete;
  Notifiee& operator=(const Notifiee&) = delete;
  virtual ~Notifiee();

  // May change the object again, register and unregister observers, and destroy
  // this observer or the object.
  virtual void handleChange(const Change& change) = 0;

  // Observes the object whose list this is, instead of any before; null: none.
  void notifierIs(NotifieeList* list);
  NotifieeList* notifier() const noexcept { return list_; }

 private:
  friend class NotifieeList;

  NotifieeList* list_ = nullptr;
};

// The observers of one object, in the order in which they registered. Owns none.
class OV_EXPORT NotifieeList {
 public:
  NotifieeList() noexcept = default;
  NotifieeList(const NotifieeList&) = delete;
  NotifieeList& operator=(const NotifieeList&) = delete;
  ~NotifieeList();

  // Tells all observers. One that registers meanwhile does not hear of it; one
  // that is gone when its turn comes does not either.
  void notify(const Change& change) {
    if (!notifiees_.empty()) deliver(change);
  }

  std::size_t size() const noexcept;

 private:
  friend class Notifiee;

  class Delivery;

  void deliver(const Change& change);
  void add(Notifiee* notifiee) { notifiees_.push_back(notifiee); }
  void remove(const Notifiee* notifiee) noexcept;

  std::vector<Notifiee*> notifiees_;  // null: has left during a delivery
  Delivery* delivery_ = nullptr;
};

}  // namespace Kiv

#endif
