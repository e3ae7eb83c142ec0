// The keys under which the nodes of the rule tree are announced.
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

// Says that `rule` exists and takes children. The pointer is not counted, and is
// trusted: a key is good for as long as its node announces it. Keys are equal if
// they name the same node, and order by its address, unsigned.
template <class Rule>
class BgpParseExtCommRuleKey {
 public:
  struct Hash {
    std::size_t operator()(const BgpParseExtCommRuleKey& key) const noexcept { return key.hash(); }
  };

  BgpParseExtCommRuleKey() = default;  // names no node
  explicit BgpParseExtCommRuleKey(const Rule* rule) : rule_(rule) {}
  // Reads the text form, and nothing else; throws Kiv::RangeException on any other
  // text. Only for text that this process wrote, as the pointer is trusted.
  explicit BgpParseExtCommRuleKey(const Kiv::String& text) {
    const char* it = text.data();
    Kiv::AttributeReader reader(it, it + text.size());
    Kiv::RawPointer pointer;
    reader.value("rule", &pointer);
    reader.expectEnd();
    rule_ = static_cast<const Rule*>(pointer.address);
  }

  const Rule* rule() const noexcept { return rule_; }
  U32 hash() const noexcept { return Kiv::hashSingleAttr(0, address()); }

  friend bool operator==(const BgpParseExtCommRuleKey& a,
                         const BgpParseExtCommRuleKey& b) = default;
  friend bool operator<(const BgpParseExtCommRuleKey& a, const BgpParseExtCommRuleKey& b) {
    return a.address() < b.address();
  }
  // The text form is the pointer's: Kiv/RawPointer.h.
  friend Kiv::String valueToStrep(const BgpParseExtCommRuleKey& key) {
    return Kiv::valueToStrep(Kiv::RawPointer{key.rule_});
  }
  friend std::ostream& operator<<(std::ostream& out, const BgpParseExtCommRuleKey& key) {
    return out << valueToStrep(key);
  }

 private:
  std::uintptr_t address() const noexcept { return reinterpret_cast<std::uintptr_t>(rule_); }

  const Rule* rule_ = nullptr;
};

class BgpParseExtendedCommunityRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtendedCommunityRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransTwoOctetAsRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransTwoOctetAsRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransIpv4AddressRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransIpv4AddressRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransFourOctetAsRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransFourOctetAsRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransOpaqueRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransOpaqueRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransGenericRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransGenericRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransGenericPart2RuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransGenericPart2Rule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeTransGenericPart3RuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommTransGenericPart3Rule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommNonTransTwoOctetAsRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeNonTransIpv4AddressRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommNonTransIpv4AddressRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeNonTransFourOctetAsRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommNonTransFourOctetAsRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommSubTypeNonTransOpaqueRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommNonTransOpaqueRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommIp6SubTypeTransRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommIp6TransRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};
class BgpParseExtCommIp6SubTypeNonTransRuleKey final
    : public BgpParseExtCommRuleKey<BgpParseExtCommIp6NonTransRule> {
 public:
  using BgpParseExtCommRuleKey::BgpParseExtCommRuleKey;
};

}  // namespace Routing::Bgp

#endif
