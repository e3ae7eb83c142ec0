// The byte writer, in which BGP messages and path attributes are put together.
#ifndef ROUTING_BGP_SERIALIZE_H
#define ROUTING_BGP_SERIALIZE_H

#include <bit>
#include <cstddef>
#include <cstring>
#include <span>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "Ovnet/Ip6Addr.h"

namespace Routing::Bgp {

// A growing array of octets with a write position. The first 4096 octets, the longest BGP message
// of RFC 4271, are inside the object, so a writer on the stack allocates nothing for an ordinary
// attribute. Larger content moves to the heap, and the capacity at least doubles.
//
// Numbers are written in network byte order. Every add function raises std::bad_alloc if memory
// runs out, and std::length_error if the content would exceed 2^32 - 1 octets; it has then written
// nothing. One thread at a time.
class OV_EXPORT Serialize {
 public:
  // Octets inside the object.
  static constexpr U32 inPlaceSize = 4096;

  // Empty content. The octets are not initialised.
  Serialize() : begin_(inPlace_), at_(inPlace_), end_(inPlace_ + inPlaceSize) {}
  // Releases the heap storage, if there is any.
  ~Serialize();
  // Not copyable: use serializedString(), so that a copy is visible in the code.
  Serialize(const Serialize&) = delete;
  // Not assignable, for the same reason.
  Serialize& operator=(const Serialize&) = delete;

  // Octets written, up to the write position.
  U32 size() const { return static_cast<U32>(at_ - begin_); }
  // Octets of storage.
  U32 capacity() const { return static_cast<U32>(end_ - begin_); }

  // Appends one octet.
  void addU8(U8 value) { *addSpace(1) = value; }
  // Appends a number in host byte order as two octets in network byte order.
  void addU16hton(U16 value) { addBigEndian(value); }
  // Appends a number in host byte order as four octets in network byte order.
  void addU32hton(U32 value) { addBigEndian(value); }
  // Appends a number in host byte order as eight octets in network byte order.
  void addU64hton(const U64& value) { addBigEndian(value); }
  // Appends the 16 octets of an address.
  void addIpv6Addr(const Ovnet::Ip6Addr& addr) { addOctets(addr.octets()); }

  // Appends octets unchanged. They must not be in this object.
  void addOctets(std::span<const U8> octets) {
    if (!octets.empty()) std::memcpy(addSpace(octets.size()), octets.data(), octets.size());
  }
  // Appends each number as addU32hton does, with one check of the room for all of them.
  void addU32shton(std::span<const U32> values) {
    U8* at = addSpace(values.size_bytes());
    for (const U32 value : values) at = store(at, value);
  }

  // Makes the capacity exactly `needed` octets, and keeps the content. Does nothing if the capacity
  // is that large already. Raises std::bad_alloc.
  void growBuffer(U32 needed);

  // A copy of the octets from `start` up to the write position. Aborts unless start <= size().
  Kiv::String serializedString(U32 start) const;

 protected:
  // Moves the write position: back to overwrite a length field, or forward over octets to be filled
  // in later. Aborts unless position <= capacity().
  void writePositionIs(U32 position);

 private:
  // Makes room for `count` octets, moves the write position over them, and returns their begin.
  U8* addSpace(std::size_t count) {
    if (static_cast<std::size_t>(end_ - at_) < count) [[unlikely]]
      growFor(count);
    U8* const at = at_;
    at_ += count;
    return at;
  }

  // The octets in reverse order: one instruction, where shifts might not be recognised as such.
  static U16 swapped(U16 value) { return __builtin_bswap16(value); }
  static U32 swapped(U32 value) { return __builtin_bswap32(value); }
  static U64 swapped(U64 value) { return __builtin_bswap64(value); }

  // Stores in network byte order, at any alignment, and returns the end.
  template <class Unsigned>
  static U8* store(U8* at, Unsigned value) {
    if constexpr (std::endian::native == std::endian::little) value = swapped(value);
    std::memcpy(at, &value, sizeof value);
    return at + sizeof value;
  }
  template <class Unsigned>
  void addBigEndian(Unsigned value) {
    store(addSpace(sizeof value), value);
  }

  // The slow path of addSpace.
  void growFor(std::size_t count);

  // Invariant: begin_ <= at_ <= end_. begin_ is inPlace_ or an array of the heap, owned by this
  // object; at_ is the write position.
  U8* begin_;
  U8* at_;
  U8* end_;
  U8 inPlace_[inPlaceSize];  // left uninitialised: only what is written is read
};

}  // namespace Routing::Bgp

#endif
