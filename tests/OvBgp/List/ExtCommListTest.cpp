// The properties that only lists of eight-octet communities have. ExtCommListContractTest.cpp
// tests the rest.
#include "OvBgp/List/ExtCommList.h"

#include <array>
#include <limits>

#include "Kiv/Exception.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "tests/OvBgp/List/ExtCommListKit.h"

namespace Routing::Bgp {
namespace {

using RouteMap::PosixRegex;
using Serialization = ExtCommList::Serialization;
using Values = std::vector<U64>;

constexpr U64 routeTarget = 0x0002'fde8'0000'0064;
constexpr U64 color = 0x030b'0000'0000'0001;
constexpr U64 unknown = 0x4377'0000'0000'0001;
// Link bandwidths of AS 1 if the name says nothing else. The lower 32 bits are a floating-point
// number, in bytes per second: 1, a half, 2, not a number, or zero.
constexpr U64 bandwidth = 0x4004'0001'3f80'0000;
constexpr U64 bandwidthOfAs0 = 0x4004'0000'3f80'0000;
constexpr U64 bandwidthHalf = 0x4004'0001'3f00'0000;
constexpr U64 bandwidthTwice = 0x4004'0001'4000'0000;
constexpr U64 bandwidthOfAs2 = 0x4004'0002'3f80'0000;
constexpr U64 bandwidthNaN = 0x4004'0001'7fc0'0000;
constexpr U64 bandwidthNone = 0x4004'0001'0000'0000;
constexpr U64 stateValid = 0x4300'0000'0000'0000;
constexpr U64 stateNotFound = 0x4300'0000'0000'0001;
constexpr U64 qos = 0x0401'0000'0000'0001;

// A class that a user of the library might add. Policies match its values by their
// user-interface text, and values with an even number are not valid.
class QosMarking final : public ExtComm {
  KIV_OBJECT(QosMarking)

 public:
  explicit QosMarking(const ExtCommContent& content)
      : ExtComm(extCommClassificationEvpn, content) {}
  bool policyMatchStrepUI() const override { return true; }
  bool isValid() const override { return getContent().value() % 2 == 1; }
};
KIV_OBJECT_DEFINE(QosMarking)

class QosMarkingRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(QosMarkingRule)

 public:
  QosMarkingRule()
      : BgpParseExtendedCommunityTypeRuleBase(BgpParseExtCommControl(),
                                              extCommPktTypeTransQosMarking) {}
  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    return ExtComm::Ptr(new QosMarking(content));
  }
};
KIV_OBJECT_DEFINE(QosMarkingRule)

class ExtCommListTest : public ExtCommListFixture<ExtCommKind> {
 protected:
  ExtCommListTest() {
    parser_->extCommParser()->typeRuleIs(QosMarkingRule::Ptr(new QosMarkingRule));
  }

  ExtComm::PtrConst comm(U64 value) const {
    return ExtComm::dedupContent(values_.ptr(), ExtCommContent(value));
  }
  ExtCommList::Ptr buildOf(const Values& values) const {
    const auto list = extCommListFactory();
    for (const U64 value : values) list->commIs(comm(value));
    return list;
  }
  ExtCommList::PtrConst internOf(const Values& values) const {
    return buildOf(values)->dedup(table_.ptr());
  }
  // The interned list of the same values, made by dedupComms.
  ExtCommList::PtrConst receivedOf(const Values& values) const {
    std::vector<ExtComm::PtrConst> comms;
    for (const U64 value : values) comms.push_back(comm(value));
    return ExtCommList::dedupComms(table_.ptr(), comms);
  }
  static Values valuesIn(const std::vector<ExtComm::PtrConst>& comms) {
    Values values;
    for (const auto& one : comms) values.push_back(one->getContent().value());
    return values;
  }
};

TEST_F(ExtCommListTest, FlagSetsAreTexts) {
  EXPECT_EQ(
      "Value('Routing::Bgp::ExtCommClassificationList::CommVectorAttrs', ** "
      "{'sorted': False, 'hasPrunableValues': True})",
      valueToStrep(ExtCommClassificationList::CommVectorAttrs(U8{2})));
  EXPECT_EQ(
      "Value('Routing::Bgp::ExtCommList::CommVectorAttrs', ** {'sorted': True, "
      "'hasLinkBandwidth': False, 'hasLinkBandwidthWithUnspecifiedAsNumber': True, "
      "'hasOriginValidationState': False, 'hasPolicyMatchStrepUICommunities': True, "
      "'hasPrunableValues': False})",
      valueToStrep(ExtCommList::CommVectorAttrs(U8{0x15})));
  EXPECT_EQ(
      "Value('Routing::Bgp::ExtCommList::Serialization', ** {'all': False, 'transitive': True, "
      "'linkBandwidth': False, 'originAsValidity': True})",
      valueToStrep(Serialization(U8{10})));
  EXPECT_EQ(Serialization(U8{10}), Serialization(valueToStrep(Serialization(U8{10}))));
  EXPECT_THROW(ExtCommClassificationList::CommVectorAttrs(U8{4}), Kiv::RangeException);
  EXPECT_THROW(ExtCommList::CommVectorAttrs(U8{64}), Kiv::RangeException);
  EXPECT_THROW(Serialization(U8{16}), Kiv::RangeException);
}

TEST_F(ExtCommListTest, NotesWhatItsMembersAre) {
  const struct {
    Values values;
    U8 attrs;
    U32 transitive;
  } rows[] = {
      {{}, 0x01, 0},
      {{routeTarget, color}, 0x01, 2},
      {{bandwidth}, 0x03, 0},
      {{bandwidthOfAs0, color}, 0x07, 1},
      {{bandwidth, bandwidthTwice}, 0x23, 0},
      {{bandwidthNone}, 0x23, 0},
      {{stateValid, stateNotFound, unknown}, 0x09, 0},
      {{qos}, 0x11, 1},
      {{qos + 1, stateValid}, 0x39, 1},
  };
  for (const auto& row : rows) {
    for (const bool isReceived : {false, true}) {
      const auto list = isReceived ? receivedOf(row.values) : internOf(row.values);
      EXPECT_EQ(isReceived, list->commVector().isAttached());
      EXPECT_EQ(row.attrs, list->commVectorAttrs().bits()) << *list;
      EXPECT_EQ((row.attrs & 4) != 0, list->hasLinkBandwidthWithUnspecifiedAsNumber());
      EXPECT_EQ(row.transitive, list->totalTransitiveCommunities()) << *list;
    }
  }
}

TEST_F(ExtCommListTest, PartsOfReceivedListsNoteTheirBestBandwidthAndMayBeBuiltOfRepeats) {
  const auto both = receivedOf({bandwidthTwice, bandwidth});
  const auto bandwidths = both->classificationList(extCommClassificationLinkBandwidth);
  EXPECT_TRUE(bandwidths->hasPrunableValues());
  EXPECT_EQ(bandwidths->prune(), internOf({bandwidth, bandwidthTwice})
                                     ->classificationList(extCommClassificationLinkBandwidth)
                                     ->prune());
  EXPECT_EQ(1U, bandwidths->prune().size());
  const auto repeated = linkBandwidthExtCommClassificationListFactory();
  for (int i = 0; i < 2; ++i) repeated->commIs(comm(bandwidth));
  const auto twin = repeated->dedup(table_.ptr());
  const auto list = receivedOf({bandwidth, color});
  EXPECT_EQ(twin, list->classificationList(extCommClassificationLinkBandwidth));
  EXPECT_TRUE(twin->hasPrunableValues());
  EXPECT_FALSE(list->hasPrunableValues());
}

TEST_F(ExtCommListTest, ClassificationsWithoutANameAreGroupedToo) {
  const auto strange = Kiv::staticPtrCast<const ExtComm>(values_->dedup(
      extCommFactory(static_cast<ExtCommClassification>(20), ExtCommContent(unknown + 1))));
  const std::array<ExtComm::PtrConst, 2> comms{strange, comm(color)};
  const auto list = ExtCommList::dedupComms(table_.ptr(), comms);
  EXPECT_EQ(21U, list->classificationListVector().size());
  EXPECT_EQ(list, ExtCommList::dedupComms(table_.ptr(), comms));
  EXPECT_EQ(1U, list->classificationListVector()[20]->comms());
}

TEST_F(ExtCommListTest, OutsideDedupModeOnlyAs0IsNotedAndNeverForgotten) {
  const auto list = buildOf({bandwidthOfAs0, bandwidth, stateValid, qos, color});
  list->createClassificationListVector(false);
  EXPECT_EQ(0x05, list->commVectorAttrs().bits());
  EXPECT_EQ(0U, list->totalTransitiveCommunities());
  EXPECT_TRUE(list->classificationListVector()[7]->hasPrunableValues());
  const auto regrouped = buildOf({qos});
  regrouped->createClassificationListVector(true);
  EXPECT_EQ(0x11, regrouped->commVectorAttrs().bits());
  regrouped->createClassificationListVector(false);
  EXPECT_EQ(0x01, regrouped->commVectorAttrs().bits());
}

TEST_F(ExtCommListTest, PruningKeepsTheBestBandwidthAndWhatIsValid) {
  const struct {
    Values values;
    bool prunable;
    Values kept;
  } rows[] = {
      {{bandwidth}, false, {bandwidth}},
      {{bandwidthNone}, true, {}},
      {{bandwidthNaN}, true, {}},
      {{bandwidthNaN, bandwidthTwice}, true, {bandwidthTwice}},
      {{bandwidthTwice, bandwidthHalf, bandwidth}, true, {bandwidthHalf}},
      {{bandwidthOfAs2, bandwidth}, true, {bandwidth}},
  };
  for (const auto& row : rows) {
    const auto list = internOf(row.values);
    const auto part = list->classificationList(extCommClassificationLinkBandwidth);
    EXPECT_EQ(row.prunable, part->hasPrunableValues()) << *list;
    EXPECT_EQ(row.prunable, list->hasPrunableValues()) << *list;
    EXPECT_EQ(row.kept, valuesIn(part->prune())) << *list;
    EXPECT_EQ(part->comms(), list->comms());
  }
  const auto list = internOf({qos + 1, qos, qos + 2, qos + 3, routeTarget});
  EXPECT_TRUE(list->hasPrunableValues());
  EXPECT_EQ((Values{qos, qos + 2}),
            valuesIn(list->classificationList(extCommClassificationEvpn)->prune()));
  EXPECT_FALSE(list->classificationList(extCommClassificationRouteTarget)->hasPrunableValues());
}

// Of two equal bandwidths, the one that was appended first is the best, although it sorts last.
TEST_F(ExtCommListTest, FirstOfEqualBandwidthsIsTheBest) {
  const auto part = linkBandwidthExtCommClassificationListFactory();
  EXPECT_TRUE(part->prune().empty());
  part->commIs(comm(bandwidthOfAs2));
  part->commIs(comm(bandwidth));
  EXPECT_EQ(comm(bandwidthOfAs2), part->linkBandwidth());
}

TEST_F(ExtCommListTest, PrunableIsWhatTheListItselfFound) {
  const auto part = linkBandwidthExtCommClassificationListFactory();
  part->commIs(comm(bandwidth));
  part->commIs(comm(bandwidth));
  const auto interned = part->dedup(table_.ptr());
  EXPECT_TRUE(interned->hasPrunableValues());
  EXPECT_EQ(1U, interned->comms());
  const auto list = internOf({bandwidth});
  EXPECT_EQ(interned, list->classificationList(extCommClassificationLinkBandwidth));
  EXPECT_FALSE(list->hasPrunableValues());
}

TEST_F(ExtCommListTest, MembersAreFoundByValue) {
  const auto list = internOf({routeTarget, color});
  EXPECT_TRUE(list->comm(color));
  EXPECT_FALSE(list->comm(color + 1));
  EXPECT_EQ(nullptr, list->lookupExtComm(std::numeric_limits<U64>::max()));
  EXPECT_EQ(comm(color), ExtCommVectorLookup(list->commVector(), color));
  EXPECT_EQ(nullptr, ExtCommVectorLookup(list->commVector(), color - 1));
  const auto part = list->classificationList(extCommClassificationColor);
  EXPECT_TRUE(part->comm(color));
  EXPECT_FALSE(part->comm(routeTarget));
  EXPECT_EQ(comm(color), part->lookupExtComm(color));
}

TEST_F(ExtCommListTest, PartsAreOfTheClassThatTheirClassificationAsksFor) {
  const auto list = internOf({routeTarget, color, bandwidth});
  const auto typeAt = [&list](ExtCommClassification classification) {
    return &list->classificationList(classification)->fwkType();
  };
  EXPECT_EQ(&RtExtCommClassificationList::kivType(), typeAt(extCommClassificationRouteTarget));
  EXPECT_EQ(&LinkBandwidthExtCommClassificationList::kivType(),
            typeAt(extCommClassificationLinkBandwidth));
  EXPECT_EQ(&ExtCommClassificationList::kivType(), typeAt(extCommClassificationColor));
  EXPECT_EQ(1U, table_->rtExtCommClassificationListDedupTable()->size());
  EXPECT_EQ(2U, table_->extCommClassificationListDedupTable()->size());

  const auto impostor = extCommClassificationListFactory(extCommClassificationRouteTarget);
  EXPECT_DEATH((void)impostor->dedup(table_.ptr()), "RtExtCommClassificationList");
}

TEST_F(ExtCommListTest, NotifierAndRouteTargetsKeepEachOtherUntilTheLastUserGoes) {
  auto list = internOf({routeTarget});
  auto part = list->classificationList(extCommClassificationRouteTarget);
  const auto& rt = static_cast<const RtExtCommClassificationList&>(*part);
  EXPECT_TRUE(rt.haveLifeTimeNotifier());
  EXPECT_NE(nullptr, rt.getLifeTimeNotifier());
  // The table, the notifier, the list and this test hold one reference each.
  EXPECT_EQ(4U, part->references());
  list = nullptr;
  EXPECT_EQ(1U, table_->rtExtCommClassificationListDedupTable()->size());
  part = nullptr;
  expectNothingInterned();
  EXPECT_EQ(0U, RtExtCommClassificationList::kivType().objects());
}

TEST_F(ExtCommListTest, SerializationSaysWhoGoesOnTheWire) {
  for (int i = 0; i < 8; ++i) {
    const bool nonTransitive = (i & 1) != 0, linkBandwidth = (i & 2) != 0, validity = (i & 4) != 0;
    const U8 expected = nonTransitive ? 1 : static_cast<U8>(2 | (i & 2) << 1 | (i & 4) << 1);
    EXPECT_EQ(expected, ExtCommList::serialization(nonTransitive, linkBandwidth, validity).bits());
  }
  const auto list = internOf({routeTarget, color, unknown, bandwidth, stateValid});
  const struct {
    U8 which;
    Values written;
  } rows[] = {
      {0x00, {}},
      {0x01, {routeTarget, color, bandwidth, stateValid, unknown}},
      {0x02, {routeTarget, color}},
      {0x04, {bandwidth}},
      {0x06, {routeTarget, color, bandwidth}},
      {0x08, {stateValid}},
      {0x0A, {routeTarget, color, stateValid}},
      {0x0E, {routeTarget, color, bandwidth, stateValid}},
      {0x0F, {routeTarget, color, bandwidth, stateValid, unknown}},
  };
  for (const auto& row : rows) {
    const Serialization which(row.which);
    Kiv::String octets;
    if (!row.written.empty()) octets = {'\xC0', 16, static_cast<char>(8 * row.written.size())};
    for (const U64 value : row.written) octets += ExtCommKind::wire(ExtCommContent(value));
    EXPECT_EQ(row.written.size(), list->serializableCommunities(which)) << which;
    EXPECT_EQ(octets, list->serialize(which)) << which;
    EXPECT_TRUE(list->fitsAttribute(which)) << which;
  }
}

TEST_F(ExtCommListTest, UnprunedListsFitOnlyWholly) {
  const struct {
    Values values;
    U8 which;
    bool fits;
  } rows[] = {
      {{bandwidth, bandwidthTwice}, 0x01, true},    {{bandwidth, bandwidthTwice}, 0x02, true},
      {{bandwidth, bandwidthTwice}, 0x06, false},   {{bandwidth, bandwidthTwice}, 0x08, true},
      {{stateValid, stateNotFound}, 0x0A, false},   {{stateValid, stateNotFound}, 0x06, true},
      {{stateValid, bandwidth, color}, 0x0E, true},
  };
  for (const auto& row : rows) {
    const auto list = internOf(row.values);
    const Serialization which(row.which);
    EXPECT_EQ(row.fits, list->fitsAttribute(which)) << *list << which;
    if (row.fits) {
      EXPECT_EQ(list->serializableCommunities(which) == 0, list->serialize(which).empty());
    } else {
      EXPECT_DEATH((void)list->serialize(which),
                   "serialized.size\\(\\) == attrSize_ \\+ headerSize_");
    }
  }
}

TEST_F(ExtCommListTest, MatchesEachOfItsTexts) {
  const Values two{routeTarget, bandwidth};
  const struct {
    Values values;
    const char* expression;
    bool matches;
  } rows[] = {
      {two, "^65000:100 1:", true},
      {two, "^RT:65000:100 lbw 1:", true},
      {two, "65000:100$", false},
      {two, "^1:", false},
      {two, "Link-Bandwidth", false},
      {{}, "^$", true},
      {{}, ".", false},
      {{qos}, "^$", true},
      {{qos, unknown, unknown + 1}, "^  $", true},
      {{qos, routeTarget}, "^65000:100 $", true},
      {{unknown, unknown + 1}, "0x", false},
      {{qos, routeTarget}, "^0401:0x00 0x00 ", true},
      {{qos, qos + 1}, "0x01 0401:0x", true},
  };
  for (const auto& row : rows) {
    const PosixRegex regex(row.expression);
    EXPECT_EQ(row.matches, internOf(row.values)->matchCommunitiesRegex(&regex)) << row.expression;
  }
}

TEST_F(ExtCommListTest, ModesAreTriedOneByOne) {
  const auto list = internOf({routeTarget, qos});
  const auto matchedIn = [&list](const char* expression) {
    const PosixRegex regex(expression);
    Kiv::String modes;
    for (const auto mode : {MatchMode::policy, MatchMode::classification, MatchMode::ui}) {
      modes += matchExtCommList(list.ptr(), mode, &regex) ? '1' : '0';
    }
    return modes;
  };
  EXPECT_EQ("100", matchedIn("^65000:100 "));
  EXPECT_EQ("010", matchedIn("^RT:65000:100 "));
  EXPECT_EQ("001", matchedIn("^"
                             "0401:0x00"));
  const PosixRegex any("");
  EXPECT_DEATH((void)matchExtCommList(internOf({color}).ptr(), MatchMode::ui, &any),
               "!strVal.empty\\(\\) \\|\\| matchMode != MatchMode::ui");
}

TEST_F(ExtCommListTest, LongTextsMatchToTheirEnd) {
  Values values;
  for (U64 i = 0; i < 300; ++i) values.push_back(routeTarget + i);
  const PosixRegex last("65000:398 65000:399$");
  EXPECT_TRUE(internOf(values)->matchCommunitiesRegex(&last));
}

}  // namespace
}  // namespace Routing::Bgp
