// The one-at-a-time byte hash by which lists are interned.
//
// Its values are part of the contract of every list's hash(), byte order
// included: words are fed least significant byte first, whatever the host's own
// order.  An empty input hashes to 0.
#ifndef BGPCOMMON_BGPHASHMIXIMPL_H
#define BGPCOMMON_BGPHASHMIXIMPL_H

#include "Kiv/Types.h"

namespace BgpCommon {

class BgpHashMixImpl {
 public:
  constexpr void addU8(U8 byte) noexcept {
    hash_ += byte;
    hash_ += hash_ << 10;
    hash_ ^= hash_ >> 6;
  }
  constexpr void addU32(U32 word) noexcept {
    addU8(static_cast<U8>(word));
    addU8(static_cast<U8>(word >> 8));
    addU8(static_cast<U8>(word >> 16));
    addU8(static_cast<U8>(word >> 24));
  }

  // The hash of what was added so far; more may be added after.
  constexpr U32 hash() const noexcept {
    U32 h = hash_;
    h += h << 3;
    h ^= h >> 11;
    h += h << 15;
    return h;
  }

 private:
  U32 hash_ = 0;
};

}  // namespace BgpCommon

#endif
