// The value of a large community (RFC 8092). It is independent of lists and tables, so policy code
// can use it without the rest of the library.
#ifndef ACL_COMMUNITYVALUE_H
#define ACL_COMMUNITYVALUE_H

#include <compare>

#include "Kiv/Types.h"

namespace Acl {

// The three 32-bit parts of a large community, in host byte order. A plain value of 12 octets,
// compared lexicographically by its parts: the order of the octets on the wire.
class CommunityValue {
 public:
  // 0:0:0.
  constexpr CommunityValue() = default;
  // The parts in the order of their text, "global:local1:local2".
  constexpr CommunityValue(U32 globalAdmin, U32 localData1, U32 localData2)
      : globalAdmin_(globalAdmin), localData1_(localData1), localData2_(localData2) {}

  // The Global Administrator: the AS number that defines the meaning of the rest.
  constexpr U32 globalAdmin() const { return globalAdmin_; }
  // The Local Data Part 1.
  constexpr U32 localData1() const { return localData1_; }
  // The Local Data Part 2.
  constexpr U32 localData2() const { return localData2_; }

  // Equality and order, by the parts from the first to the last.
  friend constexpr auto operator<=>(const CommunityValue&, const CommunityValue&) = default;

 private:
  U32 globalAdmin_ = 0;
  U32 localData1_ = 0;
  U32 localData2_ = 0;
};

}  // namespace Acl

#endif
