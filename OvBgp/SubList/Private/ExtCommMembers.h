// What extended lists and their sub-lists do alike with their members: tell them apart,
// hash them, write them.  Private to the library.
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
#include "OvBgp/SubList/ExtCommVector.h"

#define ASSERT_LIST(holds, condition) KIV_ASSERT(holds, condition, "OvBgp/OvBgpCommunityList")

namespace Routing::Bgp {

// Counted pointers as the plain ones that they hold, which the owner keeps.
template <class Value>
std::span<const Value* const> pointersOf(std::span<const Kiv::Ptr<const Value>> comms) noexcept {
  using Ptr = Kiv::Ptr<const Value>;
  static_assert(std::is_standard_layout_v<Ptr> && sizeof(Ptr) == sizeof(const Value*));
  return {reinterpret_cast<const Value* const*>(comms.data()), comms.size()};
}

// One odd factor a place, which have nothing in common, and others in each process: what
// is received decides in which order objects get their addresses.
extern const std::array<U64, 32> placeFactors;

// A hash of the members' addresses for the tables' own use, some ten times as fast
// as the byte hash: a sum of products, none of which waits for another, and of which
// the high half is good.
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
  return static_cast<U32>(h >> 32);
}

template <class Value>
bool sameObjects(std::span<const Value* const> a, std::span<const Value* const> b) noexcept {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

template <class Value>
std::span<const Value* const> pointersIn(const ExtCommVector<Value>& comms) noexcept {
  return pointersOf<Value>({comms.data(), comms.size()});
}

template <class List>
bool samePointers(const KivStash::Vector<List>& a, const KivStash::Vector<List>& b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

template <class Value>
void writeJoined(std::ostream& out, const ExtCommVector<Value>& comms) {
  bool isFirst = true;
  for (const auto& comm : comms) {
    if (!isFirst) out.put(' ');
    isFirst = false;
    comm->formatDerivedType(out);
  }
}

inline void write(std::ostream& out, std::string_view text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

template <class List>
Kiv::String textOf(const List& list) {
  return streamedText([&list](std::ostream& out) { list.writeText(out); });
}

// Too large a storage is no reason to lose what is in it.
template <class Vector>
void shrink(Vector& vector) noexcept {
  try {
    vector.shrinkToFit();
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace Routing::Bgp

#endif
