// Operations on the members of extended lists and of their sub-lists: comparing, hashing and
// writing them. Private to the library.
#ifndef OVBGP_SUBLIST_PRIVATE_EXTCOMMMEMBERS_H
#define OVBGP_SUBLIST_PRIVATE_EXTCOMMMEMBERS_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <ostream>
#include <span>
#include <string_view>
#include <type_traits>

#include "BgpCommon/Private/StreamedText.h"
#include "Kiv/Assert.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/Vector.h"
#include "OvBgp/SubList/ExtCommClassificationListBase.h"
#include "OvBgp/SubList/ExtCommVector.h"

// An assertion with the source name that the interface gives to all list classes.
#define ASSERT_LIST(holds, condition) KIV_ASSERT(holds, condition, "OvBgp/OvBgpCommunityList")

namespace Routing::Bgp {

// Views counted pointers as plain ones without copying them or counting references. The result is
// valid as long as `comms`. Sound because a counted pointer is one plain pointer (static_assert).
template <class Value>
std::span<const Value* const> pointersOf(std::span<const Kiv::Ptr<const Value>> comms) noexcept {
  using Ptr = Kiv::Ptr<const Value>;
  static_assert(std::is_standard_layout_v<Ptr> && sizeof(Ptr) == sizeof(const Value*));
  return {reinterpret_cast<const Value* const*>(comms.data()), comms.size()};
}

// One random odd multiplier per position, drawn per process. Received data influences the order of
// allocations and so the addresses; secret multipliers keep a sender from constructing collisions.
extern const std::array<U64, 32> placeFactors;

// A hash of the members' addresses, by which tables probe; about ten times as fast as the byte
// hash. It is a sum of products, one per member. The products do not depend on each other, so the
// processor computes several at once. A list longer than placeFactors uses them again. The sum is
// mixed before that, so that exchanging two members 32 positions apart changes the hash.
//
// The last step mixes the sum once more. Without it, lists of one member each whose addresses form
// an arithmetic progression, as those of values that are received one after the other do, would
// have hashes in arithmetic progression, and for some factors these crowd into a few buckets.
template <class Value>
U32 addressHash(std::span<const Value* const> comms) noexcept {
  U64 h = comms.size();
  std::size_t place = 0;
  for (const Value* const comm : comms) {
    h += reinterpret_cast<std::uintptr_t>(comm) * placeFactors[place];
    if (++place < placeFactors.size()) continue;
    place = 0;
    h = (h ^ h >> 32) * placeFactors[1];
  }
  return static_cast<U32>((h ^ h >> 32) * placeFactors[2] >> 32);
}

// The hash that tables of lists and of sub-lists probe with for the key `key`, an
// ExtCommListContent<Value> (Dorn::DedupHashTable::KeyProbe).
template <class Value>
U32 probeOfMembers(const Dorn::DedupContentHandle& key) {
  return addressHash(static_cast<const ExtCommListContent<Value>&>(key).comms());
}

// Whether both are the same objects in the same order. Compares addresses and reads no member.
template <class Value>
bool sameObjects(std::span<const Value* const> a, std::span<const Value* const> b) noexcept {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

// The members of a vector as plain pointers, valid until the vector changes.
template <class Value>
std::span<const Value* const> pointersIn(const ExtCommVector<Value>& comms) noexcept {
  return pointersOf<Value>({comms.data(), comms.size()});
}

// Whether two vectors of counted pointers hold the same objects in the same order.
template <class List>
bool samePointers(const KivStash::Vector<List>& a, const KivStash::Vector<List>& b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

// Writes the members' diagnostic texts with one blank between two of them.
template <class Value>
void writeJoined(std::ostream& out, const ExtCommVector<Value>& comms) {
  bool isFirst = true;
  for (const auto& comm : comms) {
    if (!isFirst) out.put(' ');
    isFirst = false;
    comm->formatDerivedType(out);
  }
}

// Unformatted output, so that the stream's width and fill have no effect.
inline void write(std::ostream& out, std::string_view text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

// The text that list.writeText writes, as a string. Throws std::bad_alloc.
template <class List>
Kiv::String textOf(const List& list) {
  return streamedText([&list](std::ostream& out) { list.writeText(out); });
}

// Frees unused capacity. If the smaller storage cannot be allocated, the vector keeps the larger
// one: wasted memory is no reason to fail.
template <class Vector>
void shrink(Vector& vector) noexcept {
  try {
    vector.shrinkToFit();
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace Routing::Bgp

#endif
