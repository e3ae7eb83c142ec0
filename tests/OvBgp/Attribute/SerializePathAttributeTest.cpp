#include <gtest/gtest.h>

#include <string>

#include "OvBgp/OvBgpSerialize.h"

namespace {

using Routing::Bgp::BgpPathAttrFlag;
using Routing::Bgp::BgpPathAttrType;
using Routing::Bgp::PrefixSidTlvType;
using Routing::Bgp::SerializedBgpPrefixSidAttribute;
using Routing::Bgp::SerializePathAttribute;
using Routing::Bgp::SerializePathAttributeAutoExtLen;

std::string octets(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values) text += static_cast<char>(value);
  return text;
}

void addValue(Routing::Bgp::Serialize& to, U32 size) {
  for (U32 i = 0; i < size; ++i) to.addU8(static_cast<U8>(i));
}

std::string value(U32 size) {
  std::string text;
  for (U32 i = 0; i < size; ++i) text += static_cast<char>(i);
  return text;
}

constexpr auto community = BgpPathAttrType::community;
constexpr auto optionalTransitive = BgpPathAttrFlag::optionalTransitive;

struct HeaderCase {
  int flags;
  U32 size;
  std::initializer_list<int> header;
};
const HeaderCase headerCases[] = {
    {0xC0, 0, {0xC0, 8, 0}},
    {0xC0, 4, {0xC0, 8, 4}},
    {0xC0, 255, {0xC0, 8, 255}},
    {0xC0, 256, {0xD0, 8, 1, 0}},
    {0xD0, 10, {0xD0, 8, 0, 10}},
    {0xD0, 300, {0xD0, 8, 1, 44}},
    {0x00, 1, {0x00, 8, 1}},
    {0x10, 0, {0x10, 8, 0, 0}},
    {0xFF, 4093, {0xFF, 8, 0x0F, 0xFD}},
    {0xE0, 0xFFFF, {0xF0, 8, 0xFF, 0xFF}},
};

TEST(SerializePathAttribute, FramesTheAnnouncedValue) {
  for (const HeaderCase& c : headerCases) {
    SerializePathAttribute attribute(community, static_cast<BgpPathAttrFlag>(c.flags), c.size);
    addValue(attribute, c.size);
    EXPECT_EQ(attribute.serializedString(), octets(c.header) + value(c.size));
  }
}

TEST(SerializePathAttribute, MakesRoomOnceAndKeepsIt) {
  SerializePathAttribute inPlace(community, optionalTransitive, 4092);
  EXPECT_EQ(inPlace.capacity(), 4096U);
  SerializePathAttribute attribute(community, optionalTransitive, 4093);
  EXPECT_EQ(attribute.capacity(), 4097U);
  attribute.clearAndReInit(BgpPathAttrType::largeCommunity, optionalTransitive, 40000);
  EXPECT_EQ(attribute.capacity(), 40004U);
  addValue(attribute, 40000);
  EXPECT_EQ(attribute.capacity(), 40004U);
  EXPECT_EQ(attribute.serializedString().size(), 40004U);

  attribute.clearAndReInit(BgpPathAttrType::reservedForDevelopment, optionalTransitive, 2);
  attribute.addU16hton(0x4142);
  EXPECT_EQ(attribute.serializedString(), octets({0xC0, 255, 2}) + "AB");
}

TEST(SerializePathAttributeAutoExtLen, FillsInTheShortestHeader) {
  for (const U32 size : {0U, 1U, 10U, 255U, 256U, 300U, 4092U, 4093U, 65535U}) {
    SerializePathAttributeAutoExtLen attribute;
    addValue(attribute, size);
    const std::string header =
        size < 256 ? octets({0xC0, 16, static_cast<int>(size)})
                   : octets({0xD0, 16, static_cast<int>(size >> 8), static_cast<int>(size & 0xff)});
    // Twice, because writing the header must leave the writer as it was.
    for (int again = 0; again < 2; ++again) {
      EXPECT_EQ(attribute.patchHdrAndStringify(BgpPathAttrType::extCommunity, optionalTransitive),
                header + value(size));
      EXPECT_EQ(attribute.serializeAttributeValue(), value(size));
    }
    attribute.addU8(0x41);
    EXPECT_EQ(attribute.serializeAttributeValue(), value(size) + "A");
  }
}

TEST(SerializePathAttributeAutoExtLen, TakesTheLengthModulo65536) {
  SerializePathAttributeAutoExtLen attribute;
  addValue(attribute, 65536 + 3);
  EXPECT_EQ(attribute.patchHdrAndStringify(community, optionalTransitive),
            octets({0xC0, 8, 3}) + value(65536 + 3));
}

TEST(SerializedBgpPrefixSidAttribute, StartsWithTypeAndLength) {
  SerializedBgpPrefixSidAttribute tlv(PrefixSidTlvType::originatorSrgbTlv, 0x0102);
  tlv.addU8(0x41);
  EXPECT_EQ(tlv.serializedString(), octets({3, 1, 2, 0x41}));
  EXPECT_EQ(tlv.serializedString(3), "A");
  EXPECT_EQ(tlv.capacity(), 4096U);
}

TEST(SerializePathAttributeDeathTest, AbortsOnWhatTheHeaderCannotHold) {
  const auto tooLarge = [](const char* name) {
    return "\"" + std::string(name) +
           "\" failed in OvBgp/OvBgpSerialize:[0-9]+, void Routing::Bgp::"
           "SerializePathAttribute::reInitHdr\\(";
  };
  const auto unknown = BgpPathAttrType::attrTypeUnknown;
  EXPECT_DEATH(SerializePathAttribute(unknown, static_cast<BgpPathAttrFlag>(0x100), 65536),
               tooLarge("attrType <= 0xFF"));
  EXPECT_DEATH(SerializePathAttribute(community, static_cast<BgpPathAttrFlag>(0x100), 65536),
               tooLarge("attrFlags <= 0xFF"));
  for (const U32 size : {65536U, 0xFFFFFFFCU, 0xFFFFFFFFU}) {
    EXPECT_DEATH(SerializePathAttribute(community, optionalTransitive, size),
                 tooLarge("attrSize <= 0xFFFF"));
  }
  SerializePathAttributeAutoExtLen deferred;
  EXPECT_DEATH(deferred.patchHdrAndStringify(unknown, optionalTransitive),
               tooLarge("attrType <= 0xFF"));
}

TEST(SerializePathAttributeDeathTest, AbortsUnlessTheAnnouncedSizeWasWritten) {
  for (const U32 announced : {0U, 9U, 11U, 300U}) {
    SerializePathAttribute attribute(community, optionalTransitive, announced);
    addValue(attribute, 10);
    EXPECT_DEATH(attribute.serializedString(),
                 "\"serialized\\.size\\(\\) == attrSize_ \\+ headerSize_\" failed in "
                 "OvBgp/OvBgpSerialize:");
  }
}

}  // namespace
