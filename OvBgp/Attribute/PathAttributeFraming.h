// The framing of path attributes: flags, type and length before a value.
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

// Writes one path attribute whose length is known beforehand. The constructor writes the header,
// the caller adds exactly attrSize octets of value with the operations of Serialize, and
// serializedString returns the whole attribute.
//
// A type or flags above 0xFF, or a value of more than 0xFFFF octets, stops the process before
// anything is allocated for the value. Additions throw as those of Serialize do. One thread at a
// time.
class OV_EXPORT SerializePathAttribute : public Serialize {
 public:
  // Writes the header. `attrSize` is the number of octets that the value will have.
  SerializePathAttribute(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Discards what was written and writes the header of another attribute into the same storage. The
  // storage grows at once to the size of the whole attribute.
  void clearAndReInit(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Writes a header at the write position. extLen is added to the flags if the value is longer than
  // 255 octets. For a shorter value extLen is kept if `attrFlags` has it, and then the length takes
  // two octets.
  void reInitHdr(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags, U32 attrSize);

  // Header and value. Stops the process unless exactly the announced number of octets was added.
  Kiv::String serializedString() const;

 protected:
  // A writer without a header, for subclasses that write it later.
  SerializePathAttribute() = default;

 private:
  U32 headerSize_ = 0;  // octets of the last header: 3 or 4; 0 before the first one
  U32 attrSize_ = 0;    // octets of value that the header announces
};

// Writes one path attribute whose length is known only after the value has been written. The caller
// adds the value first, then patchHdrAndStringify writes the header before it.
//
// The constructor leaves room for the longest header, four octets:
//
//   octets 0..3       room for the header
//   octet  4..end     value
//
// A short header of three octets is written to octets 1 to 3, so that the value never moves.
class OV_EXPORT SerializePathAttributeAutoExtLen : public SerializePathAttribute {
 public:
  // An attribute with an empty value.
  SerializePathAttributeAutoExtLen();

  // Header and value. The length field takes one octet if the value has less than 256 octets, else
  // two. May be called again after more octets were added.
  //
  // The length is written modulo 65,536, so the caller must keep the value below that. Requires:
  // `attrFlags` does not have extLen; the longer header would overwrite the first octet of a short
  // value.
  Kiv::String patchHdrAndStringify(BgpPathAttrType attrType, BgpPathAttrFlag attrFlags);

  // The value without a header.
  Kiv::String serializeAttributeValue() const;

 private:
  static constexpr U32 valueStart = 4;  // after the longest header
};

// Writes one TLV of the Prefix-SID attribute (RFC 8669 section 3). The constructor writes type and
// length, the caller adds the value. Nothing checks that the value has the announced length.
class OV_EXPORT SerializedBgpPrefixSidAttribute : public Serialize {
 public:
  // Writes the TLV's type octet and, big-endian, the number of octets that its value will have.
  SerializedBgpPrefixSidAttribute(PrefixSidTlvType tlvType, U16 tlvLength);

  // The octets from a given position on, as the base has it.
  using Serialize::serializedString;
  // The whole TLV.
  Kiv::String serializedString() const { return serializedString(0); }
};

}  // namespace Routing::Bgp

#endif
