#include "OvBgp/Value/Private/CommunityText.h"

#include <algorithm>
#include <array>

#include "Kiv/Inline.h"
#include "OvBgp/Value/PacketTypes.h"
#include "OvBgp/Value/Private/WrittenText.h"
#include "OvToggles/OvToggles.h"

namespace Routing::Bgp {
namespace {

// A standard community and the name that show commands and configurations use for it.
struct WellKnown {
  BgpCommunityValue value;
  std::string_view name;
  bool isLlgr = false;  // of long-lived graceful restart; named only if that feature is on
};

// "local-as" is what configurations call NO_EXPORT_SUBCONFED (RFC 1997).
constexpr std::array wellKnown{
    WellKnown{communityInternet, "internet"},
    WellKnown{communityGshut, "GSHUT"},
    WellKnown{communityLlgrStale, "llgr-stale", true},
    WellKnown{communityNoLlgr, "no-llgr", true},
    WellKnown{communityNoExport, "no-export"},
    WellKnown{communityNoAdvertise, "no-advertise"},
    WellKnown{communityNoExportSubconfed, "local-as"},
};

// Buffers reserve communityTextMax octets a community, so no name may be longer.
constexpr bool everyNameFits() {
  for (const WellKnown& row : wellKnown) {
    if (row.name.size() > communityTextMax) return false;
  }
  return true;
}
static_assert(everyNameFits());

// Reads the toggle once per process. Reading the file for each community would be slow, and a text
// must not change between two lines of one command.
bool llgrIsOn() {
  static const bool isOn = OvToggles::getToggleState("OvBgpLlgr", "BgpCommon.json", true);
  return isOn;
}

// A quick test without a search. All well-known communities except 0 are in the reserved range of
// RFC 1997, so this is false for nearly all communities of a route.
constexpr bool mayHaveName(U32 community) noexcept {
  return community == 0 || community >= 0xFFFF0000;
}

// Slow path: writes the well-known name, or the numbers if there is none. Never inlined, so that
// the loop over a list without such values contains no call and keeps its variables in registers.
[[gnu::noinline]] char* writeReserved(char* at, U32 community) {
  const std::string_view name = wellKnownCommunityName(community);
  return name.empty() ? writeCommunity(at, community) : at + name.copy(at, name.size());
}

// Fast path: writes the numbers, or calls the slow path for a community that may have a name.
KIV_INLINE char* writeNamed(char* at, U32 community) {
  return mayHaveName(community) ? writeReserved(at, community) : writeCommunity(at, community);
}

// The octets of one community and a blank.
constexpr std::size_t entryMax = communityTextMax + 1;

// The octets to reserve for the text of `comms`, with names or without. A short list reserves the
// greatest possible size. A longer list is measured, because the greatest size would move many
// texts from the stack to the heap that fit the stack buffer.
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

// Reserves once, then writes without checking the room again.
template <class Write>
void appendList(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms, const Write& write) {
  to.advanceTo(writeBlankSeparated(to.reserve(textRoom(comms)), comms, write));
}

// The two ways of writing a community. These are function objects, because a compiler inlines a
// call of an object's operator into the loop, but often not a call by a function pointer.
constexpr auto numbers = [](char* at, U32 community) { return writeCommunity(at, community); };
constexpr auto named = [](char* at, U32 community) { return writeNamed(at, community); };

}  // namespace

// Seven rows need no faster search: only a community of the reserved range gets here.
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
