// The function bodies of OvBgp/List/ValueList.h, for the sources that instantiate the
// template. Private to the library.
//
// The idea of dedupAttributeValue: a list and a received attribute are hashed and compared
// in wire format, so that an attribute whose list exists is never decoded. Only octets
// that ascend strictly can match, because the members of an interned list do.
#ifndef OVBGP_LIST_PRIVATE_VALUELISTIMPL_H
#define OVBGP_LIST_PRIVATE_VALUELISTIMPL_H

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <vector>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "Kiv/Exception.h"
#include "KivStash/ArrayBehind.h"
#include "OvBgp/Attribute/PathAttributeFraming.h"
#include "OvBgp/List/Private/ListText.h"
#include "OvBgp/List/Private/WireWords.h"
#include "OvBgp/List/ValueList.h"

// An assertion that reports the name of the concrete list's function, not the template's.
#define ASSERT_LIST_IN(holds, condition, function) \
  KIV_ASSERT_IN(holds, condition, "OvBgp/OvBgpCommunityList", function)

namespace Routing::Bgp {

// The 32-bit words of `members`. The cast is sound because a community in memory consists
// of its words only, without padding.
template <class Element>
auto wordsOf(std::span<Element> members) noexcept {
  using Word = std::conditional_t<std::is_const_v<Element>, const U32, U32>;
  static_assert(std::is_trivially_copyable_v<Element> && std::is_standard_layout_v<Element>);
  static_assert(sizeof(Element) % sizeof(U32) == 0 && alignof(Element) == alignof(U32));
  return std::span<Word>(reinterpret_cast<Word*>(members.data()),
                         members.size_bytes() / sizeof(U32));
}

// The octets of `members` as they are in memory, in host byte order.
template <class Element>
std::span<const U8> octetsOf(std::span<Element> members) noexcept {
  return {reinterpret_cast<const U8*>(members.data()), members.size_bytes()};
}

// Decodes `value` into `members`, which must have room for exactly that many. Returns
// whether the members ascend strictly. Nearly all received lists do, so the loop does not
// stop at the first member that does not.
template <class Element>
bool decode(std::span<const U8> value, std::span<Element> members) noexcept {
  const U8* at = value.data();
  const Element* before = nullptr;
  bool ascends = true;
  for (Element& member : members) {
    for (U32& word : wordsOf(std::span(&member, 1))) {
      word = wireWord(wireWordAt(at));
      at += sizeof(U32);
    }
    if (before) ascends &= *before < member;
    before = &member;
  }
  return ascends;
}

template <class Family>
void ValueList<Family>::commIs(Value community) {
  ASSERT_LIST_IN(!commVectorSorted(), "!commVectorSorted()", Family::commIsFunction);
  commVector_.append(community);
}

template <class Family>
bool ValueList<Family>::comm(Value community) const {
  ASSERT_LIST_IN(commVectorSorted(), "commVectorSorted()", Family::commFunction);
  return std::binary_search(commVector_.begin(), commVector_.end(), community);
}

// Writes unformatted, so that width, fill and base of the stream have no effect and stay
// as they are.
template <class Family>
void ValueList<Family>::print(std::ostream& out) const {
  ListText text;
  self().appendText(text);
  out.write(text.view().data(), static_cast<std::streamsize>(text.size()));
}

template <class Family>
Kiv::String ValueList<Family>::serialize() const {
  SerializePathAttribute attribute(Family::attrType, BgpPathAttrFlag::optionalTransitive,
                                   comms() * U32{sizeof(Element)});
  attribute.addU32shton(wordsOf(members()));
  return attribute.serializedString();
}

template <class Family>
U32 ValueList<Family>::hash() const {
  ASSERT_LIST_IN(commVectorSorted(), "commVectorSorted()", Family::hashFunction);
  BgpCommon::BgpHashMixImpl mix;
  for (const U32 word : wordsOf(members())) mix.addU32(word);
  return mix.hash();
}

template <class Family>
bool ValueList<Family>::compare(Dorn::DedupHandle::RawPtrConst other) const {
  ASSERT_LIST_IN(commVectorSorted(), "commVectorSorted()", Family::compareFunction);
  return std::ranges::equal(commVector_, static_cast<const ValueList*>(other)->commVector_);
}

template <class Family>
bool ValueList<Family>::equalsWire(std::span<const U8> octets) const noexcept {
  const auto own = octetsOf(members());
  return own.size() == octets.size() && wireEqualsHost(octets.data(), own.data(), own.size());
}

template <class Family>
bool ValueList<Family>::compareByContent(const Dorn::DedupContentHandle& key) const {
  return equalsWire(static_cast<const CommListContent&>(key).octets());
}

template <class Family>
U32 ValueList<Family>::probeHash() const {
  const auto own = octetsOf(members());
  return wordHash<HostOrder>(own.data(), own.size());
}

// A list that was interned before may be shared with other threads, so neither its order
// nor its notes are written again.
template <class Family>
Kiv::Ptr<const typename Family::List> ValueList<Family>::dedup(const Table* table) {
  if (!everDeduped()) {
    if (!commVectorSorted()) sort();
    static_cast<List&>(*this).flagsIs();
  }
  return Kiv::staticPtrCast<const List>(table->dedup(Dorn::DedupHandle::Ptr(this)));
}

template <class Family>
void ValueList<Family>::sort() {
  std::sort(commVector_.begin(), commVector_.end());
  Element* const end = std::unique(commVector_.begin(), commVector_.end());
  commVector_.truncate(static_cast<U32>(end - commVector_.begin()));
  try {
    commVector_.shrinkToFit();
  } catch (const std::bad_alloc&) {
    // The smaller array could not be allocated. The list works as well with the larger one.
  }
  commVectorSortedIs(true);
}

// The number of members is final, so object and members are one allocation, and a list of
// few members is one cache line. Reading it later takes one cache miss, not two.
template <class Family>
Kiv::Ptr<const typename Family::List> ValueList<Family>::dedupNew(Dorn::DedupHashTable& table,
                                                                  std::span<const Element> members,
                                                                  const Miss& miss) {
  static_assert(sizeof(List) == sizeof(ValueList), "the array is the object's last member");
  const std::size_t behind = KivStash::Vector<Element>::inPlaceBytes(members.size());
  Kiv::Ptr<List> list(::new (KivStash::allocateWithArray<List, Element>(behind)) List, Kiv::adopt);
  list->beginNotifying();
  list->commVector_.inPlaceIs(members);
  list->newOwnBitsAdd(List::sortedBit);
  list->flagsIs();
  return Kiv::staticPtrCast<const List>(table.dedup(std::move(list), miss));
}

// The object and its in-place members are one allocation, whose pool is chosen by the whole
// size. `delete this` would return it with the size of the object alone, to another pool.
template <class Family>
void ValueList<Family>::zeroReferencesIs() noexcept {
  const std::size_t behind = commVector_.isInPlace() ? commVector_.storageBytes() : 0;
  KivStash::destroyWithArray<List, Element>(static_cast<List&>(*this), behind);
}

template <class Family>
void ValueList<Family>::lengthRefuse(std::size_t octets) {
  throw Kiv::RangeException("length of " + Kiv::String(Family::attributeName) +
                            " is no multiple of " + std::to_string(sizeof(Element)) + ": " +
                            std::to_string(octets));
}

// Fast path: a table for one thread, and the list is in its home bucket. Whether the octets
// ascend need not be checked before the lookup, because the members of an interned list ascend.
template <class Family>
Kiv::Ptr<const typename Family::List> ValueList<Family>::dedupAttributeValue(
    const Table* table, std::span<const U8> value) {
  if (value.size() % sizeof(Element) != 0) [[unlikely]]
    lengthRefuse(value.size());
  Dorn::DedupHashTable& lists = *table->dedupTable();
  const U32 hash = wireHash(value);
  const auto isWanted = [value](const List& list) { return list.equalsWire(value); };
  if (auto list = lists.template lookupAtHome<const List>(hash, isWanted)) return list;
  return dedupOutOfLine(lists, value, hash);
}

// Slow path, never inlined, so that the fast path of dedupAttributeValue does not save
// registers for it. Lists of up to 256 octets are decoded on the stack.
template <class Family>
[[gnu::noinline]] Kiv::Ptr<const typename Family::List> ValueList<Family>::dedupOutOfLine(
    Dorn::DedupHashTable& table, std::span<const U8> value, U32 hash) {
  Miss miss;
  const auto isWanted = [value](const List& list) { return list.equalsWire(value); };
  if (auto list = table.template lookupElsewhere<const List>(hash, isWanted, miss)) return list;
  const std::size_t count = value.size() / sizeof(Element);
  std::array<Element, 256 / sizeof(Element)> room;
  std::vector<Element> largeRoom(count > room.size() ? count : 0);
  const std::span<Element> members(largeRoom.empty() ? room.data() : largeRoom.data(), count);
  return decode(value, members) ? dedupNew(table, members, miss) : dedupUnordered(table, members);
}

// The octets did not ascend, so no list can have matched them. The sorted members are looked
// up before a list is built, because most such lists exist already, too.
template <class Family>
Kiv::Ptr<const typename Family::List> ValueList<Family>::dedupUnordered(
    Dorn::DedupHashTable& table, std::span<Element> received) {
  std::ranges::sort(received);
  const std::span<const Element> members(received.begin(),
                                         std::unique(received.begin(), received.end()));
  const auto octets = octetsOf(members);
  const U32 hash = wordHash<HostOrder>(octets.data(), octets.size());
  const auto isWanted = [members](const List& list) {
    return std::ranges::equal(list.members(), members);
  };
  Miss miss;
  if (auto list = table.template lookup<const List>(hash, isWanted, miss)) return list;
  return dedupNew(table, members, miss);
}

}  // namespace Routing::Bgp

#undef ASSERT_LIST_IN

#endif
