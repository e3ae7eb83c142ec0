// Keyed hashes, for data that an outside party chooses.
//
// A sender who knows a hash function can choose many values with the same hash and make every
// lookup in a table linear. The hashes here therefore depend on a secret key of the process:
// without the key, nobody can choose colliding values. Consequences:
// - No hash may leave the process: not in a message, not in a file, not in a log.
// - Hashes differ from run to run. To repeat a run exactly, set the environment variable
//   KIV_HASH_KEY to a number; the key is then derived from this number only.
// - A child after fork() has the key of its parent, and so has every process that is started with
//   the same KIV_HASH_KEY.
// The hashes are fast, not cryptographic: they resist a sender who cannot observe the hashes.
#ifndef KIV_HASH_H
#define KIV_HASH_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Kiv {

// The secret numbers of one process.
struct HashKey {
  // XORed into a value before it is multiplied, so that no value is known to give the product 0.
  U64 mask;
  // A factor of the multiplication; odd, and therefore never 0.
  U64 factor;
};

// The key of this process, drawn from the random numbers of the system while the library is
// loaded, before the initialisers of any other static object. Read-only from then on, so every
// thread may read it without a lock.
extern OV_EXPORT const HashKey hashKey;

// Distributes the information of `n`, which may be in few bits, over all 64 bits; one-to-one. This
// is the output function of the generator SplitMix64. Not keyed: anybody can invert it.
constexpr U64 spreadBits(U64 n) noexcept {
  n = (n ^ n >> 30) * 0xBF58476D1CE4E5B9;
  n = (n ^ n >> 27) * 0x94D049BB133111EB;
  return n ^ n >> 31;
}

// Folded multiply: the XOR of the high and the low half of the 128-bit product. Every bit of one
// factor, the top bit included, affects the result in a way that depends on the other factor. (In
// a 64-bit product, the top bit of a factor affects the top bit of the product only.) If one
// factor is secret, steps can be chained: the result of one step, XORed with the next value, is a
// factor of the next step. A factor of 0 gives 0.
constexpr U64 foldedProduct(U64 a, U64 b) noexcept {
#ifdef __SIZEOF_INT128__
  __extension__ using U128 = unsigned __int128;
  const U128 product = U128{a} * b;
  return static_cast<U64>(product >> 64) ^ static_cast<U64>(product);
#else
  // Schoolbook multiplication with 32-bit digits. No sum overflows 64 bits: a product of two digits
  // plus two further digits is at most 2^64 - 1.
  constexpr U64 half = 0xFFFFFFFF;
  const U64 low = (a & half) * (b & half);
  const U64 cross = (a >> 32) * (b & half) + (low >> 32);
  const U64 middle = (a & half) * (b >> 32) + (cross & half);
  const U64 high = (a >> 32) * (b >> 32) + (cross >> 32) + (middle >> 32);
  return high ^ (middle << 32 | (low & half));
#endif
}

// The framework's hash of one integer attribute, keyed with hashKey. Different seeds give
// independent hashes, for attributes of different kinds. All 32 bits of the result may be used.
// Not comparable between processes, as the top of this file says.
inline U32 hashSingleAttr(U32 seed, U64 value) noexcept {
  // The seed changes the upper half of the factor only, so the factor stays odd.
  return static_cast<U32>(foldedProduct(value ^ hashKey.mask, hashKey.factor ^ U64{seed} << 32));
}

}  // namespace Kiv

#endif
