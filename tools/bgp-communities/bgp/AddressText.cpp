#include "tools/bgp-communities/bgp/AddressText.h"

#include <arpa/inet.h>

#include <charconv>
#include <cstring>

namespace CommTool {

AddressText::AddressText(const Address& address) {
  if (address.family == Family::ipv4) {
    appendIpv4(address);
  } else {
    appendIpv6(address);
  }
}

// Appends to the text that the other constructor has made.
AddressText::AddressText(const Prefix& prefix) : AddressText(prefix.network) {
  text_[length_++] = '/';
  appendNumber(prefix.length);
}

void AddressText::appendNumber(U8 number) {
  char* const end = text_ + sizeof text_;
  length_ = static_cast<std::size_t>(std::to_chars(text_ + length_, end, number).ptr - text_);
}

// Written by hand, because a text is printed for each route and inet_ntop() may go through
// sprintf().
void AddressText::appendIpv4(const Address& address) {
  for (std::size_t i = 0; i < octetsOf(Family::ipv4); ++i) {
    if (i > 0) {
      text_[length_++] = '.';
    }
    appendNumber(address.octets[i]);
  }
}

// Room for the address, a slash and three digits of length.
void AddressText::appendIpv6(const Address& address) {
  static_assert(sizeof text_ >= INET6_ADDRSTRLEN + 4);
  ::inet_ntop(AF_INET6, address.octets.data(), text_, sizeof text_);
  length_ = std::strlen(text_);
}

}  // namespace CommTool
