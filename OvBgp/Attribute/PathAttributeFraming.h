// The framing of path attributes: flags, type and length in front of a value.
//
//   offset  size    field
//   0       1       flags (BgpPathAttrFlag)
//   1       1       type (BgpPathAttrType)
//   2       1 or 2  length of the value; 2, big-endian, when flags has extLen
//   3 or 4  length  value
//
// RFC 4271, section 4.3.
#ifndef OVBGP_ATTRIBUTE_PATHATTRIBUTEFRAMING_H
#define OVBGP_ATTRIBUTE_PATHATTRIBUTEFRAMING_H

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Attribute/PathAttributeEnums.h"
#include "Routing/Bgp/Serialize.h"

namespace Routing::Bgp {

// Writes one path attribute whose length is known beforehand: the constructor
// writes the header, the caller adds exactly attrSize octets of value with the
// writer's operations, and serializedString hands out the whole.
//
// A type or flags above 0xFF or a value above 0xFFFF octets aborts, before
// anything is allocated for it.  One thread at a time.
class OV_EXPORT SerializePathAttribute : public Serialize {
 public:
  SerializePathAttribute(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Starts another attribute in the same storage, made large enough at once.
  void clearAndReInit(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Writes a header at the write position.  A value longer than 255 octets gets
  // extLen; a shorter one keeps it when `attrFlags` has it.
  void reInitHdr(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Header and value.  Aborts unless the announced size was written.
  Kiv::String serializedString() const;

 protected:
  // No header yet.
  SerializePathAttribute() = default;

 private:
  U32 headerSize_ = 0;  // octets of the header written: 0, then 3 or 4
  U32 attrSize_ = 0;    // octets of value that the header announces
};

// Writes one path attribute whose length shows only when it is written: the
// caller adds the value, then the header is filled in before it.
class OV_EXPORT SerializePathAttributeAutoExtLen : public SerializePathAttribute {
 public:
  SerializePathAttributeAutoExtLen();

  // Header and value, the header as short as the value allows.  The length is
  // written modulo 65536: the caller sees to it that the value is no longer.
  // Requires: `attrFlags` has no extLen, whose longer header would overwrite the
  // first octet of a short value.
  Kiv::String patchHdrAndStringify(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags);

  // The value alone.
  Kiv::String serializeAttributeValue() const;

 private:
  static constexpr U32 valueStart = 4;  // after the largest header
};

// Starts one TLV of the Prefix-SID attribute (RFC 8669, section 3): its type and
// the length that its value will have; the caller adds the value.
class OV_EXPORT SerializedBgpPrefixSidAttribute : public Serialize {
 public:
  SerializedBgpPrefixSidAttribute(PrefixSidTlvType tlvType, U16 tlvLength);

  using Serialize::serializedString;
  Kiv::String serializedString() const { return serializedString(0); }
};

}  // namespace Routing::Bgp

#endif
