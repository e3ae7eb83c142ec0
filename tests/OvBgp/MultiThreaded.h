#ifndef TESTS_OVBGP_MULTITHREADED_H
#define TESTS_OVBGP_MULTITHREADED_H

#include "Kiv/PtrInterface.h"
#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Routing::Bgp {

// Several threads, and tables made meanwhile that know it, while it lives.
class MultiThreaded {
 public:
  explicit MultiThreaded(bool several = true) { set(several); }
  MultiThreaded(const MultiThreaded&) = delete;
  MultiThreaded& operator=(const MultiThreaded&) = delete;
  ~MultiThreaded() { set(false); }

 private:
  static void set(bool on) {
    Kiv::VFPtrInterface::threadSafePointers = on;
    OvBgpGlobals::multiThreadedIs(on);
  }
};

}  // namespace Routing::Bgp

#endif
