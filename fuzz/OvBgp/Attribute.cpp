// Arbitrary octets as path attributes, and as the value of each attribute that
// carries communities.
// - What a frame says is what it is written as again, and the command agrees.
// - A list has the attribute's members as a set, whichever way it is made and in
//   whichever order they come: always the same object.
// - Attribute, text, hash, lookup and sub-lists are those that the slow way gives.
#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Kiv/Exception.h"
#include "OvBgp/OvBgpSerialize.h"
#include "fuzz/support/JsonGrammar.h"
#include "fuzz/support/Lists.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Require.h"
#include "tools/bgp-communities/bgp/PathAttributes.h"
#include "tools/bgp-communities/commands/AttributeCommand.h"
#include "tools/bgp-communities/output/Json.h"

namespace {

using namespace Routing::Bgp;
using Fuzz::Extended;
using Fuzz::Ip6Extended;
using Fuzz::Large;
using Fuzz::Octets;
using Fuzz::require;
using Fuzz::requireSame;
using Fuzz::Standard;
using Fuzz::Wire;

std::string textOf(Octets octets) { return {octets.begin(), octets.end()}; }
Octets octetsOf(const std::string& text) {
  return {reinterpret_cast<const U8*>(text.data()), text.size()};
}

// The attribute that has the value; RFC 4271, section 4.3.
std::string framed(U8 type, const std::string& value) {
  const bool isLong = value.size() > 255;
  std::string octets{static_cast<char>(isLong ? 0xD0 : 0xC0), static_cast<char>(type)};
  if (isLong) octets.push_back(static_cast<char>(value.size() >> 8));
  octets.push_back(static_cast<char>(value.size()));
  return octets + value;
}

std::string joinedWires(const std::vector<Wire>& wires) {
  std::string all;
  for (const Wire& wire : wires) all += wire;
  return all;
}

// ---- Texts, a stream operation a piece.

std::string plainText(U32 community) {
  std::ostringstream text;
  text << (community >> 16) << ':' << (community & 0xFFFF);
  return text.str();
}
std::string plainText(const Acl::CommunityValue& community, bool asdot) {
  const U32 as = community.globalAdmin();
  std::ostringstream text;
  if (asdot && as > 0xFFFF) text << (as >> 16) << '.';
  text << (asdot ? as & 0xFFFF : as) << ':' << community.localData1() << ':'
       << community.localData2();
  return text.str();
}

void checkTexts(const CommList& list) {
  requireSame(list.toStrep(),
              Fuzz::textOf<Standard>(list,
                                     [](U32 community) {
                                       const std::string name = CommList::wellKnownName(community);
                                       requireSame(CommList::getStringValue(community),
                                                   plainText(community), "number");
                                       return name.empty() ? plainText(community) : name;
                                     }),
              "text of standard communities");
}
void checkTexts(const LargeCommList& list) {
  requireSame(list.toStrep(),
              Fuzz::textOf<Large>(list,
                                  [](const Acl::CommunityValue& community) {
                                    requireSame(LargeCommList::displayString(community, true),
                                                plainText(community, true), "asdot");
                                    return plainText(community, false);
                                  }),
              "text of large communities");
}
template <class Kind>
void checkExtendedTexts(const typename Kind::List& list) {
  for (unsigned bits = 0; bits < 8; ++bits) {
    typename Kind::Value::StrepFormat format;
    format.strepFormatDefaultIs((bits & 1) != 0);
    format.strepFormatClassificationIs((bits & 2) != 0);
    format.strepFormatUIIs((bits & 4) != 0);
    OvFmt::StackBackedBuffer<16> text;
    list.appendPolicyText(text, format);
    requireSame(
        text.view(),
        Fuzz::textOf<Kind>(
            list, [format](const auto& member) { return member->toStrepForPolicy(format); }),
        "policy text");
  }
  const std::string diagnostic =
      Fuzz::textOf<Kind>(list, [](const auto& member) { return member->toStrep(); });
  requireSame(list.toStrep(), "[ " + diagnostic + " ]", "diagnostic text");
}
void checkTexts(const ExtCommList& list) { checkExtendedTexts<Extended>(list); }
void checkTexts(const ExtCommIp6List& list) { checkExtendedTexts<Ip6Extended>(list); }

// ---- Hashes and what a list notes.

// An octet at a time, low ones first.
template <class List>
void checkValueList(const List& list, const std::vector<Wire>& wires) {
  BgpCommon::BgpHashMixImpl mix;
  for (const Wire& wire : wires) {
    for (std::size_t word = 0; word < wire.size(); word += 4) {
      for (std::size_t i = 4; i-- > 0;) mix.addU8(static_cast<U8>(wire[word + i]));
    }
  }
  require(list.hash() == mix.hash(), "hash");
}
void checkNotes(const CommList& list, const std::vector<Wire>& wires) {
  checkValueList(list, wires);
  const auto has = [&wires](U32 community) {
    return std::ranges::count(wires, Standard::wire(community)) == 1;
  };
  require(list.noExport() == has(0xFFFFFF01), "NO_EXPORT");
  require(list.noAdvertise() == has(0xFFFFFF02), "NO_ADVERTISE");
  require(list.noExportSubconfed() == has(0xFFFFFF03), "NO_EXPORT_SUBCONFED");
}
void checkNotes(const LargeCommList& list, const std::vector<Wire>& wires) {
  checkValueList(list, wires);
}

// The sub-lists, by grouping; and how many members may cross a border.
template <class Kind>
void checkParts(const typename Kind::List& list) {
  std::map<ExtCommClassification, std::vector<Wire>> parts;
  U32 transitive = 0;
  for (const auto& member : list.commVector()) {
    parts[member->classification()].push_back(Kind::wire(member));
    transitive += member->getContent().transitiveFlag() ? 1 : 0;
  }
  require(list.totalTransitiveCommunities() == transitive, "transitive communities");
  U32 found = 0;
  for (const auto& part : list.classificationListVector()) {
    if (!part) continue;
    ++found;
    std::vector<Wire> wires;
    for (const auto& member : part->commVector()) wires.push_back(Kind::wire(member));
    require(wires == parts[part->classification()], "a part");
  }
  require(found == parts.size(), "parts");
}
void checkNotes(const ExtCommList& list, const std::vector<Wire>&) {
  checkParts<Extended>(list);
  for (U8 bits = 0; bits < 16; ++bits) {
    const ExtCommList::Serialization which(bits);
    if (!list.fitsAttribute(which)) continue;
    std::string value;
    for (const auto& member : list.commVector()) {
      if (ExtCommList::serializable(member, which)) value += Extended::wire(member);
    }
    requireSame(list.serialize(which), value.empty() ? "" : framed(16, value), "some members");
  }
  require(
      ExtCommList::dedupDestashed(Fuzz::tables().extended.ptr(), Fuzz::tables().values.ptr(), list)
              .ptr() == &list,
      "a list that was rebuilt");
}
void checkNotes(const ExtCommIp6List& list, const std::vector<Wire>&) {
  checkParts<Ip6Extended>(list);
  std::string value;
  for (const auto& member : list.commVector()) {
    if (member->getContent().transitiveFlag()) value += Ip6Extended::wire(member);
  }
  requireSame(list.serialize(false), value.empty() ? "" : framed(25, value), "transitive members");
}

// ---- The ways to make a list.

template <class Kind>
void checkLookup(const typename Kind::List& list, const std::vector<Wire>& wires) {
  for (const Wire& wire : wires) {
    require(Kind::has(list, wire), "a member that is not found");
    Wire other = wire;
    other.back() = static_cast<char>(other.back() ^ 1);
    require(Kind::has(list, other) == std::ranges::binary_search(wires, other), "a lookup");
  }
}

template <class Kind>
void requireLengthRefused(Octets octets) {
  try {
    Kind::ofAttribute(Fuzz::tables(), octets);
    require(octets.size() % Kind::memberSize == 0, "a part of a community");
  } catch (const Kiv::RangeException&) {
    require(octets.size() % Kind::memberSize != 0, "whole communities refused");
  }
}

template <class Kind>
void check(Octets octets) {
  requireLengthRefused<Kind>(octets);
  const std::vector<Wire> received = Fuzz::wiresOf<Kind>(octets);
  const Octets whole = octets.first(received.size() * Kind::memberSize);
  const auto list = Kind::ofAttribute(Fuzz::tables(), whole);
  const std::vector<Wire> wires = Fuzz::sortedUnique(received);
  require(Fuzz::wiresOf<Kind>(*list) == wires, "members");
  const std::string value = joinedWires(wires);
  std::vector<Wire> backwards(received.rbegin(), received.rend());
  for (const std::string& other : {value, joinedWires(backwards), value + value}) {
    require(Kind::ofAttribute(Fuzz::tables(), octetsOf(other)) == list, "another object by octets");
  }
  require(Fuzz::built<Kind>(Fuzz::tables(), received) == list, "another object by members");
  require(Fuzz::built<Kind>(Fuzz::tables(), backwards) == list,
          "another object by members from the end");
  const std::string attribute = Kind::attribute(*list);
  if (!wires.empty() || !attribute.empty()) {
    requireSame(attribute, framed(Kind::attributeType, value), "attribute");
  }
  checkTexts(*list);
  checkNotes(*list, wires);
  checkLookup<Kind>(*list, wires);
}

// ---- Frames.

// An attribute reads as it is written, with and without a length known beforehand.
void checkFrame(const CommTool::PathAttribute& attribute, Octets octets) {
  const BgpPathAttrType type{attribute.type};
  const BgpPathAttrFlag flags{attribute.flags};
  SerializePathAttribute writer(type, flags, static_cast<U32>(attribute.value.size()));
  for (const U8 octet : attribute.value) writer.addU8(octet);
  std::string expected = textOf(octets);
  const bool isShortInLongFrame =
      (attribute.flags & CommTool::extendedLengthFlag) != 0 && attribute.value.size() < 256;
  requireSame(writer.serializedString(), expected, "frame");
  if (isShortInLongFrame) return;
  SerializePathAttributeAutoExtLen later;
  for (const U8 octet : attribute.value) later.addU8(octet);
  const U8 plain = attribute.flags & static_cast<U8>(~CommTool::extendedLengthFlag);
  requireSame(later.patchHdrAndStringify(type, BgpPathAttrFlag{plain}), expected, "frame, later");
}

// The attributes up to the first that is malformed.
void checkFrames(Octets octets) {
  CommTool::OctetReader reader(octets, "attributes");
  try {
    while (!reader.atEnd()) {
      const std::size_t at = octets.size() - reader.left();
      const auto attribute = CommTool::readPathAttribute(reader);
      checkFrame(attribute, octets.subspan(at, octets.size() - reader.left() - at));
    }
  } catch (const CommTool::Malformed&) {
  }
}

std::string run(Octets octets, bool json, CommTool::ExitStatus& status) {
  CommTool::AttributeOptions options;
  options.json = json;
  std::string digits;
  CommTool::appendHex(digits, octets);
  options.octets = {digits};
  const Fuzz::MemoryFile out;
  std::ostringstream errors;
  status = CommTool::runAttribute(options, out.fd(), errors);
  require(errors.str().find("serialized") == std::string::npos, "what was not verified");
  return out.contents();
}

void checkCommand(Octets octets) {
  CommTool::ExitStatus ofText{};
  CommTool::ExitStatus ofJson{};
  run(octets, false, ofText);
  const std::string objects = run(octets, true, ofJson);
  require(ofText == ofJson, "another status for JSON");
  std::istringstream lines(objects);
  for (std::string line; std::getline(lines, line);) require(Fuzz::isJson(line), "no JSON");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const Octets octets(data, size);
  (void)Fuzz::tables();
  {
    const Fuzz::NothingLeft guard;
    checkFrames(octets);
    checkCommand(octets);
    check<Standard>(octets);
    check<Large>(octets);
    check<Extended>(octets);
    check<Ip6Extended>(octets);
  }
  require(Fuzz::tables().members() == 0, "interned and left");
  return 0;
}
