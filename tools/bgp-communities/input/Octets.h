// Bounds-checked reading of received octets.
//
// Every decoder of the tool reads through OctetReader. It compares each count with the octets that
// were received, so a wrong length in the data cannot make a decoder read beyond its buffer.
#ifndef TOOLS_BGP_COMMUNITIES_INPUT_OCTETS_H
#define TOOLS_BGP_COMMUNITIES_INPUT_OCTETS_H

#include <span>
#include <stdexcept>
#include <string>

#include "Kiv/Types.h"

namespace CommTool {

// Borrowed octets. The function that delivers them says how long they are valid.
using Octets = std::span<const U8>;

// Thrown for received data that violates its format. what() describes the violation on one line.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A cursor over octets in network byte order. Every read advances it. A read of more octets than
// are left throws Malformed and leaves the cursor unchanged. Copies are independent cursors over
// the same octets. Owner thread only.
class OctetReader {
 public:
  // Reads `octets`, which must stay valid. `what` names them in error messages; it is not copied
  // and is therefore usually a literal.
  OctetReader(Octets octets, const char* what) : left_(octets), what_(what) {}

  // The number of octets that have not been read.
  std::size_t left() const { return left_.size(); }
  // Whether all octets have been read.
  bool atEnd() const { return left_.empty(); }

  // Reads one octet.
  U8 u8() { return octets(1)[0]; }
  // Reads two octets, the most significant one first.
  U16 u16() { return static_cast<U16>(number(2)); }
  // Reads four octets, the most significant one first.
  U32 u32() { return number(4); }

  // Reads `count` octets without copying them: the result points into the octets given to the
  // constructor.
  Octets octets(std::size_t count) {
    if (count > left_.size()) [[unlikely]] {
      fail(count);
    }
    const Octets taken = left_.first(count);
    left_ = left_.subspan(count);
    return taken;
  }

  // Reads `count` octets and returns a reader of them, which is named `what` in error messages.
  OctetReader part(std::size_t count, const char* what) { return OctetReader(octets(count), what); }
  // Reads all octets that are left.
  Octets rest() { return octets(left()); }

 private:
  U32 number(std::size_t count) {
    U32 value = 0;
    for (const U8 octet : octets(count)) {
      value = value << 8 | octet;
    }
    return value;
  }

  // Out of line, so that the check in octets() costs one comparison and a branch.
  [[noreturn, gnu::cold, gnu::noinline]] void fail(std::size_t wanted) const {
    throw Malformed(std::string(what_) + ": " + std::to_string(wanted) + " octets wanted, " +
                    std::to_string(left()) + " left");
  }

  Octets left_;
  const char* what_;
};

}  // namespace CommTool

#endif
