// A plugin for a community of one's own: that of MAC mobility, with which an EVPN
// edge says how often an address has moved (RFC 7432 section 7.7).
#include <iostream>
#include <ostream>

#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

// [value]
// The typed community.  Immutable, any thread.
class MacMobility final : public ExtCommSubtyped {
  KIV_OBJECT(MacMobility)

 public:
  explicit MacMobility(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationEvpn, content) {}

  // Whether the address may not move.
  bool sticky() const { return (getContent().value6() >> 40 & 1) != 0; }
  U32 sequenceNumber() const { return static_cast<U32>(getContent().value()); }

  void formatDerivedType(std::ostream& out) const override { out << '<' << text() << '>'; }
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
// What makes it.  The tree has no rule for the type EVPN, so this one hangs below
// the root; null leaves other subtypes to the tree's fallback.
class EvpnRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(EvpnRule)

 public:
  explicit EvpnRule(const BgpParseExtCommControl& control)
      : BgpParseExtendedCommunityTypeRuleBase(control, extCommPktTypeTransEvpn) {}

  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    const BgpExtCommPktSubtypeEvpn subtype{content.subtypeOctet()};
    if (subtype != extCommPktSubtypeEvpnMacMobility) return nullptr;
    return MacMobility::Ptr(new MacMobility(content));
  }
};
KIV_OBJECT_DEFINE(EvpnRule)

// Hangs the rule below every root that there is or will be.
class EvpnPlugin final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(EvpnPlugin)

 public:
  using BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm;

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
  if (!mobility) return 1;
  std::cout << mobility->toStrep() << "\n" << mobility->toStrepForPolicy({}) << "\n";
  std::cout << *ExtComm::dedupContent(table.ptr(), ExtCommContent(0x0602'0000'0000'0001)) << "\n";
  return mobility->sticky() && mobility->sequenceNumber() == 7 ? 0 : 1;
}
