// The framework's hash of one integer attribute.
#ifndef KIV_HASH_H
#define KIV_HASH_H

#include "Kiv/Types.h"

namespace Kiv {

// Mixes every bit of `value` and `seed` into every bit of the result: two rounds
// of multiply and fold.  The same on every platform.
constexpr U32 hashSingleAttr(U32 seed, U64 value) noexcept {
  U64 h = (value ^ (U64{seed} << 32 | seed)) + 0x9E3779B97F4A7C15;
  h = (h ^ (h >> 30)) * 0xBF58476D1CE4E5B9;
  h = (h ^ (h >> 27)) * 0x94D049BB133111EB;
  return static_cast<U32>(h ^ (h >> 31)) ^ static_cast<U32>(h >> 32);
}

}  // namespace Kiv

#endif
