#include "OvBgp/Value/LargeCommunityFormatter.h"

namespace Routing::Bgp {

// The number of characters is the difference of the buffer's sizes, because the buffer may move its
// text while it grows.
U32 LargeCommunityFormatter::format(OvFmt::DynamicBufferInterface& to,
                                    const Acl::CommunityValue& value, bool asdot) {
  const std::size_t before = to.size();
  const U32 admin = value.globalAdmin();
  if (asdot && admin > 0xFFFF) {
    to.appendDecimal(admin >> 16);
    to.append('.');
    to.appendDecimal(admin & 0xFFFF);
  } else {
    to.appendDecimal(admin);
  }
  to.append(':');
  to.appendDecimal(value.localData1());
  to.append(':');
  to.appendDecimal(value.localData2());
  return static_cast<U32>(to.size() - before);
}

}  // namespace Routing::Bgp
