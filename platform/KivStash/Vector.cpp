#include "KivStash/Vector.h"

namespace KivStash {

template <>
Kiv::Type& arrayType<U32>() noexcept {
  static constinit Kiv::Type record{"U32[]"};
  return record;
}

}  // namespace KivStash
