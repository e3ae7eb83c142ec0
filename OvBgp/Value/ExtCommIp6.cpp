#include "OvBgp/Value/ExtCommIp6.h"

#include <ostream>
#include <typeinfo>

#include "BgpCommon/Private/StreamedText.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvFmt/DynamicBuffer.h"

// An assertion with the source name that the interface gives to this class.
#define ASSERT_EXT_COMM_IP6(holds, condition) KIV_ASSERT(holds, condition, "OvBgp/ExtCommIp6")

namespace Routing::Bgp {
namespace {

// The slow path of appendPolicyText, for classes of users. It is not inlined, so that the fast path
// needs no stack frame for a string.
[[gnu::noinline]] void appendString(const ExtCommIp6& extComm, OvFmt::DynamicBufferInterface& to,
                                    ExtCommIp6::StrepFormat format) {
  to.append(extComm.toStrepForPolicy(format));
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommIp6)
KIV_OBJECT_DEFINE(ExtCommIp6Subtyped)

ExtCommIp6::Ptr extCommIp6Factory(ExtCommClassification classification,
                                  const ExtCommIp6Content& content) {
  return Dorn::notifyingObject<ExtCommIp6>(classification, content);
}

ExtCommIp6Subtyped::Ptr ExtCommIp6SubtypedIs(ExtCommClassification classification,
                                             const ExtCommIp6Content& content) {
  return Dorn::notifyingObject<ExtCommIp6Subtyped>(classification, content);
}

U32 ExtCommIp6::hash() const { return extCommIp6Content_.hash(); }

U32 ExtCommIp6::probeHash() const { return extCommIp6Content_.probeHash(); }

// Tables compare only objects of their own type, so the cast needs no check.
bool ExtCommIp6::compare(Dorn::DedupHandle::RawPtrConst other) const {
  return extCommIp6Content_ == static_cast<const ExtCommIp6*>(other)->extCommIp6Content_;
}

BgpExtCommIp6PktType ExtCommIp6::pktType() const noexcept {
  const BgpExtCommIp6PktType type{extCommIp6Content_.type()};
  return bgpIsValidEnumMember(type) ? type : extCommIp6PktTypeUnknown;
}

BgpExtCommPktSubtype ExtCommIp6::pktSubtype() const { return BgpExtCommPktSubtype(); }

BgpExtCommPktSubtype ExtCommIp6Subtyped::pktSubtype() const {
  return BgpExtCommPktSubtype(getContent().subtype());
}

// The checks are in both functions, because a failed one names the function that was called.
Kiv::String ExtCommIp6::pktSubtypeTransIpv6AddressAsString() const {
  ASSERT_EXT_COMM_IP6(pktType() == extCommIp6PktTypeTransIpv6Address,
                      "extCommIp6PktTypeTransIpv6Address_ == pktType()");
  ASSERT_EXT_COMM_IP6(!pktSubtype().isUnspecified(), "!pktSubtype().isUnspecified()");
  return extCommSubtypeString<BgpExtCommIp6PktSubtypeTransIpv6Address>(
      extCommIp6Content_.subtype());
}

Kiv::String ExtCommIp6::pktSubtypeNonTransIpv6AddressAsString() const {
  ASSERT_EXT_COMM_IP6(pktType() == extCommIp6PktTypeNonTransIpv6Address,
                      "extCommIp6PktTypeNonTransIpv6Address_ == pktType()");
  ASSERT_EXT_COMM_IP6(!pktSubtype().isUnspecified(), "!pktSubtype().isUnspecified()");
  return extCommSubtypeString<BgpExtCommIp6PktSubtypeNonTransIpv6Address>(
      extCommIp6Content_.subtype());
}

// Two types need no table as in ExtCommSubtypes.h. There is no default label, so that the compiler
// reports a new type that is missing here.
Kiv::String ExtCommIp6::subtypeText() const {
  if (pktSubtype().isUnspecified()) return "unspecified";
  switch (pktType()) {
    case extCommIp6PktTypeTransIpv6Address:
      return pktSubtypeTransIpv6AddressAsString();
    case extCommIp6PktTypeNonTransIpv6Address:
      return pktSubtypeNonTransIpv6AddressAsString();
    case extCommIp6PktTypeUnknown:
      break;
  }
  return "none";
}

// Here and below, output is unformatted, so that the stream's width, fill and base play no part.
void ExtCommIp6::formatSubtype(std::ostream& out) const {
  const Kiv::String text = subtypeText();
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

// 256 octets hold the longest names, an address and a number without an allocation.
void ExtCommIp6::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<256> text;
  text.append('<');
  text.append(stringValue(pktType()));
  if (!pktSubtype().isUnspecified()) {
    text.append(' ');
    text.append(subtypeText());
  }
  text.append(" addr=");
  extCommIp6Content_.addr().printToBuffer(text);
  text.append(" localAdmin=");
  text.appendDecimal(extCommIp6Content_.localAdmin());
  text.append('>');
  out.write(text.view().data(), static_cast<std::streamsize>(text.size()));
}

Kiv::String ExtCommIp6::toStrep() const {
  return streamedText([this](std::ostream& out) { out << *this; });
}

// "IP6" in the suffix tells the type code from that of an eight-octet community with the same type
// and subtype.
void ExtCommIp6::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  if (format.isUI()) {
    addExtCommTypeAsString(to, "-IP6", extCommIp6Content_.type(), extCommIp6Content_.subtype(),
                           extCommIp6Content_.transitiveFlag());
    to.append(':');
  }
  extCommIp6Content_.addr().printToBuffer(to);
  to.append(':');
  to.appendDecimal(extCommIp6Content_.localAdmin());
}

Kiv::String ExtCommIp6::toStrepForPolicy(StrepFormat format) const {
  ExtCommTextBuffer text;
  appendForPolicy(text, format);
  return text.str();
}

// A subclass may override toStrepForPolicy, hence the comparison of the exact class (see
// ExtComm::policyTextAppend).
void ExtCommIp6::appendPolicyText(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  const std::type_info* const type = &typeid(*this);
  if (type == &typeid(ExtCommIp6Subtyped) || type == &typeid(ExtCommIp6)) {
    return ExtCommIp6::appendForPolicy(to, format);
  }
  appendString(*this, to, format);
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6* extComm) {
  if (extComm) return out << *extComm;
  out.width(0);
  return out.write("NULL", 4);
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6& extComm) {
  out.width(0);
  extComm.formatDerivedType(out);
  return out;
}

}  // namespace Routing::Bgp
