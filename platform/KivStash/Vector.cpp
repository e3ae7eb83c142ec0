#include "KivStash/Vector.h"

namespace KivStash {

template <>
Kiv::Type& arrayType<U32>() noexcept {
  // Constant-initialised, so arrays may be allocated before main, and never destroyed.
  static constinit Kiv::Type record{"U32[]"};
  return record;
}

}  // namespace KivStash
