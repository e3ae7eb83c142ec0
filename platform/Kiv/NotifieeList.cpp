#include "Kiv/NotifieeList.h"

#include <algorithm>

#include "Kiv/ObserverFailure.h"

namespace Kiv {

Notifiee::~Notifiee() { notifierIs(nullptr); }

void Notifiee::notifierIs(NotifieeList* list) {
  if (list == list_) return;
  // Register first, because only this step can fail. Then a failure leaves the old registration.
  if (list) list->add(this);
  if (list_) list_->remove(this);
  list_ = list;
}

// A running delivery, on the stack of the function that delivers. Handlers may do almost anything
// meanwhile:
// - An observer is unregistered. Its entry becomes null instead of being erased, because
//   running deliveries use indexes. The outermost delivery erases these entries when it ends.
// - A handler changes the object again. The nested delivery is linked to the outer one.
// - The list is destroyed. Its destructor tells every running delivery, whose loop then ends
//   without touching the list.
class NotifieeList::Delivery {
 public:
  explicit Delivery(NotifieeList& list) : list_(&list), outer_(list.delivery_) {
    list.delivery_ = this;
  }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;
  ~Delivery() {
    // Runs also if a handler throws, so an exception leaves the list consistent.
    if (!list_) return;
    list_->delivery_ = outer_;
    if (!outer_) std::erase(list_->notifiees_, nullptr);
  }

  bool listDestroyed() const { return list_ == nullptr; }
  // Called by the destructor of the list.
  void listDestroyedIs() { list_ = nullptr; }
  // The delivery whose handler started this one, or null.
  Delivery* outer() const { return outer_; }

 private:
  NotifieeList* list_;
  Delivery* const outer_;
};

NotifieeList::~NotifieeList() {
  for (Notifiee* notifiee : notifiees_) {
    if (notifiee) notifiee->list_ = nullptr;
  }
  for (Delivery* delivery = delivery_; delivery; delivery = delivery->outer()) {
    delivery->listDestroyedIs();
  }
}

// Observers that register during the delivery are appended behind the present ones and not notified
// by it. The vector may be reallocated meanwhile, so the loops use indexes. The undoing belongs to
// the same delivery, because only so do the indexes still name the observers that were notified.
void NotifieeList::deliverInsertion(const Change& change, UndoCall undo, const void* context) {
  const Delivery delivery(*this);
  const std::size_t present = notifiees_.size();
  std::size_t notified = 0;
  try {
    while (notified < present) {
      if (Notifiee* const notifiee = notifiees_[notified++]) notifiee->handleChange(change);
      // From here on `this` may be a dangling pointer.
      if (delivery.listDestroyed()) return;
    }
  } catch (...) {
    if (!delivery.listDestroyed() && undo(context)) deliverQuietly(delivery, change, notified);
    throw;
  }
}

void NotifieeList::deliverRemoval(const Change& change) noexcept {
  const Delivery delivery(*this);
  deliverQuietly(delivery, change, notifiees_.size());
}

void NotifieeList::deliverQuietly(const Delivery& delivery, const Change& change,
                                  std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    if (Notifiee* const notifiee = notifiees_[i]) {
      Kiv::notifyOfRemoval([&] { notifiee->handleChange(change); });
    }
    if (delivery.listDestroyed()) return;
  }
}

std::size_t NotifieeList::size() const noexcept {
  return notifiees_.size() -
         static_cast<std::size_t>(std::count(notifiees_.begin(), notifiees_.end(), nullptr));
}

void NotifieeList::remove(const Notifiee* notifiee) noexcept {
  const auto at = std::find(notifiees_.begin(), notifiees_.end(), notifiee);
  // A running delivery relies on the indexes, so only the entry is cleared then; see Delivery.
  *at = nullptr;
  if (!delivery_) notifiees_.erase(at);
}

}  // namespace Kiv
