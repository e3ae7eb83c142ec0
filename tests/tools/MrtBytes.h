// Helpers for tests that build MRT records and BGP messages.
#ifndef TESTS_TOOLS_MRT_BYTES_H
#define TESTS_TOOLS_MRT_BYTES_H

#include <initializer_list>
#include <vector>

#include "Kiv/Types.h"

namespace CommTool {

class Bytes : public std::vector<U8> {
 public:
  Bytes() = default;
  Bytes(std::initializer_list<U8> octets) : std::vector<U8>(octets) {}
  using std::vector<U8>::vector;

  Bytes& u8(std::size_t value) {
    push_back(static_cast<U8>(value));
    return *this;
  }
  Bytes& u16(std::size_t value) { return u8(value >> 8).u8(value); }
  Bytes& u32(std::size_t value) { return u16(value >> 16).u16(value); }
  Bytes& add(const Bytes& octets) {
    insert(end(), octets.begin(), octets.end());
    return *this;
  }
  Bytes& fill(std::size_t count, U8 value) {
    insert(end(), count, value);
    return *this;
  }
};

constexpr U32 testSeconds = 1000;

inline Bytes mrt(U16 type, U16 subtype, const Bytes& body) {
  return Bytes().u32(testSeconds).u16(type).u16(subtype).u32(body.size()).add(body);
}

inline Bytes attribute(U8 type, const Bytes& value) {
  Bytes octets{0xC0, type};
  return octets.u8(value.size()).add(value);
}

inline Bytes communities(std::initializer_list<U32> values) {
  Bytes octets;
  for (const U32 value : values) {
    octets.u32(value);
  }
  return attribute(8, octets);
}

inline Bytes message(U8 type, const Bytes& body) {
  return Bytes().fill(16, 0xFF).u16(19 + body.size()).u8(type).add(body);
}

inline Bytes update(const Bytes& withdrawn, const Bytes& attributes, const Bytes& announced) {
  return message(2, Bytes()
                        .u16(withdrawn.size())
                        .add(withdrawn)
                        .u16(attributes.size())
                        .add(attributes)
                        .add(announced));
}

// The head of a BGP4MP record: peer 192.0.2.1, AS 65001.
inline Bytes bgp4mpHead(bool longAs) {
  Bytes head;
  longAs ? head.u32(65001).u32(65002) : head.u16(65001).u16(65002);
  return head.u16(0).u16(1).add({192, 0, 2, 1, 192, 0, 2, 2});
}

// A BGP4MP record of the subtype MESSAGE_AS4.
inline Bytes messageAs4(const Bytes& octets) { return mrt(16, 4, bgp4mpHead(true).add(octets)); }

// One peer with a long AS over IPv4 (0), one with a short AS over IPv6 (1).
inline Bytes peerIndex() {
  Bytes body;
  body.u32(0x0A000001).u16(4).add({'v', 'i', 'e', 'w'}).u16(2);
  body.u8(2).u32(1).add({192, 0, 2, 1}).u32(4200000000);
  body.u8(1).u32(2).add({0x20, 1, 0xd, 0xb8}).fill(11, 0).u8(1).u16(65001);
  return mrt(13, 1, body);
}

inline Bytes ribEntry(U16 peer, const Bytes& attributes) {
  return Bytes().u16(peer).u32(0).u16(attributes.size()).add(attributes);
}

inline Bytes rib(U16 subtype, const Bytes& prefix, U16 entries, const Bytes& octets) {
  return mrt(13, subtype, Bytes().u32(0).add(prefix).u16(entries).add(octets));
}

}  // namespace CommTool

#endif
