#include "tools/bgp-communities/rib/Verification.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace CommTool {

namespace {

using namespace Routing::Bgp;

// The whole attribute of a list, header included.
Kiv::String attributeOf(const CommList& list) { return list.serialize(); }
Kiv::String attributeOf(const LargeCommList& list) { return list.serialize(); }
Kiv::String attributeOf(const ExtCommList& list) {
  return list.serialize(ExtCommList::serialization(true, false, false));
}
Kiv::String attributeOf(const ExtCommIp6List& list) { return list.serialize(true); }

// The communities in an attribute value as octets: sorted, without duplicates. The views are
// borrowed from `value`.
std::vector<std::string_view> membersOf(Octets value, std::size_t memberSize) {
  std::vector<std::string_view> members;
  for (; value.size() >= memberSize; value = value.subspan(memberSize)) {
    members.emplace_back(reinterpret_cast<const char*>(value.data()), memberSize);
  }
  std::sort(members.begin(), members.end());
  members.erase(std::unique(members.begin(), members.end()), members.end());
  return members;
}

// The value of a serialized attribute. Throws Malformed if its header is not one of the row's kind.
// Extended Length (0x10) is allowed; the other flags must be optional and transitive (0xC0).
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

// How the received value and the serialized attribute differ; empty if they do not. The serialized
// value must not have duplicates either.
std::string difference(Octets received, const Kiv::String& attribute, const CommunityKindRow& row) {
  try {
    const auto before = membersOf(received, row.memberSize);
    const Octets value = valueOf(attribute, row);
    const auto after = membersOf(value, row.memberSize);
    if (before == after && value.size() == after.size() * row.memberSize) return {};
    return std::string(row.attribute) + ": " + std::to_string(before.size()) +
           " distinct communities received, but " + std::to_string(value.size() / row.memberSize) +
           " different ones serialized";
  } catch (const Malformed& malformed) {
    return malformed.what();
  }
}

}  // namespace

// The outer loop is over the attributes and not over the lists, so that a missing list is found.
void verify(const CommunityAttributes& received, const RouteCommunities& lists,
            Problems& problems) {
  for (const CommunityKindRow& row : communityKindRows) {
    bool found = false;
    lists.forEachList([&](CommunityKind kind, const auto& list) {
      if (kind != row.kind) return;
      found = true;
      if (!received[kind]) return;
      std::string text = difference(*received[kind], attributeOf(list), row);
      if (!text.empty()) problems.add(std::move(text));
    });
    const bool isReceived = received[row.kind].has_value();
    if (isReceived && !found) problems.add(std::string(row.attribute) + " without a list");
    if (found && !isReceived) problems.add(std::string("list without ") + row.attribute);
  }
}

}  // namespace CommTool
