// An observer of one interning table, for fuzz targets.
#ifndef FUZZ_SUPPORT_MIRROR_H
#define FUZZ_SUPPORT_MIRROR_H

#include <functional>
#include <set>
#include <utility>

#include "Dorn/DedupHashTable.h"
#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "fuzz/support/Require.h"

namespace Fuzz {

// Knows the members of a table by what it was told, and may call back.  A target that
// uses it has its KIV_OBJECT_DEFINE.
class Mirror final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(Mirror)

 public:
  // `callBack`, if any, interns and releases in the observed table or below it.
  explicit Mirror(std::function<void()> callBack) : callBack_(std::move(callBack)) {}

  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    require(handle->isDeduped(), "told of what is not in the table");
    require(members_.insert(handle.ptr()).second, "told twice that one came");
    callBackOnce();
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    require(members_.erase(handle) == 1, "told that one went that had not come");
    callBackOnce();
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {
    stopped_ = true;
  }

  bool stopped() const { return stopped_; }
  // What `table` has, unless it has told this to stop.
  void check(const Dorn::DedupHashTable& table) const {
    if (stopped_) return;
    require(members_.size() == table.size(), "as many as the observer was told of");
    for (const auto& member : table.members()) {
      require(members_.contains(member.ptr()), "one that the observer was not told of");
    }
  }

 private:
  void callBackOnce() {
    if (!callBack_ || calling_) return;
    calling_ = true;
    callBack_();
    calling_ = false;
  }

  const std::function<void()> callBack_;
  std::set<const Dorn::DedupHandle*> members_;
  bool calling_ = false;
  bool stopped_ = false;
};

}  // namespace Fuzz

#endif
