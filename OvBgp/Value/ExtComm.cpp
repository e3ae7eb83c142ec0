#include "OvBgp/Value/ExtComm.h"

#include <ostream>
#include <typeinfo>

#include "BgpCommon/Private/StreamedText.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Value/ExtCommSubtypes.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {
namespace {

// The source name in assertion texts; it is fixed, whatever the file's name.
constexpr const char* source = "OvBgp/OvBgpCommunity";

// The body of the functions that are named after the subtypes of one type. `function` is the
// signature of such a function, which a failed assertion names. The condition's text is built only
// then, since it contains the name of the type.
template <BgpExtCommPktType type>
Kiv::String subtypeStringOf(const ExtComm& extComm, const char* function) {
  if (extComm.pktType() != type) [[unlikely]] {
    const Kiv::String condition = stringValue(type) + "_ == pktType()";
    Kiv::assertFailed(condition.c_str(), source, __LINE__, function);
  }
  KIV_ASSERT_IN(!extComm.pktSubtype().isUnspecified(), "!pktSubtype().isUnspecified()", source,
                function);
  return extCommSubtypeString<ExtCommSubtypeEnum<type>>(extComm.getContent().subtypeOctet());
}

// The slow path of appendPolicyText, for classes of users. It is not inlined, so that the fast path
// needs no stack frame for a string.
[[gnu::noinline]] void appendString(const ExtComm& extComm, OvFmt::DynamicBufferInterface& to,
                                    ExtComm::StrepFormat format) {
  to.append(extComm.toStrepForPolicy(format));
}

}  // namespace

KIV_OBJECT_DEFINE(ExtComm)
KIV_OBJECT_DEFINE(ExtCommSubtyped)

U32 ExtComm::hash() const { return hashOf(content_); }

// Tables compare only objects of their own type, so the cast needs no check.
bool ExtComm::compare(Dorn::DedupHandle::RawPtrConst other) const {
  return content_ == static_cast<const ExtComm*>(other)->content_;
}

// The answers of most communities. plainNoted() relies on them: a class that does not override
// these functions is plain.
bool ExtComm::isLinkBandwidthWithUnspecifiedAsNumber() const { return false; }

BgpExtCommPktSubtype ExtComm::pktSubtype() const { return {}; }

BgpExtCommPktSubtype ExtCommSubtyped::pktSubtype() const {
  return BgpExtCommPktSubtype(getContent().subtypeOctet());
}

bool ExtComm::policyMatchStrepUI() const { return false; }

bool ExtComm::isValid() const { return true; }

void ExtComm::plainNoted() {
  if (isValid() && !policyMatchStrepUI() && !isLinkBandwidthWithUnspecifiedAsNumber()) {
    newOwnBitsAdd(plainBit);
  }
}

// A class whose octets are not in the order of preference overrides this.
bool ExtComm::isBetterThan(const Kiv::Ptr<const ExtComm>& other) const {
  KIV_ASSERT(other, "other", source);
  return content_.value() < other->content_.value();
}

// A switch over the result is complete with the enumeration's members; any octet is possible on the
// wire, hence the marker for the rest.
BgpExtCommPktType ExtComm::pktType() const noexcept {
  const BgpExtCommPktType type{content_.typeOctet()};
  return bgpIsValidEnumMember(type) ? type : extCommPktTypeUnknown;
}

// A community without a class of its own has no text for policies. The six octets after the type
// code are written in wire order.
void ExtComm::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  if (!format.isUI()) return;
  addExtCommTypeAsString(to, "", content_);
  const char* separator = ":0x";
  for (int shift = 40; shift >= 0; shift -= 8) {
    to.append(separator);
    to.appendHex(static_cast<U8>(content_.value() >> shift), 2);
    separator = " 0x";
  }
}

Kiv::String ExtComm::toStrepForPolicy(StrepFormat format) const {
  ExtCommTextBuffer text;
  appendForPolicy(text, format);
  return text.str();
}

// These two classes may have subclasses, so the exact class is compared. fwkType() would not do,
// because a subclass may lack a type record of its own. The addresses are compared because that is
// faster than type_info's operator, which may compare names; should a class have two records, the
// text is the same, only slower.
void ExtComm::policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  const std::type_info* const type = &typeid(*this);
  if (type == &typeid(ExtCommSubtyped) || type == &typeid(ExtComm)) {
    return ExtComm::appendForPolicy(to, format);
  }
  appendString(*this, to, format);
}

Kiv::String ExtComm::toStrepForUI(bool asdot, bool linkBwWeighted, bool json) const {
  StrepFormat format;
  format.strepFormatClassificationIs(true);
  format.strepFormatUIIs(true);
  format.strepFormatAsdotIs(asdot);
  format.strepFormatLinkBwWeightedIs(linkBwWeighted);
  format.strepFormatJsonIs(json);
  return toStrepForPolicy(format);
}

// 128 octets hold the longest names of a type and a subtype without an allocation.
void ExtComm::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<128> words;
  appendTypeNames(words);
  writeExtCommDiagnostic(out, words.view(), content_);
}

void ExtComm::appendTypeNames(OvFmt::DynamicBufferInterface& to) const {
  to.append(Kiv::enumName(pktType()));
  if (pktSubtype().isUnspecified()) return;
  to.append(' ');
  to.append(subtypeText());
}

// A class may have subtypes although its type octet has no enumeration of them: rules of a user's
// own may build such an object. Its text is "none".
Kiv::String ExtComm::subtypeText() const {
  if (pktSubtype().isUnspecified()) return "unspecified";
  const Kiv::EnumInfo* subtypes = extCommSubtypeInfo(pktType());
  return subtypes ? extCommSubtypeText(*subtypes, content_.subtypeOctet()) : "none";
}

// Unformatted output, so that the stream's width and fill play no part.
void ExtComm::formatSubtype(std::ostream& out) const {
  const Kiv::String text = subtypeText();
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void ExtComm::formatCommunityValue(std::ostream& out) const { out << content_; }

Kiv::String ExtComm::toStrep() const {
  return streamedText([this](std::ostream& out) { out << *this; });
}

// The names are written in full, so that a search for one of them finds its line here.
#define SUBTYPE_STRING(function, type)                        \
  Kiv::String ExtComm::function() const {                     \
    return subtypeStringOf<type>(*this, __PRETTY_FUNCTION__); \
  }
SUBTYPE_STRING(pktSubtypeTransTwoOctetAsString, extCommPktTypeTransTwoOctetAs)
SUBTYPE_STRING(pktSubtypeTransIpv4AddressString, extCommPktTypeTransIpv4Address)
SUBTYPE_STRING(pktSubtypeTransFourOctetAsString, extCommPktTypeTransFourOctetAs)
SUBTYPE_STRING(pktSubtypeTransOpaqueString, extCommPktTypeTransOpaque)
SUBTYPE_STRING(pktSubtypeEvpnString, extCommPktTypeTransEvpn)
SUBTYPE_STRING(pktSubtypeFlowspecRedirectNexthopString, extCommPktTypeTransFlowspecRedirectNexthop)
SUBTYPE_STRING(pktSubtypeTransGenericString, extCommPktTypeTransGeneric)
SUBTYPE_STRING(pktSubtypeTransGenericPart2String, extCommPktTypeTransGenericPart2)
SUBTYPE_STRING(pktSubtypeTransGenericPart3String, extCommPktTypeTransGenericPart3)
SUBTYPE_STRING(pktSubtypeNonTransTwoOctetAsString, extCommPktTypeNonTransTwoOctetAs)
SUBTYPE_STRING(pktSubtypeNonTransIpv4AddressString, extCommPktTypeNonTransIpv4Address)
SUBTYPE_STRING(pktSubtypeNonTransFourOctetAsString, extCommPktTypeNonTransFourOctetAs)
SUBTYPE_STRING(pktSubtypeNonTransOpaqueString, extCommPktTypeNonTransOpaque)
#undef SUBTYPE_STRING

ExtComm::Ptr extCommFactory(ExtCommClassification classification, const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtComm>(classification, content);
}

ExtCommSubtyped::Ptr ExtCommSubtypedIs(ExtCommClassification classification,
                                       const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommSubtyped>(classification, content);
}

std::ostream& operator<<(std::ostream& out, const ExtComm* extComm) {
  if (extComm) return out << *extComm;
  out.width(0);
  return out.write("NULL", 4);
}

std::ostream& operator<<(std::ostream& out, const ExtComm& extComm) {
  out.width(0);
  extComm.formatDerivedType(out);
  return out;
}

}  // namespace Routing::Bgp
