// The one-at-a-time byte hash (Bob Jenkins) that every list and IPv6 content answers by hash().
//
// The hash values are part of the contract of hash(), octet order included: words are added least
// significant octet first, whatever the order of the host. An empty input hashes to 0.
//
// The hash is simple but slow, as each octet depends on the one before. Tables therefore probe with
// a faster hash of the same content (probeHash()), whose values are nobody's contract.
#ifndef BGPCOMMON_BGPHASHMIXIMPL_H
#define BGPCOMMON_BGPHASHMIXIMPL_H

#include "Kiv/Types.h"

namespace BgpCommon {

// The running state of one hash. Create one, add all octets in order, read hash(). The functions
// are constexpr, so hashes of constants cost nothing. A plain value without allocation; owner
// thread only.
class BgpHashMixImpl {
 public:
  // Adds one octet.
  constexpr void addU8(U8 byte) noexcept {
    hash_ += byte;
    hash_ += hash_ << 10;
    hash_ ^= hash_ >> 6;
  }
  // Adds four octets, least significant first.
  constexpr void addU32(U32 word) noexcept {
    addU8(static_cast<U8>(word));
    addU8(static_cast<U8>(word >> 8));
    addU8(static_cast<U8>(word >> 16));
    addU8(static_cast<U8>(word >> 24));
  }

  // The hash of the octets added so far. The state stays as it is, so more octets may follow.
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
