#include "tools/bgp-communities/Verification.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace CommTool {

namespace {

using namespace Routing::Bgp;

Kiv::String attributeOf(const CommList& list) { return list.serialize(); }
Kiv::String attributeOf(const LargeCommList& list) { return list.serialize(); }
Kiv::String attributeOf(const ExtCommList& list) {
  return list.serialize(ExtCommList::serialization(true, false, false));
}
Kiv::String attributeOf(const ExtCommIp6List& list) { return list.serialize(true); }

std::vector<std::string_view> membersOf(Octets value, std::size_t memberSize) {
  std::vector<std::string_view> members;
  for (; value.size() >= memberSize; value = value.subspan(memberSize)) {
    members.emplace_back(reinterpret_cast<const char*>(value.data()), memberSize);
  }
  std::sort(members.begin(), members.end());
  members.erase(std::unique(members.begin(), members.end()), members.end());
  return members;
}

// The value of an attribute that was framed as one of the row; throws Malformed.
Octets valueOf(const Kiv::String& attribute, const CommunityKindRow& row) {
  OctetReader reader({reinterpret_cast<const U8*>(attribute.data()), attribute.size()},
                     row.attribute);
  const U8 flags = reader.u8();
  if ((flags & ~0x10) != 0xC0 || reader.u8() != row.attributeType) {
    throw Malformed(std::string(row.attribute) + " serialized with another header");
  }
  const std::size_t length = (flags & 0x10) != 0 ? reader.u16() : reader.u8();
  if (length != reader.left()) {
    throw Malformed(std::string(row.attribute) + " serialized with another length");
  }
  return reader.rest();
}

std::string difference(Octets received, const Kiv::String& attribute, const CommunityKindRow& row) {
  try {
    const auto before = membersOf(received, row.memberSize);
    const Octets value = valueOf(attribute, row);
    const auto after = membersOf(value, row.memberSize);
    if (before == after && value.size() == after.size() * row.memberSize) return {};
    return std::string(row.attribute) + " of " + std::to_string(before.size()) +
           " distinct members serialized as " + std::to_string(value.size() / row.memberSize) +
           " that are not these";
  } catch (const Malformed& malformed) {
    return malformed.what();
  }
}

}  // namespace

void verify(const CommunityAttributes& received, const RouteCommunities& lists,
            Problems& problems) {
  for (const CommunityKindRow& row : communityKindRows) {
    bool found = false;
    lists.forEachList([&](CommunityKind kind, const auto& list) {
      if (kind != row.kind) return;
      found = true;
      const Octets value = received[kind].value_or(Octets());
      std::string text = difference(value, attributeOf(list), row);
      if (!text.empty()) problems.add(std::move(text));
    });
    if (found != received[row.kind].has_value()) {
      problems.add(std::string(row.attribute) + " without a list, or the other way round");
    }
  }
}

}  // namespace CommTool
