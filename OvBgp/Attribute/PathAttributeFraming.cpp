#include "OvBgp/Attribute/PathAttributeFraming.h"

#include "Kiv/Assert.h"

namespace Routing::Bgp {
namespace {

constexpr U32 attrSizeMax = 0xFFFF;
constexpr U32 headerSizeMax = 4;

}  // namespace

SerializePathAttribute::SerializePathAttribute(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags,
                                               U32 attrSize) {
  clearAndReInit(attrType, attrFlags, attrSize);
}

void SerializePathAttribute::clearAndReInit(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags,
                                            U32 attrSize) {
  writePositionIs(0);
  // A size that reInitHdr is about to refuse is worth no memory.
  if (attrSize <= attrSizeMax) growBuffer(attrSize + headerSizeMax);
  attrSize_ = attrSize;
  reInitHdr(attrType, attrFlags, attrSize);
}

void SerializePathAttribute::reInitHdr(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags,
                                       U32 attrSize) {
  const U32 type = static_cast<U32>(attrType);
  U32 flags = static_cast<U32>(attrFlags);
  KIV_ASSERT(type <= 0xFF, "attrType <= 0xFF", "OvBgp/OvBgpSerialize");
  KIV_ASSERT(flags <= 0xFF, "attrFlags <= 0xFF", "OvBgp/OvBgpSerialize");
  KIV_ASSERT(attrSize <= attrSizeMax, "attrSize <= 0xFFFF", "OvBgp/OvBgpSerialize");

  constexpr U32 extLen = static_cast<U32>(BgpPathAttrFlag::extLen);
  if (attrSize > 255) flags |= extLen;
  addU8(static_cast<U8>(flags));
  addU8(static_cast<U8>(type));
  if ((flags & extLen) != 0) {
    addU16hton(static_cast<U16>(attrSize));
    headerSize_ = 4;
  } else {
    addU8(static_cast<U8>(attrSize));
    headerSize_ = 3;
  }
}

Kiv::String SerializePathAttribute::serializedString() const {
  // Checked before it is copied out; the text speaks of the copy.
  KIV_ASSERT(size() == attrSize_ + headerSize_, "serialized.size() == attrSize_ + headerSize_",
             "OvBgp/OvBgpSerialize");
  return Serialize::serializedString(0);
}

SerializePathAttributeAutoExtLen::SerializePathAttributeAutoExtLen() {
  for (U32 i = 0; i < valueStart; ++i) addU8(0);
}

Kiv::String SerializePathAttributeAutoExtLen::patchHdrAndStringify(BgpPathAttrType attrType,
                                                                   BgpPathAttrFlag attrFlags) {
  const U32 end = size();
  const U32 length = (end - valueStart) & attrSizeMax;
  const U32 start = length < 256 ? 1 : 0;
  writePositionIs(start);
  reInitHdr(attrType, attrFlags, length);
  writePositionIs(end);
  return Serialize::serializedString(start);
}

Kiv::String SerializePathAttributeAutoExtLen::serializeAttributeValue() const {
  return Serialize::serializedString(valueStart);
}

SerializedBgpPrefixSidAttribute::SerializedBgpPrefixSidAttribute(PrefixSidTlvType tlvType,
                                                                 U16 tlvLength) {
  addU8(static_cast<U8>(tlvType));
  addU16hton(tlvLength);
}

}  // namespace Routing::Bgp
