#include "Kiv/Detail/SpinLock.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <ctime>
#include <mutex>
#include <thread>

namespace {

// Restricts the calling thread to the processor that it runs on now.
void staysHere() {
  cpu_set_t here;
  CPU_ZERO(&here);
  CPU_SET(sched_getcpu(), &here);
  pthread_setaffinity_np(pthread_self(), sizeof here, &here);
}

long millisecondsUsed() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return used.tv_sec * 1000 + used.tv_nsec / 1'000'000;
}

// A real-time thread waits for a lock whose owner has a lower priority and the same processor. The
// owner can release the lock only while the waiting thread sleeps. If that thread only yielded, it
// would use the processor until the kernel's limit for real-time threads ended that, after some
// 950 ms.
TEST(SpinLock, RealTimeThreadLetsAnOwnerOfLowerPriorityRun) {
  long used = -1;
  bool isRealTime = false;
  std::thread([&] {
    staysHere();
    Kiv::SpinLock lock;
    std::atomic<bool> waits = false;
    lock.lock();
    std::thread urgent([&] {
      const sched_param lowest{sched_get_priority_min(SCHED_FIFO)};
      isRealTime = pthread_setschedparam(pthread_self(), SCHED_FIFO, &lowest) == 0;
      waits = true;
      const long before = millisecondsUsed();
      const std::lock_guard waited(lock);
      used = millisecondsUsed() - before;
    });
    while (!waits) sched_yield();
    lock.unlock();
    urgent.join();
  }).join();
  if (!isRealTime) GTEST_SKIP() << "no right to a real-time priority";
  EXPECT_LT(used, 500);
}

}  // namespace
