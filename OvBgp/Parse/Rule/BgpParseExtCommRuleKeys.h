// Rule keys: plain values with which the nodes of the rule tree announce themselves.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEKEYS_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEKEYS_H

#include <cstddef>
#include <cstdint>
#include <ostream>

#include "Kiv/AttributeReader.h"
#include "Kiv/Hash.h"
#include "Kiv/RawPointer.h"
#include "Kiv/String.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"

namespace Routing::Bgp {

// The address of a node of class `Rule` that exists and accepts children. The key holds no
// reference and nothing checks the address, so dereference a key only while its registry contains
// it, or during the notification about it. Keys are equal if they name the same node.
template <class Rule>
class BgpParseExtCommRuleKey {
 public:
  // The hash function of sets of keys.
  struct Hash {
    // Returns key.hash().
    std::size_t operator()(const BgpParseExtCommRuleKey& key) const noexcept { return key.hash(); }
  };

  // Builds a null key, which names no node.
  BgpParseExtCommRuleKey() = default;
  // Names `rule`, without a reference; null gives a null key.
  explicit BgpParseExtCommRuleKey(const Rule* rule) : rule_(rule) {}
  // Reads the text that valueToStrep() returns. Throws Kiv::RangeException on any other text. Use
  // it only for text from this process: an address from elsewhere would be dereferenced.
  explicit BgpParseExtCommRuleKey(const Kiv::String& text) {
    const char* it = text.data();
    Kiv::AttributeReader reader(it, it + text.size());
    Kiv::RawPointer pointer;
    reader.value("rule", &pointer);
    reader.expectEnd();
    rule_ = static_cast<const Rule*>(pointer.address);
  }

  // Returns the node, without a reference; null for a null key.
  const Rule* rule() const noexcept { return rule_; }
  // Returns a hash of the address, seeded per process.
  U32 hash() const noexcept { return Kiv::hashSingleAttr(0, address()); }

  // Compares the addresses.
  friend bool operator==(const BgpParseExtCommRuleKey& a,
                         const BgpParseExtCommRuleKey& b) = default;
  // Orders by address as an unsigned number.
  friend bool operator<(const BgpParseExtCommRuleKey& a, const BgpParseExtCommRuleKey& b) {
    return a.address() < b.address();
  }
  // Returns the address as text, in the format of Kiv/RawPointer.h.
  friend Kiv::String valueToStrep(const BgpParseExtCommRuleKey& key) {
    return Kiv::valueToStrep(Kiv::RawPointer{key.rule_});
  }
  // Writes the text of valueToStrep().
  friend std::ostream& operator<<(std::ostream& out, const BgpParseExtCommRuleKey& key) {
    return out << valueToStrep(key);
  }

 private:
  std::uintptr_t address() const noexcept { return reinterpret_cast<std::uintptr_t>(rule_); }

  const Rule* rule_ = nullptr;
};

// Declares the key class of one kind of node. The key must be a class, not an alias of the
// template, because BgpParseExtCommKinds.h declares it as a class.
#define RULE_KEY(Class, Rule)                               \
  class Class final : public BgpParseExtCommRuleKey<Rule> { \
   public:                                                  \
    /* The constructors of the template. */                 \
    using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;   \
  }

// Announces the root, which accepts type rules.
RULE_KEY(BgpParseExtendedCommunityRuleKey, BgpParseExtendedCommunityRule);
// Announces the transitive two-octet AS type rule (0x00).
RULE_KEY(BgpParseExtCommSubTypeTransTwoOctetAsRuleKey, BgpParseExtCommTransTwoOctetAsRule);
// Announces the transitive IPv4 address type rule (0x01).
RULE_KEY(BgpParseExtCommSubTypeTransIpv4AddressRuleKey, BgpParseExtCommTransIpv4AddressRule);
// Announces the transitive four-octet AS type rule (0x02).
RULE_KEY(BgpParseExtCommSubTypeTransFourOctetAsRuleKey, BgpParseExtCommTransFourOctetAsRule);
// Announces the transitive opaque type rule (0x03).
RULE_KEY(BgpParseExtCommSubTypeTransOpaqueRuleKey, BgpParseExtCommTransOpaqueRule);
// Announces the generic transitive type rule (0x80).
RULE_KEY(BgpParseExtCommSubTypeTransGenericRuleKey, BgpParseExtCommTransGenericRule);
// Announces the generic transitive part 2 type rule (0x81).
RULE_KEY(BgpParseExtCommSubTypeTransGenericPart2RuleKey, BgpParseExtCommTransGenericPart2Rule);
// Announces the generic transitive part 3 type rule (0x82).
RULE_KEY(BgpParseExtCommSubTypeTransGenericPart3RuleKey, BgpParseExtCommTransGenericPart3Rule);
// Announces the non-transitive two-octet AS type rule (0x40).
RULE_KEY(BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey, BgpParseExtCommNonTransTwoOctetAsRule);
// Announces the non-transitive IPv4 address type rule (0x41).
RULE_KEY(BgpParseExtCommSubTypeNonTransIpv4AddressRuleKey, BgpParseExtCommNonTransIpv4AddressRule);
// Announces the non-transitive four-octet AS type rule (0x42).
RULE_KEY(BgpParseExtCommSubTypeNonTransFourOctetAsRuleKey, BgpParseExtCommNonTransFourOctetAsRule);
// Announces the non-transitive opaque type rule (0x43).
RULE_KEY(BgpParseExtCommSubTypeNonTransOpaqueRuleKey, BgpParseExtCommNonTransOpaqueRule);
// Announces the transitive IPv6 address type rule (0x00 of 20-octet values).
RULE_KEY(BgpParseExtCommIp6SubTypeTransRuleKey, BgpParseExtCommIp6TransRule);
// Names the non-transitive IPv6 address type rule (0x40 of 20-octet values), which never announces
// itself.
RULE_KEY(BgpParseExtCommIp6SubTypeNonTransRuleKey, BgpParseExtCommIp6NonTransRule);
#undef RULE_KEY

}  // namespace Routing::Bgp

#endif
