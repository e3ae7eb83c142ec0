// The insertions of one notifying collection whose observers are being notified.
//
// An observer that throws makes its insertion be undone. But observers before it may have changed
// the same entry again: removed it, replaced it, or removed it and inserted it anew. All observers
// were notified of that later change, so it must stand. The collection therefore records here which
// insertions are running and which of them are out of date.
#ifndef KIV_DETAIL_RUNNINGINSERTIONS_H
#define KIV_DETAIL_RUNNINGINSERTIONS_H

#include "Kiv/Types.h"

namespace Kiv {

// A member of a collection. `Entry` names an entry and is compared with ==. The insertions form a
// stack, since each later one is made by an observer of the one before.
template <class Entry>
class RunningInsertions {
 public:
  // One insertion or replacement, on the stack of the function that makes it.
  class Running {
   public:
    // Records a change of `entry`. `entry` must outlive this object.
    Running(RunningInsertions& all, const Entry& entry) noexcept
        : all_(&all), outer_(all.innermost_), entry_(entry) {
      all.changed(entry);
      all.innermost_ = this;
    }
    // Not copyable: inner insertions refer to this object.
    Running(const Running&) = delete;
    // Not assignable, as it is not copyable.
    Running& operator=(const Running&) = delete;
    // Ends the record. The collection may have been destroyed before.
    ~Running() {
      if (all_) all_->innermost_ = outer_;
    }

    // Whether nothing has changed the entry since this insertion. Requires that the collection
    // still exists.
    bool isLatest() const noexcept { return laterChanges_ == 0; }
    // The insertion has been undone, so it does not count as a change for those around it.
    void undone() noexcept {
      for (Running* at = outer_; at; at = at->outer_) at->laterChanges_ -= at->entry_ == entry_;
    }

   private:
    friend class RunningInsertions;

    RunningInsertions* all_;  // null: the collection has been destroyed
    Running* const outer_;    // the insertion whose notification made this one, or null
    const Entry& entry_;
    U32 laterChanges_ = 0;
  };

  // A record without insertions.
  RunningInsertions() noexcept = default;
  // Not copyable: running insertions refer to it.
  RunningInsertions(const RunningInsertions&) = delete;
  // Not assignable, as it is not copyable.
  RunningInsertions& operator=(const RunningInsertions&) = delete;
  // Called in the destructor of the collection, perhaps by an observer while insertions run.
  ~RunningInsertions() {
    for (Running* at = innermost_; at; at = at->outer_) at->all_ = nullptr;
  }

  // `entry` has been removed or replaced: running insertions of it are out of date.
  void changed(const Entry& entry) noexcept {
    for (Running* at = innermost_; at; at = at->outer_) at->laterChanges_ += at->entry_ == entry;
  }

 private:
  Running* innermost_ = nullptr;
};

}  // namespace Kiv

#endif
