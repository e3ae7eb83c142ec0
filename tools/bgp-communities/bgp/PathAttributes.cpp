#include "tools/bgp-communities/bgp/PathAttributes.h"

#include <bitset>

namespace CommTool {

namespace {

// Attribute type codes of RFC 4760.
constexpr U8 mpReachType = 14;
constexpr U8 mpUnreachType = 15;

// All community attributes are defined as optional transitive. The other flags may vary.
constexpr U8 optionalTransitive = optionalFlag | transitiveFlag;

// Sorts the attributes of one message by type as they are read.
class Collector {
 public:
  explicit Collector(Problems& problems) : problems_(problems) {}

  // Stores an attribute by its type. A speaker must not send a type twice.
  void add(const PathAttribute& attribute) {
    if (seen_.test(attribute.type)) {
      addRepeated(attribute.type);
      return;
    }
    seen_.set(attribute.type);
    if (attribute.type == mpReachType) {
      found.mpReach = attribute.value;
    } else if (attribute.type == mpUnreachType) {
      found.mpUnreach = attribute.value;
    } else {
      addCommunities(attribute);
    }
  }

  // The result.
  PathAttributes found;

 private:
  // A repeated MP attribute spoils the message; of any other attribute the first one counts.
  void addRepeated(U8 type) {
    problems_.add("path attribute " + std::to_string(type) + " repeated");
    found.repeatedMp |= type == mpReachType || type == mpUnreachType;
  }

  // Stores a community attribute that may be used. Attributes of other types are ignored.
  void addCommunities(const PathAttribute& attribute) {
    const CommunityKindRow* const row = communityKindOf(attribute.type);
    if (row == nullptr) return;
    if (std::string defect = defectOf(attribute, *row); !defect.empty()) {
      problems_.add(std::move(defect));
      found.treatAsWithdraw = true;
      return;
    }
    found.communities[row->kind] = attribute.value;
    found.communities.flagsIs(row->kind, attribute.flags);
  }

  Problems& problems_;
  std::bitset<256> seen_;  // by attribute type
};

}  // namespace

// Flags, type, a length of one or two octets, and the value.
PathAttribute readPathAttribute(OctetReader& reader) {
  const U8 flags = reader.u8();
  const U8 type = reader.u8();
  const std::size_t length = (flags & extendedLengthFlag) != 0 ? reader.u16() : reader.u8();
  return {flags, type, reader.octets(length)};
}

// A search over four rows is as fast as a table of 256 entries.
const CommunityKindRow* communityKindOf(U8 attributeType) {
  for (const CommunityKindRow& row : communityKindRows) {
    if (row.attributeType == attributeType) return &row;
  }
  return nullptr;
}

std::string defectOf(const PathAttribute& attribute, const CommunityKindRow& row) {
  if ((attribute.flags & optionalTransitive) != optionalTransitive) {
    return std::string(row.attribute) + " attribute without the flags optional and transitive";
  }
  const std::size_t length = attribute.value.size();
  if (length != 0 && length % row.memberSize == 0) return {};
  return std::string(row.attribute) + " attribute of " + std::to_string(length) +
         " octets: not a positive multiple of " + std::to_string(row.memberSize);
}

// Malformed can only come from a header or length that exceeds the octets. There the next attribute
// cannot be found, so the loop ends.
PathAttributes readPathAttributes(Octets octets, Problems& problems) {
  Collector collector(problems);
  OctetReader reader(octets, "path attributes");
  try {
    while (!reader.atEnd()) {
      collector.add(readPathAttribute(reader));
    }
  } catch (const Malformed& malformed) {
    problems.add(malformed.what());
    collector.found.treatAsWithdraw = true;
  }
  return collector.found;
}

}  // namespace CommTool
