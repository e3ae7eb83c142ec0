// Reading received octets: the one place where wire and file bytes are fetched.
//
// Every decoder of the tool reads through OctetReader, so that no count or
// length found in the data can lead outside what was received.
#ifndef TOOLS_BGP_COMMUNITIES_OCTETS_H
#define TOOLS_BGP_COMMUNITIES_OCTETS_H

#include <span>
#include <stdexcept>
#include <string>

#include "Kiv/Types.h"

namespace CommTool {

// Borrowed octets; whoever delivers them says how long they live.
using Octets = std::span<const U8>;

// Received data that breaks its own format; what() says how.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A cursor over octets, big-endian.  Asking for more than is left throws
// Malformed, which names the part by `what` (a literal: it is not copied).
// Owner thread only.
class OctetReader {
 public:
  OctetReader(Octets octets, const char* what) : left_(octets), what_(what) {}

  std::size_t left() const { return left_.size(); }
  bool atEnd() const { return left_.empty(); }

  U8 u8() { return octets(1)[0]; }
  U16 u16() { return static_cast<U16>(number(2)); }
  U32 u32() { return number(4); }

  // The next `count` octets, which stay where they are.
  Octets octets(std::size_t count) {
    if (count > left_.size()) [[unlikely]] {
      fail(count);
    }
    const Octets taken = left_.first(count);
    left_ = left_.subspan(count);
    return taken;
  }

  OctetReader part(std::size_t count, const char* what) { return OctetReader(octets(count), what); }
  Octets rest() { return octets(left()); }

 private:
  U32 number(std::size_t count) {
    U32 value = 0;
    for (const U8 octet : octets(count)) {
      value = value << 8 | octet;
    }
    return value;
  }

  [[noreturn, gnu::cold, gnu::noinline]] void fail(std::size_t wanted) const {
    throw Malformed(std::string(what_) + ": " + std::to_string(wanted) + " octets wanted, " +
                    std::to_string(left()) + " left");
  }

  Octets left_;
  const char* what_;
};

}  // namespace CommTool

#endif
