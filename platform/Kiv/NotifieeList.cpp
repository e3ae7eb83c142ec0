#include "Kiv/NotifieeList.h"

#include <algorithm>

namespace Kiv {

Notifiee::~Notifiee() { notifierIs(nullptr); }

void Notifiee::notifierIs(NotifieeList* list) {
  if (list == list_) return;
  if (list) list->add(this);
  if (list_) list_->remove(this);
  list_ = list;
}

// A notice that is being delivered. The places of observers who leave meanwhile
// are kept until the outermost one ends, as it counts on them.
class NotifieeList::Delivery {
 public:
  explicit Delivery(NotifieeList& list) : list_(&list), outer_(list.delivery_) {
    list.delivery_ = this;
  }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;
  ~Delivery() {
    if (!list_) return;
    list_->delivery_ = outer_;
    if (!outer_) std::erase(list_->notifiees_, nullptr);
  }

  bool listGone() const { return list_ == nullptr; }
  // Both for the list that goes.
  void listGoes() { list_ = nullptr; }
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
    delivery->listGoes();
  }
}

void NotifieeList::deliver(const Change& change) {
  const Delivery delivery(*this);
  const std::size_t present = notifiees_.size();
  for (std::size_t i = 0; i < present; ++i) {
    if (notifiees_[i]) notifiees_[i]->handleChange(change);
    if (delivery.listGone()) return;
  }
}

std::size_t NotifieeList::size() const noexcept {
  return notifiees_.size() -
         static_cast<std::size_t>(std::count(notifiees_.begin(), notifiees_.end(), nullptr));
}

void NotifieeList::remove(const Notifiee* notifiee) noexcept {
  const auto at = std::find(notifiees_.begin(), notifiees_.end(), notifiee);
  *at = nullptr;
  if (!delivery_) notifiees_.erase(at);
}

}  // namespace Kiv
