#include "Dorn/DelayPoint.h"

#ifdef OVBGP_DELAYS
namespace Dorn {

constinit std::atomic<DelayHook> delayHook{nullptr};

}  // namespace Dorn
#endif
