// The framework's hash of one integer attribute.
#ifndef KIV_HASH_H
#define KIV_HASH_H

#include "Kiv/Types.h"

namespace Kiv {

// One multiplication, of which the upper half is taken: every bit of `value` and
// `seed` reaches the upper bits of the result, some of them no others.  For tables that
// choose places by the upper bits, or multiply again.  The same on every platform.
constexpr U32 hashSingleAttr(U32 seed, U64 value) noexcept {
  const U64 h = value + seed * U64{0x9E3779B97F4A7C15};
  return static_cast<U32>((h ^ h >> 32) * 0xBF58476D1CE4E5B9 >> 32);
}

}  // namespace Kiv

#endif
