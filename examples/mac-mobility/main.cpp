// Example: an application teaches the parser a community that the library does not know.
//
// The community is MAC mobility, with which EVPN edge routers count how often a MAC address has
// moved (RFC 7432 section 7.7). The application needs three classes: the value, a rule that builds
// it, and a plugin that adds the rule to the rule tree. The program prints the texts of a MAC
// mobility community and of another EVPN community, and returns 0 if the value was parsed
// correctly.
#include <iostream>
#include <ostream>

#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

// [value]
// The value: type 0x06, subtype 0x00. Immutable, any thread.
class MacMobility final : public ExtCommSubtyped {
  KIV_OBJECT(MacMobility)

 public:
  explicit MacMobility(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationEvpn, content) {}

  // Returns the static flag, bit 0 of octet 2: the address may not move.
  bool sticky() const { return (getContent().value6() >> 40 & 1) != 0; }
  // Returns the number of moves, octets 4 to 7 as a big-endian number.
  U32 sequenceNumber() const { return static_cast<U32>(getContent().value()); }

  // Writes the diagnostic text, for logs.
  void formatDerivedType(std::ostream& out) const override { out << '<' << text() << '>'; }
  // Appends the text for policies and show commands; this community has the same text for all
  // formats.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat) const override {
    to.append(text());
  }

 private:
  Kiv::String text() const {
    return "MacMobility:" + std::to_string(sequenceNumber()) + (sticky() ? ":sticky" : "");
  }
};
KIV_OBJECT_DEFINE(MacMobility)
// [/value]

// [rule]
// The rule that builds the value. The tree has no rule for the EVPN type, so this rule is a type
// rule directly below the root. For a type that the tree knows, a leaf derived from
// BgpParseExtCommLeafRule would be enough.
class EvpnRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(EvpnRule)

 public:
  explicit EvpnRule(const BgpParseExtCommControl& control)
      : BgpParseExtendedCommunityTypeRuleBase(control, extCommPktTypeTransEvpn) {}

  // Returns null for other subtypes, which leaves them to the root's fallback.
  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    const BgpExtCommPktSubtypeEvpn subtype{content.subtypeOctet()};
    if (subtype != extCommPktSubtypeEvpnMacMobility) return nullptr;
    return MacMobility::Ptr(new MacMobility(content));
  }
};
KIV_OBJECT_DEFINE(EvpnRule)

// The plugin, which adds the rule to every root that is announced in the registry, now or later. It
// inherits the constructor, so it must be created with bgpParseExtCommPluginIs().
class EvpnPlugin final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(EvpnPlugin)

 public:
  using BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm;

  // Runs once for each root. `control` connects the new rule to the root's registry.
  void instantiateExtendedCommunityTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& key,
      const BgpParseExtCommControl& control) const override {
    addExtendedCommunityTypeSubRule(key, bgpParseExtCommRuleIs<EvpnRule>(control));
  }
};
KIV_OBJECT_DEFINE(EvpnPlugin)
// [/rule]

}  // namespace

int main() {
  // [plug]
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto plugin = bgpParseExtCommPluginIs<EvpnPlugin>(parser->parseExtCommRuleCollections());
  const auto table = extCommDedupTableFactory(parser->extCommParser());

  const ExtCommContent octets(0x0600'0100'0000'0007);
  const ExtComm::PtrConst community = ExtComm::dedupContent(table.ptr(), octets);
  const auto* const mobility = dynamic_cast<const MacMobility*>(community.ptr());
  // [/plug]
  // A null pointer would mean that the tree did not use the plugin's rule.
  if (!mobility) return 1;
  std::cout << mobility->toStrep() << "\n" << mobility->toStrepForPolicy({}) << "\n";
  // Subtype 0x02 has no rule, so the root builds a plain ExtComm.
  std::cout << *ExtComm::dedupContent(table.ptr(), ExtCommContent(0x0602'0000'0000'0001)) << "\n";
  return mobility->sticky() && mobility->sequenceNumber() == 7 ? 0 : 1;
}
