// The bodies of OvBgp/List/ValueList.h, for the sources that instantiate it.  Private to
// the library.
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

#define ASSERT_LIST_IN(holds, condition, function) \
  KIV_ASSERT_IN(holds, condition, "OvBgp/OvBgpCommunityList", function)

namespace Routing::Bgp {

// A community in memory is its words and nothing else, so a span of communities
// can be taken for one of words.
template <class Element>
auto wordsOf(std::span<Element> members) noexcept {
  using Word = std::conditional_t<std::is_const_v<Element>, const U32, U32>;
  static_assert(std::is_trivially_copyable_v<Element> && std::is_standard_layout_v<Element>);
  static_assert(sizeof(Element) % sizeof(U32) == 0 && alignof(Element) == alignof(U32));
  return std::span<Word>(reinterpret_cast<Word*>(members.data()),
                         members.size_bytes() / sizeof(U32));
}

template <class Element>
std::span<const U8> octetsOf(std::span<Element> members) noexcept {
  return {reinterpret_cast<const U8*>(members.data()), members.size_bytes()};
}

// Decodes `value` to `members`, which are as many.  Says whether they strictly ascend,
// as nearly all lists do: it is only remembered on the way, without stopping.
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

// Unformatted output: the stream's width, fill and base neither matter nor change.
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

// An interned list is shared: nothing of it is written again.
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
    // Too large a storage is no reason to lose the list.
  }
  commVectorSorted_ = true;
}

// A list that will not grow takes one piece of memory, communities and all.
template <class Family>
Kiv::Ptr<const typename Family::List> ValueList<Family>::dedupNew(Dorn::DedupHashTable& table,
                                                                  std::span<const Element> members,
                                                                  const Miss& miss) {
  static_assert(sizeof(List) == sizeof(ValueList), "the array is the object's last member");
  const std::size_t behind = KivStash::Vector<Element>::inPlaceBytes(members.size());
  Kiv::Ptr<List> list(::new (KivStash::allocateWithArray<List, Element>(behind)) List, Kiv::adopt);
  list->beginNotifying();
  list->commVector_.inPlaceIs(members);
  list->commVectorSorted_ = true;
  list->flagsIs();
  return Kiv::staticPtrCast<const List>(table.dedup(std::move(list), miss));
}

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

// What equals a list as it stands is in order, so order is looked at only after that.
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

// All but what takes few instructions, which would pay for it otherwise.
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

// The sorted communities are looked up before a list is built that would be thrown away.
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
