#include "tools/bgp-communities/PathAttributes.h"

#include <bitset>

namespace CommTool {

namespace {

constexpr U8 extendedLengthFlag = 0x10;
constexpr U8 mpReachType = 14;
constexpr U8 mpUnreachType = 15;

// Of the flags octet (RFC 4271, section 4.3): what those of communities must be.
constexpr U8 optionalTransitive = 0xC0;

struct Attribute {
  U8 flags;
  U8 type;
  Octets value;
};

Attribute readAttribute(OctetReader& reader) {
  const U8 flags = reader.u8();
  const U8 type = reader.u8();
  const std::size_t length = (flags & extendedLengthFlag) != 0 ? reader.u16() : reader.u8();
  return {flags, type, reader.octets(length)};
}

class Collector {
 public:
  explicit Collector(Problems& problems) : problems_(problems) {}

  void add(const Attribute& attribute) {
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

  PathAttributes found;

 private:
  void addRepeated(U8 type) {
    problems_.add("path attribute " + std::to_string(type) + " repeated");
    found.repeatedMp |= type == mpReachType || type == mpUnreachType;
  }

  void addCommunities(const Attribute& attribute) {
    for (const CommunityKindRow& row : communityKindRows) {
      if (row.attributeType != attribute.type) {
        continue;
      }
      if ((attribute.flags & optionalTransitive) != optionalTransitive) {
        problems_.add(std::string(row.attribute) +
                      " attribute that is not optional and transitive");
        found.treatAsWithdraw = true;
        return;
      }
      const std::size_t length = attribute.value.size();
      if (length == 0 || length % row.memberSize != 0) {
        problems_.add(std::string(row.attribute) + " attribute of " + std::to_string(length) +
                      " octets is not one or more members of " + std::to_string(row.memberSize));
        found.treatAsWithdraw = true;
        return;
      }
      found.communities[row.kind] = attribute.value;
    }
  }

  Problems& problems_;
  std::bitset<256> seen_;
};

}  // namespace

PathAttributes readPathAttributes(Octets octets, Problems& problems) {
  Collector collector(problems);
  OctetReader reader(octets, "path attributes");
  try {
    while (!reader.atEnd()) {
      collector.add(readAttribute(reader));
    }
  } catch (const Malformed& malformed) {
    problems.add(malformed.what());
    collector.found.treatAsWithdraw = true;
  }
  return collector.found;
}

}  // namespace CommTool
