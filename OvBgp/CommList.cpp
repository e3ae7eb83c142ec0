#include "OvBgp/CommList.h"

#include <algorithm>
#include <array>
#include <new>
#include <ostream>
#include <utility>
#include <vector>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Kiv/Assert.h"
#include "Kiv/Exception.h"
#include "OvBgp/CommunityText.h"
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

constexpr U32 hashedWordFactor = 0x9E3779B1;

// A hash of whole words for the table's own use, several times as fast as the
// byte hash: multiplication spreads upward, the shift brings it down again.
U32 wordHash(std::span<const U32> words) noexcept {
  U64 h = words.size() * 0x9E3779B97F4A7C15;
  std::size_t i = 0;
  for (; i + 2 <= words.size(); i += 2) {
    h = (h ^ (words[i] | U64{words[i + 1]} << 32)) * 0xBF58476D1CE4E5B9;
    h ^= h >> 29;
  }
  if (i < words.size()) h = (h ^ words[i]) * 0x94D049BB133111EB;
  h ^= h >> 31;
  return static_cast<U32>(h >> 32 ^ h * hashedWordFactor);
}

U32 wordAt(const U8* octets) noexcept {
  return U32{octets[0]} << 24 | U32{octets[1]} << 16 | U32{octets[2]} << 8 | octets[3];
}

// Decodes `value` to `comms`; says whether they are strictly ascending, as most
// senders make them.
bool decode(std::span<const U8> value, U32* comms) noexcept {
  bool ascending = true;
  U64 least = 0;  // of the next one; wider, as after the highest nothing may follow
  for (const U8* at = value.data(); at != value.data() + value.size(); at += sizeof(U32)) {
    *comms = wordAt(at);
    ascending &= *comms >= least;
    least = U64{*comms++} + 1;
  }
  return ascending;
}

}  // namespace

KIV_OBJECT_DEFINE(CommList)

U32 CommListContent::probeHash() const noexcept { return wordHash(comms_); }

CommList::Ptr commListFactory() {
  CommList::Ptr list(new CommList);
  list->hasNotificationActiveIs(true);
  return list;
}

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
  for (const U32 community : commVector_) attribute.addU32hton(community);
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
  return std::ranges::equal(commVector_, static_cast<const CommListContent&>(key).comms());
}

U32 CommList::probeHash() const { return wordHash({commVector_.data(), commVector_.size()}); }

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

CommList::PtrConst CommList::dedupContent(CommListDedupTable::RawPtrConst table,
                                          const CommListContent& content) {
  Dorn::DedupHandle::Ptr found =
      table->dedupTable()->lookupByContent(content, wordHash(content.comms()));
  if (found) return Kiv::staticPtrCast<const CommList>(std::move(found));
  const Ptr list = commListFactory();
  list->commVector_.assign(content.comms());
  list->commVectorSorted_ = true;
  return list->dedup(table);
}

CommList::PtrConst CommList::dedupAttributeValue(CommListDedupTable::RawPtrConst table,
                                                 std::span<const U8> value) {
  if (value.size() % sizeof(U32) != 0) {
    throw Kiv::RangeException("length of COMMUNITIES is no multiple of 4: " +
                              std::to_string(value.size()));
  }
  std::array<U32, 64> room;
  std::vector<U32> largeRoom(value.size() / 4 > room.size() ? value.size() / 4 : 0);
  const std::span<U32> comms(largeRoom.empty() ? room.data() : largeRoom.data(), value.size() / 4);
  if (decode(value, comms.data())) return dedupContent(table, CommListContent(comms));
  std::ranges::sort(comms);
  const auto end = std::unique(comms.begin(), comms.end());
  return dedupContent(table, CommListContent({comms.begin(), end}));
}

}  // namespace Routing::Bgp
