// Building extended lists and sub-lists whose members are all known beforehand: sorting, grouping
// by classification, and placing object and members in one allocation. Private to the library.
//
//   | object of class Part | pointer to member 0 | pointer to member 1 | ... |
//
// One allocation instead of two saves time and, for short sub-lists, a cache line at each lookup.
#ifndef OVBGP_SUBLIST_PRIVATE_SUBLISTMAKING_H
#define OVBGP_SUBLIST_PRIVATE_SUBLISTMAKING_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "KivStash/ArrayBehind.h"
#include "OvBgp/SubList/ExtCommVector.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// Temporary room for the members of a list: on the stack for up to 32 of them, as nearly all routes
// have, else on the heap. Plain pointers on the stack are not initialised; the user writes each
// element before reading it. Counted pointers are null at first and released at the end.
template <class T>
class CommsRoom {
 public:
  // Room for `count` elements. Throws std::bad_alloc.
  explicit CommsRoom(std::size_t count) {
    if (count > inline_.size()) large_.resize(count);
    comms_ = {large_.empty() ? inline_.data() : large_.data(), count};
  }
  // Neither copied nor moved, since comms_ points into the object.
  CommsRoom(const CommsRoom&) = delete;
  CommsRoom& operator=(const CommsRoom&) = delete;
  // The elements.
  std::span<T> comms() const noexcept { return comms_; }

 private:
  std::array<T, 32> inline_;
  std::vector<T> large_;
  std::span<T> comms_;
};

// Sorts `comms` in place by content, removes duplicates, and returns the rest, a part of `comms`.
template <class Value>
std::span<const Value* const> sortedUnique(std::span<const Value*> comms) {
  const auto less = [](const Value* a, const Value* b) {
    return a->getContent() < b->getContent();
  };
  std::sort(comms.begin(), comms.end(), less);
  const auto end = std::unique(comms.begin(), comms.end(),
                               [&less](const Value* a, const Value* b) { return !less(a, b); });
  return {comms.begin(), end};
}

// The members of a list grouped by classification; each group keeps the order of the list.
//
// A counting sort in one array. ends_[i] is first the number of members of classification i, then
// the end of group i, and finally, after the members have been placed, the beginning of group i.
template <class Value>
class CommGroups {
 public:
  // The number of groups, empty ones included.
  static constexpr U32 most = static_cast<U32>(extCommClassificationOneBeyondLast);

  // Groups `comms`, which may be discarded after. Throws std::bad_alloc for more than 32 members.
  explicit CommGroups(std::span<const Value* const> comms) : room_(comms.size()) {
    for (const Value* const comm : comms) {
      const auto index = static_cast<U32>(comm->classification());
      if (index >= most) {
        isKnown_ = false;
        return;
      }
      ++ends_[index];
    }
    for (U32 index = 1; index < most; ++index) ends_[index] += ends_[index - 1];
    // The last member first. Each group is filled from its end, so its end becomes its beginning.
    for (auto at = comms.rbegin(); at != comms.rend(); ++at) {
      room_.comms()[--ends_[static_cast<U32>((*at)->classification())]] = *at;
    }
  }

  // Whether all members have a classification with a name. If not, nothing is grouped, and the
  // caller must build the list member by member.
  bool isKnown() const noexcept { return isKnown_; }
  // The members of classification `index`. Requires: isKnown(), and `index` is below `most`.
  std::span<const Value* const> operator[](U32 index) const noexcept {
    const std::size_t end = index + 1 < most ? ends_[index + 1] : room_.comms().size();
    return room_.comms().subspan(ends_[index], end - ends_[index]);
  }

 private:
  CommsRoom<const Value*> room_;
  std::array<U32, most> ends_{};
  bool isKnown_ = true;
};

// Constructs counted pointers to `comms` in `memory` and returns them. Each takes a reference. The
// caller provides memory for comms.size() pointers and destroys them later.
template <class Value>
std::span<Kiv::Ptr<const Value>> referencesMade(void* memory,
                                                std::span<const Value* const> comms) noexcept {
  using Ptr = Kiv::Ptr<const Value>;
  auto* const made = static_cast<Ptr*>(memory);
  for (std::size_t i = 0; i < comms.size(); ++i) std::construct_at(made + i, comms[i]);
  return {made, comms.size()};
}

// Returns a new sub-list of class `Part` with these members behind it in the same allocation.
// `args` are the arguments of its constructor. Requires: the members are interned and strictly
// ascending; that is not checked. Throws std::bad_alloc; nothing after the allocation throws.
template <class Part, class... Args>
Kiv::Ptr<Part> partWith(std::span<const typename Part::Value* const> comms, Args... args) {
  void* const memory =
      KivStash::allocateWithArray<Part, typename Part::ValuePtr>(comms.size_bytes());
  Kiv::Ptr<Part> part(::new (memory) Part(args...), Kiv::adopt);
  part->beginNotifying();
  part->commVector_.attachedIs(referencesMade(part.ptr() + 1, comms));
  part->commVectorSortedIs(true);
  return part;
}

// Destroys a sub-list and frees its memory, for the zeroReferencesIs of each class. `Part` must be
// the exact class of the object, because its size is part of the size to free. A sub-list whose
// members have storage of their own was allocated alone, and the base class frees it.
template <class Part>
void partDestroy(Part& part) noexcept {
  const auto& comms = part.commVector();
  if (!comms.isAttached()) return part.Dorn::DedupHandle::zeroReferencesIs();
  KivStash::destroyWithArray<Part, typename Part::ValuePtr>(part, comms.storageBytes());
}

}  // namespace Routing::Bgp

#endif
