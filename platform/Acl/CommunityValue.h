// A large community's value (RFC 8092).
#ifndef ACL_COMMUNITYVALUE_H
#define ACL_COMMUNITYVALUE_H

#include <compare>

#include "Kiv/Types.h"

namespace Acl {

// Three words in host byte order; orders by them as they stand.
class CommunityValue {
 public:
  constexpr CommunityValue() = default;
  constexpr CommunityValue(U32 globalAdmin, U32 localData1, U32 localData2)
      : globalAdmin_(globalAdmin), localData1_(localData1), localData2_(localData2) {}

  constexpr U32 globalAdmin() const { return globalAdmin_; }
  constexpr U32 localData1() const { return localData1_; }
  constexpr U32 localData2() const { return localData2_; }

  friend constexpr auto operator<=>(const CommunityValue&, const CommunityValue&) = default;

 private:
  U32 globalAdmin_ = 0;
  U32 localData1_ = 0;
  U32 localData2_ = 0;
};

}  // namespace Acl

#endif
