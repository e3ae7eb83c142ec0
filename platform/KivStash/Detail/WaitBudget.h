// The time that the readers of one store may wait for its writer.
//
// Implementation detail of KivStash::StoreManager; include KivStash/StoreManager.h.
#ifndef KIVSTASH_DETAIL_WAITBUDGET_H
#define KIVSTASH_DETAIL_WAITBUDGET_H

#include <atomic>
#include <chrono>

namespace KivStash {

// A reader that finds an image in change yields its processor, so that the writer can finish. On a
// busy machine one yield can take several time slices, and a writer that died, or is hostile, may
// have left any number of images in change. Therefore the yields of all readers of a store share
// one budget: 100 ms in each second. A walk through a store is delayed by 100 ms in all, or by a
// ninth of its own time if that is longer.
//
// Any thread. Relaxed accesses suffice, and an update that is lost between threads does no harm,
// because the budget orders no memory and a little more waiting is acceptable.
class WaitBudget {
 public:
  // Yields the processor once and charges the time that it took. Returns false, and does nothing,
  // if the budget of this second is spent.
  bool yield() noexcept;

 private:
  using Clock = std::chrono::steady_clock;

  std::atomic<Clock::duration> second_{};  // when the current second began, since Clock's epoch
  std::atomic<Clock::duration> spent_{};   // in the current second
};

}  // namespace KivStash

#endif
