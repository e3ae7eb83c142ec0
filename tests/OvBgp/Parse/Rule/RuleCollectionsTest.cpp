// Tests of the registry, of its keys and of the control.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "Kiv/Exception.h"
#include "Kiv/NotifieeList.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"

namespace {

using namespace Routing::Bgp;

using Collections = BgpParseExtCommRuleCollections;
using Heard = std::vector<U32>;

class CollectionEar : public Kiv::Notifiee {
 public:
  explicit CollectionEar(Kiv::NotifieeList* list) { notifierIs(list); }
  void handleChange(const Kiv::Change& change) override {
    attributes.push_back(change.attribute());
  }
  Heard attributes;
};

// A key with an arbitrary address, which no test may dereference.
template <class Key>
Key keyAt(std::uintptr_t address) {
  return Key(valueToStrep(Kiv::RawPointer{reinterpret_cast<const void*>(address)}));
}

template <class Kind>
class CollectionCheck {
 public:
  using Key = typename Kind::Key;
  using All = const BgpParseExtCommRuleSet<Kind>& (Collections::*)() const noexcept;
  using Change = bool (Collections::*)(const Key&) const;
  using DelAll = void (Collections::*)() const;
};

// Checks that the five operations change the same collection, and that its notifications carry
// `attribute`.
template <class Kind>
void check(U32 attribute, typename CollectionCheck<Kind>::All all,
           typename CollectionCheck<Kind>::Change add, typename CollectionCheck<Kind>::Change del,
           typename CollectionCheck<Kind>::DelAll delAll,
           typename CollectionCheck<Kind>::Change has) {
  SCOPED_TRACE(attribute);
  const Collections::PtrConst held = bgpParseExtCommRuleCollectionsFactory();
  const Collections& collections = *held;
  CollectionEar ear(collections.notifieeList());
  const auto one = keyAt<typename Kind::Key>(0x10);
  const auto two = keyAt<typename Kind::Key>(0x20);
  EXPECT_FALSE((collections.*del)(one));
  EXPECT_EQ(Heard{}, ear.attributes) << "nothing was there to withdraw";
  EXPECT_TRUE((collections.*add)(one));
  EXPECT_FALSE((collections.*add)(one));
  EXPECT_EQ(Heard{attribute}, ear.attributes) << "announced twice, told once";
  EXPECT_TRUE((collections.*has)(one));
  EXPECT_FALSE((collections.*has)(two));
  EXPECT_EQ((std::vector{one}), (collections.*all)().keys());
  EXPECT_TRUE((collections.*del)(one));
  EXPECT_EQ((Heard{attribute, attribute}), ear.attributes);
  (collections.*add)(one);
  (collections.*add)(two);
  ear.attributes.clear();
  (collections.*delAll)();
  EXPECT_EQ((Heard{attribute, attribute}), ear.attributes) << "one notice a key";
  EXPECT_EQ(0U, (collections.*all)().size());
}

TEST(BgpParseExtCommRuleCollections, EachCollectionIsItsOwn) {
#define CHECK_COLLECTION(Kind, attribute, name)                                        \
  check<BgpParseKind##Kind>(                                                           \
      attribute, &Collections::name##RuleInstance, &Collections::name##RuleInstanceIs, \
      &Collections::name##RuleInstanceDel, &Collections::name##RuleInstanceDelAll,     \
      &Collections::name##RuleInstanceHas)
  CHECK_COLLECTION(Root, 130, extendedCommunityType);
  CHECK_COLLECTION(TransTwoOctetAs, 131, extendedCommSubTypeTransTwoOctetAs);
  CHECK_COLLECTION(TransIpv4Address, 132, extendedCommSubTypeTransIpv4Address);
  CHECK_COLLECTION(TransFourOctetAs, 133, extendedCommSubTypeTransFourOctetAs);
  CHECK_COLLECTION(TransOpaque, 134, extendedCommSubTypeTransOpaque);
  CHECK_COLLECTION(TransGeneric, 135, extendedCommSubTypeTransGeneric);
  CHECK_COLLECTION(TransGenericPart2, 136, extendedCommSubTypeTransGenericPart2);
  CHECK_COLLECTION(TransGenericPart3, 137, extendedCommSubTypeTransGenericPart3);
  CHECK_COLLECTION(NonTransTwoOctetAs, 138, extendedCommSubTypeNonTransTwoOctetAs);
  CHECK_COLLECTION(NonTransIpv4Address, 139, extendedCommSubTypeNonTransIpv4Address);
  CHECK_COLLECTION(NonTransFourOctetAs, 140, extendedCommSubTypeNonTransFourOctetAs);
  CHECK_COLLECTION(NonTransOpaque, 141, extendedCommSubTypeNonTransOpaque);
  CHECK_COLLECTION(Ip6Trans, 142, extendedCommIp6SubTypeTrans);
  CHECK_COLLECTION(Ip6NonTrans, 143, extendedCommIp6SubTypeNonTrans);
#undef CHECK_COLLECTION
}

TEST(BgpParseExtCommRuleKey, IsItsPointer) {
  using Key = BgpParseExtCommSubTypeTransOpaqueRuleKey;
  EXPECT_EQ(nullptr, Key().rule());
  EXPECT_EQ("0x0", valueToStrep(Key()));
  const Key low = keyAt<Key>(0x1000);
  const Key high("0x" + Kiv::String(2 * sizeof(void*), 'f'));
  EXPECT_EQ("0x1000", valueToStrep(low));
  EXPECT_EQ(low, Key(valueToStrep(low)));
  EXPECT_NE(low, high);
  EXPECT_TRUE(low < high) << "addresses have no sign";
  EXPECT_FALSE(high < low);
  EXPECT_EQ(low.hash(), keyAt<Key>(0x1000).hash());
  EXPECT_NE(low.hash(), high.hash());
  for (const char* text : {"", "0x", "1000", "0x1000 ", "rule=0x1000", "0x1000;"}) {
    EXPECT_THROW(Key{Kiv::String(text)}, Kiv::RangeException) << text;
  }
  try {
    Key(Kiv::String("?"));
  } catch (const Kiv::RangeException& error) {
    EXPECT_NE(nullptr, std::strstr(error.what(), "\"rule\"")) << error.what();
  }
}

TEST(BgpParseExtCommControl, IsItsRegistry) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl none;
  const BgpParseExtCommControl control{registry};
  EXPECT_FALSE(none);
  EXPECT_TRUE(control);
  EXPECT_EQ(control, BgpParseExtCommControl{registry});
  EXPECT_NE(control, none);
  EXPECT_NE(control, BgpParseExtCommControl{bgpParseExtCommRuleCollectionsFactory()})
      << "equal content is not enough";
  EXPECT_EQ("0x0", valueToStrep(none));
  EXPECT_EQ(valueToStrep(Kiv::RawPointer{registry.ptr()}), valueToStrep(control));
}

}  // namespace
