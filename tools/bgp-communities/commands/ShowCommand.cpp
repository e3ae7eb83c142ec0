#include "tools/bgp-communities/commands/ShowCommand.h"

#include <ostream>
#include <sstream>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/Value/LargeCommunityFormatter.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "tools/bgp-communities/commands/CommunityArgument.h"
#include "tools/bgp-communities/commands/DecodedFields.h"
#include "tools/bgp-communities/commands/Running.h"
#include "tools/bgp-communities/output/Report.h"

namespace CommTool {

using namespace Routing::Bgp;  // NOLINT(google-build-using-namespace): all of it is about them

namespace {

// 0x and `digits` hexadecimal digits.
std::string hexOf(U64 value, unsigned digits) {
  OvFmt::StackBackedBuffer<18> text;
  text.append("0x");
  text.appendHex(value, digits);
  return text.str();
}

// 0x and the 20 octets of the community as on the wire: type, subtype, address, local
// administrator.
std::string hexOf(const ExtCommIp6Content& content) {
  OvFmt::StackBackedBuffer<42> text;
  text.append("0x");
  text.appendHex(content.type(), 2);
  text.appendHex(content.subtype(), 2);
  for (const U8 octet : content.addr().octets()) text.appendHex(octet, 2);
  text.appendHex(content.localAdmin(), 4);
  return text.str();
}

// The name of a type; null if it has none.
template <Kiv::RegisteredEnum E>
Report::Value nameOf(E type) {
  if (!bgpIsValidEnumMember(type)) return nullptr;
  return stringValue(type);
}

// The name of a subtype, which depends on the type; null if it has none.
template <class Community>
Report::Value subtypeNameOf(const Community& community) {
  if (community.pktSubtype().isUnspecified()) return nullptr;
  std::ostringstream name;
  name.exceptions(
      std::ios::badbit);  // so that lack of memory throws and does not truncate the name
  community.formatSubtype(name);
  return name.str();
}

// Interns each community as a routing agent does, and describes the resulting object. Owns the
// tables that are needed for this.
class Describer {
 public:
  // `options` must outlive this object.
  explicit Describer(const ShowOptions& options)
      : options_(options),
        container_(bgpParseExtCommContainerSmFactory()),
        values_(extCommDedupTableFactory(container_->extCommParser())),
        ip6Values_(extCommIp6DedupTableFactory(container_->extCommParser())) {}

  // A standard community has no object, so its parts are described directly.
  Report operator()(const StandardCommunity& community) const {
    Report report = begun("standard", hexOf(community.value, 8));
    const std::string name = CommList::wellKnownName(community.value);
    report.add("as_number", community.value >> 16);
    report.add("local_value", community.value & 0xFFFF);
    report.add("well_known", name.empty() ? Report::Value(nullptr) : Report::Value(name));
    report.addText("policy", CommList::getStringValue(community.value));
    report.addText("list", name.empty() ? CommList::getStringValue(community.value) : name);
    return report;
  }

  // The same holds for a large community.
  Report operator()(const Acl::CommunityValue& community) const {
    Report report = begun("large", "0x" + hexOf(community.globalAdmin(), 8).substr(2) +
                                       hexOf(community.localData1(), 8).substr(2) +
                                       hexOf(community.localData2(), 8).substr(2));
    report.add("global_administrator", community.globalAdmin());
    report.add("local_data_1", community.localData1());
    report.add("local_data_2", community.localData2());
    report.addText("policy", largeText(community, options_.asdot));
    report.addText("list", largeText(community, false));
    return report;
  }

  // An extended community is described by the class that the parser chose for it.
  Report operator()(const ExtCommContent& content) const {
    const ExtComm::PtrConst community = ExtComm::dedupContent(values_.ptr(), content);
    Report report = begun("extended", hexOf(content.value(), 16));
    addNature(report, *community, content);
    addTexts(report, *community);
    report.addText("ui", community->toStrepForUI(options_.asdot, options_.weighted, options_.json));
    report.addText("value", valueToStrep(content));
    return report;
  }

  // An IPv6 extended community. Its text for user interfaces is a variant of the policy text.
  Report operator()(const ExtCommIp6Content& content) const {
    const ExtCommIp6::PtrConst community = ExtCommIp6::dedupContent(ip6Values_.ptr(), content);
    Report report = begun("ipv6_extended", hexOf(content));
    addNature(report, *community, content);
    addTexts(report, *community);
    auto ui = formatOf<ExtCommIp6::StrepFormat>();
    ui.strepFormatClassificationIs(true);
    ui.strepFormatUIIs(true);
    report.addText("ui", community->toStrepForPolicy(ui));
    report.addText("value", valueToStrep(content));
    return report;
  }

 private:
  // A report that begins with the fields that all kinds have.
  static Report begun(const char* kind, const std::string& hex) {
    Report report(hex);
    report.add("kind", kind);
    report.add("hex", hex.substr(2));
    return report;
  }

  // a:b:c, with the AS number in asdot on request.
  static std::string largeText(const Acl::CommunityValue& community, bool asdot) {
    OvFmt::StackBackedBuffer<40> text;
    LargeCommunityFormatter::format(text, community, asdot);
    return text.str();
  }

  // Adds class, classification, type and subtype with their names, and the decoded fields.
  template <class Community, class Content>
  static void addNature(Report& report, const Community& community, const Content& content) {
    report.add("class", std::string(community.fwkType().name()));
    report.add("classification", stringValue(community.classification()));
    report.add("type", U32{typeOf(content)});
    report.add("type_name", nameOf(community.pktType()));
    report.add("subtype", U32{subtypeOf(content)});
    report.add("subtype_name", subtypeNameOf(community));
    report.add("transitive", content.transitiveFlag());
    addDecodedFields(report, community);
  }
  // The two classes of contents name their octets differently.
  static U8 typeOf(const ExtCommContent& content) { return content.typeOctet(); }
  static U8 typeOf(const ExtCommIp6Content& content) { return content.type(); }
  static U8 subtypeOf(const ExtCommContent& content) { return content.subtypeOctet(); }
  static U8 subtypeOf(const ExtCommIp6Content& content) { return content.subtype(); }

  // The text form that the options ask for.
  template <class Format>
  Format formatOf() const {
    Format format;
    format.strepFormatDefaultIs(true);
    format.strepFormatAsdotIs(options_.asdot);
    format.strepFormatLinkBwWeightedIs(options_.weighted);
    return format;
  }

  // Adds the text forms that both kinds of extended communities have.
  template <class Community>
  void addTexts(Report& report, const Community& community) const {
    auto format = formatOf<typename Community::StrepFormat>();
    report.addText("policy", community.toStrepForPolicy(format));
    format.strepFormatClassificationIs(true);
    report.addText("classification", community.toStrepForPolicy(format));
    report.addText("diagnostic", community.toStrep());
  }

  const ShowOptions& options_;
  const BgpParseExtCommContainerSm::Ptr container_;
  const ExtCommDedupTable::Ptr values_;
  const ExtCommIp6DedupTable::Ptr ip6Values_;
};

// Parses all values. Returns none if one of them is invalid, which is then reported on `errors`.
std::vector<CommunityArgument> readAll(const std::vector<std::string>& texts,
                                       std::ostream& errors) {
  std::vector<CommunityArgument> communities;
  for (const std::string& text : texts) {
    const auto community = readCommunity(text);
    if (!community) {
      printError(errors, std::string("\"")
                             .append(text)
                             .append("\" is not a community: expected ")
                             .append(communityForms));
      return {};
    }
    communities.push_back(*community);
  }
  return communities;
}

}  // namespace

// An empty list of communities means an error, since the command line requires a value.
ExitStatus runShow(const ShowOptions& options, int out, std::ostream& errors) {
  const std::vector<CommunityArgument> communities = readAll(options.values, errors);
  if (communities.empty()) return ExitStatus::wrongUsage;
  return writing(errors, [&] {
    TextOutput output(out);
    const Describer describe(options);
    for (const CommunityArgument& community : communities) {
      std::visit(describe, community).print(output, options.json);
    }
    output.flush();
    return ExitStatus::fine;
  });
}

}  // namespace CommTool
