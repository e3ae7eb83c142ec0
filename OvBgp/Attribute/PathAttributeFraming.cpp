#include "OvBgp/Attribute/PathAttributeFraming.h"

#include "Kiv/Assert.h"

namespace Routing::Bgp {
namespace {

constexpr U32 attrSizeMax = 0xFFFF;  // the length field has two octets at most
constexpr U32 headerSizeMax = 4;     // flags, type, length of two octets

}  // namespace

SerializePathAttribute::SerializePathAttribute(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags,
                                               U32 attrSize) {
  clearAndReInit(attrType, attrFlags, attrSize);
}

void SerializePathAttribute::clearAndReInit(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags,
                                            U32 attrSize) {
  writePositionIs(0);
  // A size above the limit allocates nothing, because reInitHdr stops the process on it.
  if (attrSize <= attrSizeMax) growBuffer(attrSize + headerSizeMax);
  attrSize_ = attrSize;
  reInitHdr(attrType, attrFlags, attrSize);
}

// extLen decides the width of the length field (RFC 4271 section 4.3), so it is settled before the
// first octet is written. headerSize_ is kept for the check in serializedString().
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
  // The check precedes the copy, although the text of the assertion, a given one, names the copy.
  KIV_ASSERT(size() == attrSize_ + headerSize_, "serialized.size() == attrSize_ + headerSize_",
             "OvBgp/OvBgpSerialize");
  return Serialize::serializedString(0);
}

// The octets are overwritten by the header, except octet 0 before a short one, which is never read.
SerializePathAttributeAutoExtLen::SerializePathAttributeAutoExtLen() {
  for (U32 i = 0; i < valueStart; ++i) addU8(0);
}

// Moves the write position back to where the header starts, octet 0 or 1, and restores it after, so
// that the caller may add more.
Kiv::String SerializePathAttributeAutoExtLen::patchHdrAndStringify(BgpPathAttrType attrType,
                                                                   BgpPathAttrFlag attrFlags) {
  const U32 end = size();
  // Modulo 65,536, so that reInitHdr does not stop the process on a value that is too long.
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
