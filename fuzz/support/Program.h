// How a fuzz target runs what its input says.
#ifndef FUZZ_SUPPORT_PROGRAM_H
#define FUZZ_SUPPORT_PROGRAM_H

#include <cstddef>

#include "Kiv/Ptr.h"
#include "OvBgpGlobals/OvBgpGlobals.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Require.h"

namespace Fuzz {

// The whole of a target: runs `program` on the input, after which no object of the
// framework's allocator may be left that was not there before.
int leavingNothing(const U8* data, std::size_t size, const auto& program) {
  Input input(data, size);
  const NothingLeft guard;
  program(input);
  return 0;
}

// Sets pointers and tables up for several threads or for one, as the input says.
inline bool severalThreadsFrom(Input& input) {
  const bool several = input.flag();
  Kiv::VFPtrInterface::threadSafePointers = several;
  OvBgpGlobals::multiThreadedIs(several);
  return several;
}

}  // namespace Fuzz

#endif
