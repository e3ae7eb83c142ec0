// The text of addresses and prefixes.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_ADDRESS_TEXT_H
#define TOOLS_BGP_COMMUNITIES_BGP_ADDRESS_TEXT_H

#include <string_view>

#include "tools/bgp-communities/bgp/Route.h"

namespace CommTool {

// A text that is stored within the object, because all texts are short. Nothing is allocated.
class AddressText {
 public:
  // Dotted decimal for IPv4, the canonical text of RFC 5952 for IPv6.
  explicit AddressText(const Address& address);
  // The text of the network, a slash and the length.
  explicit AddressText(const Prefix& prefix);

  // The text, which is valid as long as this object.
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
