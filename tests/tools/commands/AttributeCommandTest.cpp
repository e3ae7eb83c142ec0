// Tests of `attribute` through the whole command: hexadecimal in, reports and exit status out.
#include "tools/bgp-communities/commands/AttributeCommand.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "tests/tools/MrtBytes.h"
#include "tests/tools/commands/Outcome.h"
#include "tools/bgp-communities/output/Json.h"

namespace CommTool {
namespace {

Outcome runAttributes(const std::vector<std::string>& octets, bool json = false) {
  return outcomeOf([&](int out, std::ostream& e) { return runAttribute({octets, json}, out, e); });
}

std::string hexOf(const Bytes& octets) {
  std::string text;
  appendHex(text, octets);
  return text;
}

rapidjson::Document objectOf(const Bytes& octets) {
  const Outcome outcome = runAttributes({hexOf(octets)}, true);
  EXPECT_EQ(outcome.status, ExitStatus::fine) << outcome.errors;
  rapidjson::Document object;
  object.Parse<rapidjson::kParseValidateEncodingFlag>(outcome.out.c_str());
  EXPECT_FALSE(object.HasParseError()) << outcome.out;
  return object;
}

TEST(AttributeCommand, GivesEveryFormOfEveryKind) {
  struct Row {
    U8 type;
    Bytes value;
    const char* name;
    const char* kind;
    const char* form;
    const char* text;
  };
  const Bytes extended = Bytes().u32(0x0002FDE8).u32(100).u32(0x030B4000).u32(7);
  for (const Row& row :
       {Row{8, Bytes().u32(0xFFFFFF01).u32(0x10002), "Community", "standard", "list",
            "1:2 no-export"},
        Row{8, Bytes().u32(0xFFFFFF01), "Community", "standard", "policy", "65535:65281"},
        Row{32, Bytes().u32(4200000000).u32(1).u32(2), "Large Community", "large", "asdot",
            "64086.59904:1:2"},
        Row{16, extended, "Extended Community", "extended", "classification",
            "RT:65000:100 Color:CO(01):7"},
        Row{16, extended, "Extended Community", "extended", "ui",
            "Route-Target-AS:65000:100 Color:CO(01):7"},
        Row{16, extended, "Extended Community", "extended", "policy", "65000:100 Color:CO(01):7"},
        Row{25, Bytes{0, 2, 0x20, 1}.fill(14, 0).u16(9), "IPv6 Address Specific Extended Community",
            "ipv6_extended", "ui", "0002-IP6:2001:::9"}}) {
    const rapidjson::Document object = objectOf(attribute(row.type, row.value));
    EXPECT_STREQ(object["name"].GetString(), row.name);
    EXPECT_STREQ(object["kind"].GetString(), row.kind);
    EXPECT_STREQ(object["value"].GetString(), hexOf(row.value).c_str());
    EXPECT_TRUE(object["verified"].GetBool());
    EXPECT_STREQ(object["text"][row.form].GetString(), row.text) << row.form;
  }
}

TEST(AttributeCommand, ReadsARunHoweverItIsWritten) {
  for (const std::vector<std::string>& octets : {std::vector<std::string>{"400101004002020000"},
                                                 {"40010100", "4002020000"},
                                                 {"0x40010100 0x40:02:02:00:00"},
                                                 {"40 01 01 00\n40 02", "0X02", "00 00"}}) {
    const Outcome outcome = runAttributes(octets);
    EXPECT_EQ(outcome.status, ExitStatus::fine) << outcome.errors;
    EXPECT_NE(outcome.out.find("Origin (type 1)\n"), std::string::npos) << octets[0];
    EXPECT_NE(outcome.out.find("AS Path (type 2)\n"), std::string::npos) << octets[0];
  }
}

TEST(AttributeCommand, NamesTypesAndFlags) {
  const rapidjson::Document object = objectOf({0xF0, 0xFF, 0, 1, 0xAB});
  EXPECT_STREQ(object["name"].GetString(), "Reserved for Development");
  EXPECT_EQ(object["length"].GetUint(), 1U);
  EXPECT_EQ(object["flags"].Size(), 4U);
  EXPECT_STREQ(object["flags"][3].GetString(), "extended-length");
  EXPECT_STREQ(objectOf({0, 11, 0})["name"].GetString(), "Invalid attribute");
}

// The largest number of communities that fits into an attribute.
TEST(AttributeCommand, Takes16383Values) {
  Bytes octets = Bytes{0xD0, 8}.u16(std::size_t{4} * 16383);
  for (U32 i = 0; i < 16383; ++i) octets.u32(i);
  EXPECT_EQ(objectOf(octets)["members"].Size(), 16383U);
}

TEST(AttributeCommand, PrintsNothingOfMalformedRuns) {
  const std::string good = hexOf(attribute(8, Bytes().u32(1)));
  struct Row {
    Bytes octets;
    const char* what;
  };
  for (const Row& row :
       {Row{{0xC0}, "path attribute: 1 octets wanted, 0 left"},
        Row{{0xC0, 8, 4, 0, 1, 0}, "path attribute: 4 octets wanted, 3 left"},
        Row{{0xD0, 8, 4}, "path attribute: 2 octets wanted, 1 left"},
        Row{attribute(32, {1, 2}), "LARGE_COMMUNITY attribute of 2 octets: not a"},
        Row{attribute(16, {}), "EXTENDED COMMUNITIES attribute of 0 octets"},
        Row{{0x80, 25, 0}, "attribute without the flags optional and transitive"}}) {
    const Outcome outcome = runAttributes({good, hexOf(row.octets)});
    EXPECT_EQ(outcome.status, ExitStatus::damaged) << row.what;
    EXPECT_EQ(outcome.out, "") << row.what;
    EXPECT_NE(outcome.errors.find("attribute at octet 7: "), std::string::npos) << outcome.errors;
    EXPECT_NE(outcome.errors.find(row.what), std::string::npos) << outcome.errors;
  }
}

TEST(AttributeCommand, TheFirstOfARepeatCounts) {
  const Outcome outcome = runAttributes({"c0080400010002c0080400030004"});
  EXPECT_EQ(outcome.status, ExitStatus::damaged);
  EXPECT_NE(outcome.out.find("1:2"), std::string::npos);
  EXPECT_EQ(outcome.out.find("3:4"), std::string::npos);
  EXPECT_EQ(outcome.errors, "bgp-communities: attribute at octet 7: path attribute 8 repeated\n");
}

TEST(AttributeCommand, RefusesWhatIsNotHexadecimal) {
  for (const char* bad : {"", " ", "c", "c00", "0x", "zz", "c0 0 8", "c0-08", "c0,08"}) {
    const Outcome outcome = runAttributes({bad});
    EXPECT_EQ(outcome.status, ExitStatus::wrongUsage) << bad;
    EXPECT_EQ(outcome.out, "") << bad;
  }
}

}  // namespace
}  // namespace CommTool
