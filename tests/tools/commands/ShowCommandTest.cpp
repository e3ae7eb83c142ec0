// Tests of `show` through the whole command.
#include "tools/bgp-communities/commands/ShowCommand.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <sstream>

#include "tests/Texts.h"
#include "tests/tools/commands/Outcome.h"

namespace CommTool {
namespace {

Outcome show(const ShowOptions& options) {
  return outcomeOf([&](int out, std::ostream& e) { return runShow(options, out, e); });
}

std::string lineOf(const std::string& name, const std::string& value) {
  return "\n  " + name + std::string(22 - name.size(), ' ') + value + "\n";
}

TEST(ShowCommand, NamesClassAndTexts) {
  struct Row {
    const char* value;
    const char* className;
    const char* classification;
    const char* ui;
  };
  for (const Row& row :
       {Row{"0x0002fde800000064", "ExtCommRouteTargetAs", "RT:65000:100",
            "Route-Target-AS:65000:100"},
        Row{"0x01030a0000010005", "ExtCommRouteOriginIpv4Address", "SoO:10.0.0.1:5",
            "Route-Origin-IP:10.0.0.1:5"},
        Row{"0x030b800000000064", "ExtCommColor", "Color:CO(10):100", "Color:CO(10):100"},
        Row{"0x030c000000000063", "ExtCommTunnelEncap", "TunnelEncap:tunnelTypeUnknown-99",
            "TunnelEncap:tunnelTypeUnknown-99"},
        Row{"0x000220010db8000000000000000000000001000A", "ExtCommIp6Subtyped", "2001:db8::1:10",
            "0002-IP6:2001:db8::1:10"}}) {
    const Outcome shown = show({{row.value}});
    EXPECT_EQ(ExitStatus::fine, shown.status);
    for (const std::string& line :
         {lineOf("class", row.className), lineOf("text classification", row.classification),
          lineOf("text ui", row.ui), lineOf("transitive", "yes")}) {
      EXPECT_NE(std::string::npos, shown.out.find(line)) << line << shown.out;
    }
  }
}

TEST(ShowCommand, ReadsEveryKindAndHonoursFlags) {
  ShowOptions options{{"65535:65281", "0xFFFF0000", "4200000000:7:8", "0x0202fa56ea000007"}};
  options.asdot = true;
  const Outcome shown = show(options);
  for (const std::string& line : {lineOf("well_known", "no-export"), lineOf("well_known", "GSHUT"),
                                  lineOf("text policy", "64086.59904:7:8"),
                                  lineOf("text ui", "Route-Target-AS4:64086.59904:7")}) {
    EXPECT_NE(std::string::npos, shown.out.find(line)) << line << shown.out;
  }
}

// JSON must be valid for every value. Here a text contains the octets of the type, which are not
// valid UTF-8.
TEST(ShowCommand, JsonIsAnObjectALine) {
  ShowOptions options{{"0x4300000000000007", "1:2", "0xff8020010db8000000000000000000000001000a"}};
  options.json = true;
  std::istringstream lines(show(options).out);
  std::vector<std::string> kinds;
  for (std::string line; std::getline(lines, line);) {
    rapidjson::Document object;
    object.Parse<rapidjson::kParseValidateEncodingFlag>(line.c_str());
    ASSERT_FALSE(object.HasParseError()) << line;
    kinds.emplace_back(object["kind"].GetString());
    if (kinds.back() == "extended") {
      EXPECT_STREQ("Origin-Validation-State:unknown", object["text"]["ui"].GetString());
      EXPECT_FALSE(object["transitive"].GetBool());
    }
    if (kinds.back() == "standard") {
      EXPECT_TRUE(object["well_known"].IsNull());
    }
    if (kinds.back() == "ipv6_extended") {
      EXPECT_TRUE(object["type_name"].IsNull());
      EXPECT_EQ(255U, object["type"].GetUint());
      EXPECT_STREQ("type=\u00ff;subtype=\u0080;addr=2001:db8::1;localAdmin=10",
                   object["text"]["value"].GetString());
    }
  }
  EXPECT_EQ((std::vector<std::string>{"extended", "standard", "ipv6_extended"}), kinds);
}

TEST(ShowCommand, JsonHasTheDecodedFields) {
  struct Row {
    const char* value;
    const char* fields;
  };
  for (const Row& row :
       {Row{"0x0002fde800000064", R"("as_number":65000,"local_administrator":100,)"},
        Row{"0x0202fa56ea000007", R"("as_number":4200000000,"local_administrator":7,)"},
        Row{"0x01020a0000010005", R"("address":"10.0.0.1","local_administrator":5,)"},
        Row{"0x030b800000000064", R"("color":100,"color_only":2,)"},
        Row{"0x40040001447a0000", R"("as_number":1,"bandwidth":1000.0,)"},
        Row{"0x400400017f800000", R"("as_number":1,"bandwidth":null,)"},
        Row{"0x030c000000000008", R"("tunnel_type":8,"tunnel_type_name":"tunnelTypeVxlan",)"},
        Row{"0x030c000000000063", R"("tunnel_type":99,"tunnel_type_name":null,)"},
        Row{"0x4300000000000002", R"("validation_state":"invalid",)"},
        Row{"0x000220010db8000000000000000000000001000A",
            R"("address":"2001:db8::1","local_administrator":10,)"},
        Row{"0x06ff000000000001", R"("transitive":true,"text":)"}}) {
    ShowOptions options{{row.value}};
    options.json = true;
    const std::string out = show(options).out;
    EXPECT_NE(out.find(row.fields), std::string::npos) << out;
  }
}

// The names of policies and of the registry.
TEST(ShowCommand, ReadsNamesInAnyCase) {
  struct Row {
    std::vector<std::string> names;
    const char* hex;
  };
  for (const Row& row :
       {Row{{"GSHUT", "gshut", "GRACEFUL_SHUTDOWN", "graceful-shutdown"}, "ffff0000"},
        Row{{"no-export", "NO_EXPORT", "No_Export"}, "ffffff01"},
        Row{{"NO_ADVERTISE", "no-advertise"}, "ffffff02"},
        Row{{"local-as", "LOCAL_AS", "NO_EXPORT_SUBCONFED", "no-export-subconfed"}, "ffffff03"},
        Row{{"llgr-stale", "LLGR_STALE"}, "ffff0006"}, Row{{"no-llgr", "NO_LLGR"}, "ffff0007"},
        Row{{"internet", "Internet"}, "00000000"}}) {
    for (const std::string& name : row.names) {
      EXPECT_EQ(show({{name}}).out.find(std::string("0x") + row.hex + "\n"), 0U) << name;
    }
  }
}

TEST(ShowCommand, TerminalsGetNoControlOctets) {
  const Outcome shown = show({{"0x001b20010db8000000000000000000000001000a"}});
  EXPECT_NE(std::string::npos, shown.out.find("type=\\x00;subtype=\\x1b;")) << shown.out;
}

TEST(ShowCommand, RefusesWhatIsNoCommunityAndShowsNothing) {
  for (const std::string& bad :
       Texts::split("|x|no export|noexport|1|1:|:1|1:65536|65536:1|-1:1|1: 1|1:1:|1:2:3:4|"
                    "4294967296:1:1|0x|0x1|0x000000001|0xzz00000000000000|0x+00000000000000f|"
                    "0x00022001-db8000000000000000000000001000a|00000001")) {
    const Outcome shown = show({{"1:1", bad}});
    EXPECT_EQ(ExitStatus::wrongUsage, shown.status) << bad;
    EXPECT_EQ("", shown.out) << bad;
    EXPECT_NE(std::string::npos, shown.errors.find("expected AS:local")) << bad;
  }
}

}  // namespace
}  // namespace CommTool
