#include "tools/bgp-communities/commands/AttributeCommand.h"

#include <algorithm>
#include <bitset>
#include <optional>
#include <ostream>

#include "OvBgp/BgpPathAttributeEnums.h"
#include "tools/bgp-communities/bgp/PathAttributes.h"
#include "tools/bgp-communities/commands/Running.h"
#include "tools/bgp-communities/output/Json.h"
#include "tools/bgp-communities/output/ListTexts.h"
#include "tools/bgp-communities/output/Report.h"
#include "tools/bgp-communities/rib/CommunityTables.h"
#include "tools/bgp-communities/rib/Verification.h"

namespace CommTool {

using namespace Routing::Bgp;  // NOLINT(google-build-using-namespace): all of it is about them

namespace {

// The value of a hexadecimal digit.
std::optional<unsigned> digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

// Separators that packet dumps and shells put between octets.
bool isBetweenOctets(char c) { return c == ':' || c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Parses octets of two digits each. Nothing if there is any other character or half an octet. The
// prefix 0x is skipped wherever an octet can begin.
std::optional<std::vector<U8>> readHexText(std::string_view text) {
  std::vector<U8> octets;
  while (!text.empty()) {
    if (isBetweenOctets(text[0])) {
      text.remove_prefix(1);
      continue;
    }
    if (text.size() < 2) return std::nullopt;
    const auto low = digitOf(text[1]);
    const auto high = digitOf(text[0]);
    const bool prefix = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (!prefix && (!low || !high)) return std::nullopt;
    if (!prefix) octets.push_back(static_cast<U8>(*high << 4 | *low));
    text.remove_prefix(2);
  }
  return octets;
}

// An attribute and its offset in the input, in octets.
struct Placed {
  std::size_t offset;
  PathAttribute attribute;
};

// The octets in hexadecimal without a prefix.
std::string hexText(Octets octets) {
  std::string text;
  appendHex(text, octets);
  return text;
}

// The names of the flags that are set. The lower four bits have no names.
std::vector<std::string> namesOfFlags(U8 flags) {
  struct Row {
    AttributeFlag flag;
    const char* name;
  };
  std::vector<std::string> names;
  for (const Row& row : {Row{optionalFlag, "optional"}, Row{transitiveFlag, "transitive"},
                         Row{partialFlag, "partial"}, Row{extendedLengthFlag, "extended-length"}}) {
    if ((flags & row.flag) != 0) names.emplace_back(row.name);
  }
  return names;
}

// The name of an attribute type; unknown types get a text with their number.
std::string displayName(U8 type) {
  return bgpPathAttrTypeShowString(static_cast<BgpPathAttrType>(type));
}

// The next functions add every text form that a list of the kind has.
void addTexts(Report& report, const CommList& list) {
  std::string numbers;
  for (const U32 community : *list.commVectorRawPtr()) {
    numbers.append(numbers.empty() ? "" : " ").append(CommList::getStringValue(community));
  }
  report.addText("policy", numbers);
  report.addText("list", listText(list));
}
void addTexts(Report& report, const LargeCommList& list) {
  std::string asdot;
  for (const Acl::CommunityValue& community : *list.commVectorRawPtr()) {
    asdot.append(asdot.empty() ? "" : " ").append(LargeCommList::displayString(community, true));
  }
  report.addText("list", listText(list));
  report.addText("asdot", asdot);
}
// The forms differ in what stands before the value: nothing, the classification, or a long name.
template <class Value>
void addExtendedTexts(Report& report, const auto& list) {
  const auto add = [&](const char* name, typename Value::StrepFormat format) {
    OvFmt::StackBackedBuffer<1024> text;
    list.appendPolicyText(text, format);
    report.addText(name, text.str());
  };
  typename Value::StrepFormat format;
  format.strepFormatDefaultIs(true);
  add("policy", format);
  format.strepFormatClassificationIs(true);
  add("classification", format);
  format.strepFormatUIIs(true);
  add("ui", format);
  report.addText("list", listText(list));
  report.addText("diagnostic", list.toStrep());
}
void addTexts(Report& report, const ExtCommList& list) { addExtendedTexts<ExtComm>(report, list); }
void addTexts(Report& report, const ExtCommIp6List& list) {
  addExtendedTexts<ExtCommIp6>(report, list);
}

// One run of the command. Everything is read and checked before anything is printed.
class AttributeRun {
 public:
  AttributeRun(const AttributeOptions& options, std::ostream& errors)
      : options_(options), errors_(errors) {}

  // Prints a report of each attribute.
  ExitStatus run(Octets octets, int out) {
    if (!read(octets)) return ExitStatus::damaged;
    TextOutput output(out);
    for (const Placed& placed : attributes_) {
      reportOf(placed).print(output, options_.json);
    }
    output.flush();
    return sound_ ? ExitStatus::fine : ExitStatus::damaged;
  }

 private:
  // Returns false after a report on `errors_` if an attribute is malformed.
  bool read(Octets octets) {
    std::bitset<256> seen;  // by attribute type
    OctetReader reader(octets, "path attribute");
    while (!reader.atEnd()) {
      const std::size_t offset = octets.size() - reader.left();
      try {
        const PathAttribute attribute = readPathAttribute(reader);
        const CommunityKindRow* const row = communityKindOf(attribute.type);
        const std::string defect = row != nullptr ? defectOf(attribute, *row) : std::string();
        if (!defect.empty()) throw Malformed(defect);
        // A repeated attribute is an error, but the others can be explained nevertheless.
        if (seen.test(attribute.type)) {
          complain(offset, "path attribute " + std::to_string(attribute.type) + " repeated");
        } else {
          attributes_.push_back({offset, attribute});
        }
        seen.set(attribute.type);
      } catch (const Malformed& malformed) {
        complain(offset, malformed.what());
        return false;
      }
    }
    return true;
  }

  // Reports an error and remembers it for the exit status.
  void complain(std::size_t offset, const std::string& what) {
    sound_ = false;
    printError(errors_, "attribute at octet " + std::to_string(offset) + ": " + what);
  }

  // The header fields and the value; for community attributes also their list.
  Report reportOf(const Placed& placed) {
    const PathAttribute& attribute = placed.attribute;
    const std::string name = displayName(attribute.type);
    Report report(name + " (type " + std::to_string(attribute.type) + ")");
    report.add("offset", static_cast<U32>(placed.offset));
    report.add("type", U32{attribute.type});
    report.add("name", name);
    report.add("flags", namesOfFlags(attribute.flags));
    report.add("flags_octet", hexText({&attribute.flags, 1}));
    report.add("length", static_cast<U32>(attribute.value.size()));
    report.add("value", hexText(attribute.value));
    if (const CommunityKindRow* const row = communityKindOf(attribute.type)) {
      addList(report, placed, *row);
    }
    return report;
  }

  // Adds the communities of an attribute, its list's text forms, and the result of the
  // verification.
  void addList(Report& report, const Placed& placed, const CommunityKindRow& row) {
    const PathAttribute& attribute = placed.attribute;
    std::vector<std::string> members;
    for (Octets left = attribute.value; !left.empty(); left = left.subspan(row.memberSize)) {
      members.push_back(hexText(left.first(row.memberSize)));
    }
    report.add("kind", row.member);
    report.add("members", members);
    // The attribute is interned and verified as if it came in an UPDATE message.
    CommunityAttributes received;
    received[row.kind] = attribute.value;
    const RouteCommunities lists = tables_.intern(received);
    Problems problems;
    verify(received, lists, problems);
    report.add("verified", problems.empty());
    if (!problems.empty()) complain(placed.offset, problems.text());
    lists.forEachList([&report](CommunityKind, const auto& list) { addTexts(report, list); });
  }

  const AttributeOptions& options_;
  std::ostream& errors_;
  const CommunityTables tables_;
  std::vector<Placed> attributes_;
  bool sound_ = true;
};

}  // namespace

// The arguments are joined with blanks, so an octet cannot be split over two of them.
ExitStatus runAttribute(const AttributeOptions& options, int out, std::ostream& errors) {
  std::string text;
  for (const std::string& part : options.octets) text.append(part).append(" ");
  const auto octets = readHexText(text);
  if (!octets || octets->empty()) {
    printError(errors, "expected path attributes as octets of two hexadecimal digits each");
    return ExitStatus::wrongUsage;
  }
  return writing(errors, [&] { return AttributeRun(options, errors).run(*octets, out); });
}

}  // namespace CommTool
