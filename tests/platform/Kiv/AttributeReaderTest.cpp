#include "Kiv/AttributeReader.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Reads `text` as a record of an octet, a boolean and a word. Returns the three values, or the
// message of the exception.
std::string readRecord(const std::string& text) {
  const char* it = text.data();
  U8 octet = 0;
  bool flag = false;
  U64 word = 0;
  try {
    Kiv::AttributeReader reader(it, it + text.size());
    reader.attribute("octet", &octet);
    reader.expect(";");
    reader.attribute("flag", &flag);
    reader.expect(";");
    reader.attribute("word", &word);
    reader.expectEnd();
  } catch (const Kiv::RangeException& error) {
    return error.what();
  }
  return Kiv::valueToStrep(octet) + " " + Kiv::valueToStrep(flag) + " " + Kiv::valueToStrep(word);
}

TEST(AttributeReader, ReadsAttributesOrSaysWhichIsWrong) {
  static constexpr struct {
    const char* text;
    const char* result;
  } rows[] = {
      {"octet=255;flag=True;word=18446744073709551615", "255 True 18446744073709551615"},
      {"octet=007;flag=False;word=0", "7 False 0"},
      {"octet=256;flag=True;word=0", "attribute \"octet\": number > 255 not allowed"},
      {"octet=99999999999999999999999;flag=True;word=0",
       "attribute \"octet\": number > 255 not allowed"},
      {"octet=-1;flag=True;word=0", "attribute \"octet\": unsigned number expected"},
      {"octet=+1;flag=True;word=0", "attribute \"octet\": unsigned number expected"},
      {"octet= 1;flag=True;word=0", "attribute \"octet\": unsigned number expected"},
      {"octet=", "attribute \"octet\": unsigned number expected"},
      {"octet=0x1;flag=True;word=0", "\";\" expected"},
      {"octet=1;flag=Truest;word=0", "attribute \"flag\": True or False expected"},
      {"octet=1;flag=1;word=0", "attribute \"flag\": True or False expected"},
      {"octet=1;flag=True;word=18446744073709551616",
       "attribute \"word\": number > 18446744073709551615 not allowed"},
      {"octet=1;flag=True;word=1;", "end of text expected"},
      {"octet=1;flag=True", "\";\" expected"},
      {"octe", "\"octet\" expected"},
      {"", "\"octet\" expected"},
  };
  for (const auto& [text, result] : rows) EXPECT_EQ(readRecord(text), result) << text;
}

}  // namespace
