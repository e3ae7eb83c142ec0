#include "OvBgp/CommunityText.h"

#include <algorithm>
#include <array>

#include "Kiv/Inline.h"
#include "OvBgp/OvBgpCommunityPacketTypes.h"
#include "OvToggles/OvToggles.h"

namespace Routing::Bgp {
namespace {

struct WellKnown {
  BgpCommunityValue value;
  std::string_view name;
  bool isLlgr = false;  // long-lived graceful restart: named only while that is on
};

// NO_EXPORT_SUBCONFED goes by the name that configurations use for it.
constexpr std::array wellKnown{
    WellKnown{communityInternet, "internet"},
    WellKnown{communityGshut, "GSHUT"},
    WellKnown{communityLlgrStale, "llgr-stale", true},
    WellKnown{communityNoLlgr, "no-llgr", true},
    WellKnown{communityNoExport, "no-export"},
    WellKnown{communityNoAdvertise, "no-advertise"},
    WellKnown{communityNoExportSubconfed, "local-as"},
};

constexpr bool everyNameFits() {
  for (const WellKnown& row : wellKnown) {
    if (row.name.size() > communityTextMax) return false;
  }
  return true;
}
static_assert(everyNameFits());

bool llgrIsOn() {
  static const bool isOn = OvToggles::getToggleState("OvBgpLlgr", "BgpCommon.json", true);
  return isOn;
}

// All but 0 lie in the reserved range of RFC 1997, so most values are told apart
// from them without a search.
constexpr bool mayHaveName(U32 community) noexcept {
  return community == 0 || community >= 0xFFFF0000;
}

std::string_view nameOf(U32 community, bool withLlgr) {
  if (!mayHaveName(community)) return {};
  for (const WellKnown& row : wellKnown) {
    if (static_cast<U32>(row.value) != community) continue;
    return row.isLlgr && !withLlgr ? std::string_view() : row.name;
  }
  return {};
}

KIV_INLINE char* writeNamed(char* at, U32 community, bool withLlgr) {
  const std::string_view name = nameOf(community, withLlgr);
  return name.empty() ? writeCommunity(at, community) : at + name.copy(at, name.size());
}

// Room for the text of `comms`, in either form. A few get the most that they can
// need; longer lists are measured, so that one that fits the buffer stays in it.
std::size_t textRoom(std::span<const U32> comms) {
  constexpr std::size_t fewComms = 8;
  constexpr std::size_t entryMax = communityTextMax + 1;
  if (comms.size() <= fewComms) return comms.size() * entryMax;
  std::size_t room = OvFmt::decimalRoomU16;
  for (const U32 c : comms) {
    room += mayHaveName(c) ? entryMax
                           : OvFmt::decimalDigits(c >> 16) + OvFmt::decimalDigits(c & 0xFFFF) + 2;
  }
  return room;
}

template <class Write>
void appendList(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms, const Write& write) {
  char* at = to.reserve(textRoom(comms));
  char* const begin = at;
  for (const U32 community : comms) {
    if (at != begin) *at++ = ' ';
    at = write(at, community);
  }
  to.advanceTo(at);
}

}  // namespace

std::string_view wellKnownCommunityName(U32 community) { return nameOf(community, llgrIsOn()); }

bool anyCommunityHasName(std::span<const U32> comms) {
  const bool withLlgr = llgrIsOn();
  return std::ranges::any_of(
      comms, [withLlgr](U32 community) { return !nameOf(community, withLlgr).empty(); });
}

void appendCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms) {
  appendList(to, comms, writeCommunity);
}

void appendNamedCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms) {
  appendList(to, comms, [withLlgr = llgrIsOn()](char* at, U32 community) {
    return writeNamed(at, community, withLlgr);
  });
}

Kiv::String namedCommunityText(U32 community) {
  Kiv::String text(communityTextMax, '\0');
  const char* const end = writeNamed(text.data(), community, llgrIsOn());
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

}  // namespace Routing::Bgp
