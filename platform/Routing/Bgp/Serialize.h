// The byte writer: where BGP messages and path attributes are put together.
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

// A growing area of octets with a write position.  The first 4096 octets, the
// longest BGP message of RFC 4271, are in place, so that a writer on the stack
// allocates nothing for an ordinary attribute; after that it doubles.
//
// Numbers are written big-endian.  Every add may raise std::bad_alloc, or
// std::length_error beyond the range of a U32, and then has written nothing.
// One thread at a time.
class OV_EXPORT Serialize {
 public:
  static constexpr U32 inPlaceSize = 4096;

  Serialize() : begin_(inPlace_), at_(inPlace_), end_(inPlace_ + inPlaceSize) {}
  ~Serialize();
  Serialize(const Serialize&) = delete;
  Serialize& operator=(const Serialize&) = delete;

  // Octets before the write position, and the octets there is storage for.
  U32 size() const { return static_cast<U32>(at_ - begin_); }
  U32 capacity() const { return static_cast<U32>(end_ - begin_); }

  void addU8(U8 value) { *addSpace(1) = value; }
  void addU16hton(U16 value) { addBigEndian(value); }
  void addU32hton(U32 value) { addBigEndian(value); }
  void addU64hton(const U64& value) { addBigEndian(value); }
  void addIpv6Addr(const Ovnet::Ip6Addr& addr) { addOctets(addr.octets()); }

  // In bulk: as they are, and each as addU32hton would.
  void addOctets(std::span<const U8> octets) {
    if (!octets.empty()) std::memcpy(addSpace(octets.size()), octets.data(), octets.size());
  }
  void addU32shton(std::span<const U32> values) {
    U8* at = addSpace(values.size_bytes());
    for (const U32 value : values) at = store(at, value);
  }

  // Makes the storage hold `needed` octets in all, in exactly one step; what was
  // written stays.  Nothing happens if it does already.
  void growBuffer(U32 needed);

  // The octets from `start` to the write position.  Requires: start <= size().
  Kiv::String serializedString(U32 start) const;

 protected:
  // Moves the write position, to write over what is there or to leave room.
  // Requires: position <= capacity().
  void writePositionIs(U32 position);

 private:
  // Moves the write position over `count` octets and returns where they begin.
  U8* addSpace(std::size_t count) {
    if (static_cast<std::size_t>(end_ - at_) < count) [[unlikely]]
      growFor(count);
    U8* const at = at_;
    at_ += count;
    return at;
  }

  static U16 swapped(U16 value) { return __builtin_bswap16(value); }
  static U32 swapped(U32 value) { return __builtin_bswap32(value); }
  static U64 swapped(U64 value) { return __builtin_bswap64(value); }

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

  void growFor(std::size_t count);

  U8* begin_;
  U8* at_;
  U8* end_;
  U8 inPlace_[inPlaceSize];  // left uninitialised: only what is written is read
};

}  // namespace Routing::Bgp

#endif
