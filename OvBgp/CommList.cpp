#include "OvBgp/CommList.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <new>
#include <ostream>
#include <utility>
#include <vector>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Kiv/Assert.h"
#include "Kiv/Exception.h"
#include "OvBgp/CommunityText.h"
#include "OvBgp/NotifyingObject.h"
#include "OvBgp/OvBgpCommunityPacketTypes.h"
#include "OvBgp/OvBgpSerialize.h"
#include "Routing/RouteMap/PosixRegex.h"

#define ASSERT_LIST(holds, condition) KIV_ASSERT(holds, condition, "OvBgp/OvBgpCommunityList")
#define ASSERT_LIST_IN(holds, condition, function) \
  KIV_ASSERT_IN(holds, condition, "OvBgp/OvBgpCommunityList", function)
#define ASSERT_INTERNED_ONCE()                                      \
  ASSERT_LIST(dedupState() != Dorn::dedupHandleStateNeverDeduped(), \
              "__null == ( this ) || "                              \
              "( this )->dedupState() != Dorn::dedupHandleStateNeverDeduped()")

namespace Routing::Bgp {
namespace {

// Lists on a route have a few communities; the text of ten fits without the heap.
using ListText = OvFmt::StackBackedBuffer<128>;

// The conversion between host order and the four octets of the wire as they load
// from memory; its own inverse.
constexpr U32 wireWord(U32 host) noexcept {
  return std::endian::native == std::endian::little ? __builtin_bswap32(host) : host;
}

U32 wireWordAt(const U8* octets) noexcept {
  U32 word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

// A hash for the table's own use, several times as fast as the byte hash, of
// `count` communities as they stand on the wire, so that a received attribute
// need not be decoded. Multiplication spreads upward, the shift brings it down.
template <class WordAt>
U32 wordHash(std::size_t count, const WordAt& wordAt) noexcept {
  U64 h = count * 0x9E3779B97F4A7C15;
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    h = (h ^ (wordAt(i) | U64{wordAt(i + 1)} << 32)) * 0xBF58476D1CE4E5B9;
    h ^= h >> 29;
  }
  if (i < count) {
    h = (h ^ wordAt(i)) * 0x94D049BB133111EB;
    h ^= h >> 31;
  }
  return static_cast<U32>(h >> 32 ^ h);
}

U32 wireHash(std::span<const U8> octets) noexcept {
  return wordHash(octets.size() / 4,
                  [at = octets.data()](std::size_t i) { return wireWordAt(at + 4 * i); });
}

// Turns host order into wire order, and back.
void wireOrderSwap(std::span<U32> comms) noexcept {
  for (U32& community : comms) community = wireWord(community);
}

std::span<const U8> octetsOf(std::span<const U32> comms) noexcept {
  return {reinterpret_cast<const U8*>(comms.data()), comms.size_bytes()};
}

// Decodes `value` to `comms`; says whether they are strictly ascending.
bool decode(std::span<const U8> value, std::span<U32> comms) noexcept {
  bool ascending = true;
  U64 least = 0;  // of the next one; wider, as nothing may follow the highest
  const U8* at = value.data();
  for (U32& community : comms) {
    community = wireWord(wireWordAt(at));
    ascending &= community >= least;
    least = U64{community} + 1;
    at += sizeof(U32);
  }
  return ascending;
}

}  // namespace

KIV_OBJECT_DEFINE(CommList)

U32 CommListContent::probeHash() const noexcept { return wireHash(octets_); }

CommList::Ptr commListFactory() { return notifyingObject<CommList>(); }

void CommList::commIs(U32 community) {
  ASSERT_LIST(!commVectorSorted(), "!commVectorSorted()");
  commVector_.append(community);
}

bool CommList::comm(U32 community) const {
  ASSERT_LIST(commVectorSorted(), "commVectorSorted()");
  return std::binary_search(commVector_.begin(), commVector_.end(), community);
}

bool CommList::noExport() const {
  ASSERT_INTERNED_ONCE();
  return noExport_;
}

bool CommList::noAdvertise() const {
  ASSERT_INTERNED_ONCE();
  return noAdvertise_;
}

bool CommList::noExportSubconfed() const {
  ASSERT_INTERNED_ONCE();
  return noExportSubconfed_;
}

Kiv::String CommList::wellKnownName(U32 community) {
  return Kiv::String(wellKnownCommunityName(community));
}

Kiv::String CommList::getStringValue(U32 community) {
  OvFmt::StackBackedBuffer<communityTextMax> text;
  text.advanceTo(writeCommunity(text.reserve(communityTextMax), community));
  return text.str();
}

Kiv::String CommList::toStrep() const {
  ListText text;
  appendText(text);
  return text.str();
}

void CommList::appendText(OvFmt::DynamicBufferInterface& to) const {
  appendNamedCommunities(to, {commVector_.data(), commVector_.size()});
}

// Unformatted output: the stream's width, fill and base neither matter nor change.
std::ostream& operator<<(std::ostream& out, const CommList* list) {
  if (!list) return out;
  ListText text;
  list->appendText(text);
  return out.write(text.view().data(), static_cast<std::streamsize>(text.size()));
}

Kiv::String CommList::serialize() const {
  SerializePathAttribute attribute(BgpPathAttrType::community, BgpPathAttrFlag::optionalTransitive,
                                   comms() * U32{sizeof(U32)});
  attribute.addU32shton({commVector_.data(), commVector_.size()});
  return attribute.serializedString();
}

bool CommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  const std::span<const U32> comms(commVector_.data(), commVector_.size());
  ListText text;
  appendCommunities(text, comms);
  if (regex->execute(text.str().c_str()) == 0) return true;
  text.clear();
  appendNamedCommunities(text, comms);
  return regex->execute(text.str().c_str()) == 0;
}

U32 CommList::hash() const {
  ASSERT_LIST_IN(commVectorSorted(), "commVectorSorted()",
                 "virtual U32 Routing::Bgp::CommList::hash() const");
  BgpCommon::BgpHashMixImpl mix;
  for (const U32 community : commVector_) mix.addU32(community);
  return mix.hash();
}

bool CommList::compare(Dorn::DedupHandle::RawPtrConst other) const {
  ASSERT_LIST_IN(commVectorSorted(), "commVectorSorted()",
                 "virtual bool Routing::Bgp::CommList::compare("
                 "Dorn::DedupHandle::RawPtrConst) const");
  return std::ranges::equal(commVector_, static_cast<const CommList*>(other)->commVector_);
}

bool CommList::compareByContent(const Dorn::DedupContentHandle& key) const {
  const auto& content = static_cast<const CommListContent&>(key);
  if (content.comms() != comms()) return false;
  const U8* octets = content.octets().data();
  U32 differences = 0;
  for (const U32 community : commVector_) {
    differences |= wireWord(community) ^ wireWordAt(octets);
    octets += sizeof(U32);
  }
  return differences == 0;
}

U32 CommList::probeHash() const {
  return wordHash(comms(), [this](std::size_t i) { return wireWord(commVector_.data()[i]); });
}

// An interned list is shared: nothing of it is written again.
CommList::PtrConst CommList::dedup(CommListDedupTable::RawPtrConst table) {
  if (!everDeduped()) {
    if (!commVectorSorted()) sort();
    flagsIs();
  }
  return Kiv::staticPtrCast<const CommList>(table->dedup(Dorn::DedupHandle::Ptr(this)));
}

void CommList::sort() {
  std::sort(commVector_.begin(), commVector_.end());
  U32* const end = std::unique(commVector_.begin(), commVector_.end());
  commVector_.truncate(static_cast<U32>(end - commVector_.begin()));
  try {
    commVector_.shrinkToFit();
  } catch (const std::bad_alloc&) {
    // Too large a storage is no reason to lose the list.
  }
  commVectorSorted_ = true;
}

void CommList::flagsIs() {
  noExport_ = comm(static_cast<U32>(communityNoExport));
  noAdvertise_ = comm(static_cast<U32>(communityNoAdvertise));
  noExportSubconfed_ = comm(static_cast<U32>(communityNoExportSubconfed));
}

CommList::PtrConst CommList::lookup(CommListDedupTable::RawPtrConst table,
                                    const CommListContent& content) {
  return table->dedupTable()->lookup<CommList>(content, wireHash(content.octets()));
}

CommList::PtrConst CommList::dedupAscending(CommListDedupTable::RawPtrConst table,
                                            std::span<const U32> comms) {
  const Ptr list = commListFactory();
  list->commVector_.assign(comms);
  list->commVectorSorted_ = true;
  return list->dedup(table);
}

// What equals a list as it stands is in order, so order is looked at only after
// that; and if it is not, the sorted communities are looked up once more, before
// a list is built that would be thrown away.
CommList::PtrConst CommList::dedupAttributeValue(CommListDedupTable::RawPtrConst table,
                                                 std::span<const U8> value) {
  if (value.size() % sizeof(U32) != 0) {
    throw Kiv::RangeException("length of COMMUNITIES is no multiple of 4: " +
                              std::to_string(value.size()));
  }
  if (PtrConst list = lookup(table, CommListContent(value))) return list;
  return dedupDecoded(table, value);
}

CommList::PtrConst CommList::dedupDecoded(CommListDedupTable::RawPtrConst table,
                                          std::span<const U8> value) {
  const std::size_t count = value.size() / sizeof(U32);
  std::array<U32, 64> room;
  std::vector<U32> largeRoom(count > room.size() ? count : 0);
  const std::span<U32> all(largeRoom.empty() ? room.data() : largeRoom.data(), count);
  if (decode(value, all)) return dedupAscending(table, all);
  std::ranges::sort(all);
  const std::span<U32> comms(all.begin(), std::unique(all.begin(), all.end()));
  wireOrderSwap(comms);
  if (PtrConst list = lookup(table, CommListContent(octetsOf(comms)))) return list;
  wireOrderSwap(comms);
  return dedupAscending(table, comms);
}

}  // namespace Routing::Bgp
