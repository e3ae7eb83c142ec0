// What extended lists are made of when their members are known beforehand: order, groups,
// one piece of memory.  Private to the library.
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

// Room for the members of the lists that routes have, and for those of any list.
// What is plain is left for the user to write.
template <class T>
class CommsRoom {
 public:
  explicit CommsRoom(std::size_t count) {
    if (count > inline_.size()) large_.resize(count);
    comms_ = {large_.empty() ? inline_.data() : large_.data(), count};
  }
  CommsRoom(const CommsRoom&) = delete;
  CommsRoom& operator=(const CommsRoom&) = delete;
  std::span<T> comms() const noexcept { return comms_; }

 private:
  std::array<T, 32> inline_;
  std::vector<T> large_;
  std::span<T> comms_;
};

// Sorts by content and drops repeats.
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

// Members by classification, each group in the order of the whole.
template <class Value>
class CommGroups {
 public:
  static constexpr U32 most = static_cast<U32>(extCommClassificationOneBeyondLast);

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
    // From behind, so that the ends become the beginnings.
    for (auto at = comms.rbegin(); at != comms.rend(); ++at) {
      room_.comms()[--ends_[static_cast<U32>((*at)->classification())]] = *at;
    }
  }

  // Whether all classifications have a name; else nothing is grouped.
  bool isKnown() const noexcept { return isKnown_; }
  std::span<const Value* const> operator[](U32 index) const noexcept {
    const std::size_t end = index + 1 < most ? ends_[index + 1] : room_.comms().size();
    return room_.comms().subspan(ends_[index], end - ends_[index]);
  }

 private:
  CommsRoom<const Value*> room_;
  std::array<U32, most> ends_{};
  bool isKnown_ = true;
};

// Makes counted pointers of `comms` at `memory`.
template <class Value>
std::span<Kiv::Ptr<const Value>> referencesMade(void* memory,
                                                std::span<const Value* const> comms) noexcept {
  using Ptr = Kiv::Ptr<const Value>;
  auto* const made = static_cast<Ptr*>(memory);
  for (std::size_t i = 0; i < comms.size(); ++i) std::construct_at(made + i, comms[i]);
  return {made, comms.size()};
}

// A new sub-list of class `Part`, made of `args`, with these members, interned and
// ascending, in one piece of memory.
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

// Ends a sub-list of exactly that class.
template <class Part>
void partDestroy(Part& part) noexcept {
  const auto& comms = part.commVector();
  if (!comms.isAttached()) return part.Dorn::DedupHandle::zeroReferencesIs();
  KivStash::destroyWithArray<Part, typename Part::ValuePtr>(part, comms.storageBytes());
}

}  // namespace Routing::Bgp

#endif
