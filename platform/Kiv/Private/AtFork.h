// AtFork: keeps a process-wide lock usable in a child process of fork().
#ifndef KIV_PRIVATE_ATFORK_H
#define KIV_PRIVATE_ATFORK_H

#include <pthread.h>

#include "Kiv/ThreadAnnotations.h"

namespace Kiv {

// A child of fork() has the calling thread only. A lock that another thread held at that moment
// would stay locked in the child for ever. So fork() takes the lock first, and parent and child
// release it afterwards: the data that it guards is consistent in both.
//
// One object of this class for each such lock, at namespace scope in the source that defines the
// lock. No thread may take two of these locks at once, since their order at fork() is unspecified.
// `Lock` has lock() and unlock().
template <auto& lock>
class AtFork {
 public:
  // Registers the handlers. Without memory for them there are none, as before.
  AtFork() noexcept { pthread_atfork(take, release, release); }

 private:
  static void take() noexcept KIV_NO_THREAD_SAFETY_ANALYSIS { lock.lock(); }
  static void release() noexcept KIV_NO_THREAD_SAFETY_ANALYSIS { lock.unlock(); }
};

}  // namespace Kiv

#endif
