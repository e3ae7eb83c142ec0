// Hashes of data that others choose.
#ifndef KIV_HASH_H
#define KIV_HASH_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Kiv {

// Numbers that are drawn anew for each process. Who does not know them cannot choose
// data whose hashes collide, and so cannot make tables slow; hence none of these hashes
// may leave the process. For a run that is to be repeated exactly, KIV_HASH_KEY=NUMBER
// in the environment fixes them.
struct HashKey {
  U64 mask;
  U64 factor;  // odd
};
// Drawn while the library is loaded, before the initialisers of anything that uses it.
extern OV_EXPORT const HashKey hashKey;

// Spreads what little may be in a number over all its bits; one-to-one.
constexpr U64 spreadBits(U64 n) noexcept {
  n = (n ^ n >> 30) * 0xBF58476D1CE4E5B9;
  n = (n ^ n >> 27) * 0x94D049BB133111EB;
  return n ^ n >> 31;
}

// The halves of the product of 128 bits, one over the other. A difference in one factor
// changes the result in a way that depends on the other one, be it only the uppermost
// bit, which a product of 64 bits would pass on as it is: so steps of this can follow
// each other, if one factor is unknown.
constexpr U64 foldedProduct(U64 a, U64 b) noexcept {
#ifdef __SIZEOF_INT128__
  __extension__ using U128 = unsigned __int128;
  const U128 product = U128{a} * b;
  return static_cast<U64>(product >> 64) ^ static_cast<U64>(product);
#else
  constexpr U64 half = 0xFFFFFFFF;
  const U64 low = (a & half) * (b & half);
  const U64 cross = (a >> 32) * (b & half) + (low >> 32);
  const U64 middle = (a & half) * (b >> 32) + (cross & half);
  const U64 high = (a >> 32) * (b >> 32) + (cross >> 32) + (middle >> 32);
  return high ^ (middle << 32 | (low & half));
#endif
}

// The framework's hash of one integer attribute. Never the same in two processes.
inline U32 hashSingleAttr(U32 seed, U64 value) noexcept {
  return static_cast<U32>(foldedProduct(value ^ hashKey.mask, hashKey.factor ^ U64{seed} << 32));
}

}  // namespace Kiv

#endif
