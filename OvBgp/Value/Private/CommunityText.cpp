#include "OvBgp/Value/Private/CommunityText.h"

#include <algorithm>
#include <array>

#include "Kiv/Inline.h"
#include "OvBgp/Value/PacketTypes.h"
#include "OvBgp/Value/Private/WrittenText.h"
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

// Writes the well-known name or, where there is none, the numbers. Apart, so that
// lists without such values are written in one loop without a call.
[[gnu::noinline]] char* writeReserved(char* at, U32 community) {
  const std::string_view name = wellKnownCommunityName(community);
  return name.empty() ? writeCommunity(at, community) : at + name.copy(at, name.size());
}

KIV_INLINE char* writeNamed(char* at, U32 community) {
  return mayHaveName(community) ? writeReserved(at, community) : writeCommunity(at, community);
}

// A community and a blank.
constexpr std::size_t entryMax = communityTextMax + 1;

// Room for the text of `comms`, in either form. A few get the most that they can
// need; longer lists are measured, so that one that fits the buffer stays in it.
std::size_t textRoom(std::span<const U32> comms) {
  constexpr std::size_t fewComms = 8;
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
  to.advanceTo(writeBlankSeparated(to.reserve(textRoom(comms)), comms, write));
}

// Writers for lists, as objects so that they are inlined.
constexpr auto numbers = [](char* at, U32 community) { return writeCommunity(at, community); };
constexpr auto named = [](char* at, U32 community) { return writeNamed(at, community); };

}  // namespace

std::string_view wellKnownCommunityName(U32 community) {
  if (!mayHaveName(community)) return {};
  for (const WellKnown& row : wellKnown) {
    if (static_cast<U32>(row.value) != community) continue;
    return row.isLlgr && !llgrIsOn() ? std::string_view() : row.name;
  }
  return {};
}

bool anyCommunityHasName(std::span<const U32> comms) {
  return std::ranges::any_of(comms, [](U32 c) { return !wellKnownCommunityName(c).empty(); });
}

void appendCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms) {
  appendList(to, comms, numbers);
}

void appendNamedCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms) {
  appendList(to, comms, named);
}

Kiv::String namedCommunitiesText(std::span<const U32> comms) {
  return blankSeparated<entryMax>(comms, named);
}

}  // namespace Routing::Bgp
