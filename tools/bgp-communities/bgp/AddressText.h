// Addresses and prefixes as people write them.
#ifndef TOOLS_BGP_COMMUNITIES_ADDRESS_TEXT_H
#define TOOLS_BGP_COMMUNITIES_ADDRESS_TEXT_H

#include <string_view>

#include "tools/bgp-communities/Route.h"

namespace CommTool {

// Text in place: short enough that nothing is allocated for it.
class AddressText {
 public:
  // Dotted decimal, or the canonical text of RFC 5952.
  explicit AddressText(const Address& address);
  // The same, and the length behind a slash.
  explicit AddressText(const Prefix& prefix);

  std::string_view view() const { return {text_, length_}; }

 private:
  void appendNumber(U8 number);
  void appendIpv4(const Address& address);
  void appendIpv6(const Address& address);

  std::size_t length_ = 0;
  char text_[52];  // the longest IPv6 text, a slash, three digits
};

}  // namespace CommTool

#endif
