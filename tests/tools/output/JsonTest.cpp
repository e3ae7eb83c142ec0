// JSON must be valid whatever values are written.
#include "tools/bgp-communities/output/Json.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <limits>

namespace CommTool {
namespace {

std::string arrayOf(const auto& write) {
  Json json;
  json.arrayBegin();
  write(json);
  json.arrayEnd();
  return std::string(json.view());
}

TEST(Json, TextStaysIfItIsUtf8) {
  struct Row {
    std::string octets;
    const char* json;
  };
  for (const Row& row : {
           Row{"", R"([""])"},
           Row{"a\"\\\n\x01", R"(["a\"\\\n\u0001"])"},
           Row{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
               "[\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"]"},
           Row{"\xE4", "[\"\xC3\xA4\"]"},  // an octet of no UTF-8
           Row{"\xC3\xA4\xFF", "[\"\xC3\x83\xC2\xA4\xC3\xBF\"]"},
           Row{"\xC0\x80", "[\"\xC3\x80\xC2\x80\"]"},              // longer than need be
           Row{"\xED\xA0\x80", "[\"\xC3\xAD\xC2\xA0\xC2\x80\"]"},  // a surrogate
           Row{"\xE2\x82", "[\"\xC3\xA2\xC2\x82\"]"},              // cut short
           Row{"\xF4\x90\x80\x80", "[\"\xC3\xB4\xC2\x90\xC2\x80\xC2\x80\"]"},
       }) {
    EXPECT_EQ(arrayOf([&](Json& json) { json.text(row.octets); }), row.json);
  }
}

TEST(Json, EveryOctetAndPairIsValid) {
  for (unsigned pair = 0; pair < 0x10000; ++pair) {
    const std::string octets{static_cast<char>(pair >> 8), static_cast<char>(pair)};
    const std::string text = arrayOf([&](Json& json) { json.text(octets); });
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag>(text.c_str());
    ASSERT_FALSE(document.HasParseError()) << pair;
  }
}

TEST(Json, NumbersThatReadersMayLoseAreNull) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(arrayOf([](Json& json) {
              json.number((U64{1} << 53) - 1);
              json.number(U64{1} << 53);
              json.number(~U64{0});
              json.number(1.5);
              json.number(Limits::infinity());
              json.number(-Limits::infinity());
              json.number(Limits::quiet_NaN());
            }),
            "[9007199254740991,null,null,1.5,null,null,null]");
}

TEST(Json, StartsAnewWhenCleared) {
  Json json;
  json.arrayBegin();
  json.hex(Octets());
  json.clear();
  json.objectBegin();
  const U8 octets[] = {0, 0xAB};
  json.key("a");
  json.hex(octets);
  json.key("b");
  json.written("[1]", rapidjson::kArrayType);
  json.objectEnd();
  EXPECT_EQ(json.view(), R"({"a":"00ab","b":[1]})");
}

}  // namespace
}  // namespace CommTool
