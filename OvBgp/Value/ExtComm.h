// The extended community as an interned, immutable object of eight octets (RFC 4360), and the base
// of its typed classes.
#ifndef OVBGP_VALUE_EXTCOMM_H
#define OVBGP_VALUE_EXTCOMM_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/FlagSet.h"
#include "Kiv/Hash.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/DedupHandle.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvBgp/Value/PacketTypes.h"

namespace KivStash {
class StoreManager;
}

namespace OvFmt {
class DynamicBufferInterface;
}

namespace Routing::Bgp {

class ExtCommDedupTable;

// One extended community. Equal values share one object, which users get by dedupContent. The
// object is immutable, and any thread may read it.
//
// The rule tree (OvBgp/Parse/ExtComm.h) chooses the class of the object: a typed class such as
// ExtCommColor, or a base class if no rule knows the value. Hash, equality and order depend on the
// 64-bit content alone, never on the class.
class OV_EXPORT ExtComm : public KivStash::DedupHandle {
  KIV_OBJECT(ExtComm)

 public:
  // The options of a community's text, defined below.
  class StrepFormat;

  // An object that is not interned. Users call dedupContent or a factory instead. Classifications
  // without a name, 11 to 63, are free for rules of a user's own. The bound
  // extCommClassificationOneBeyondLast, 10, and a number above 63 stop the process.
  ExtComm(ExtCommClassification classification, const ExtCommContent& content)
      : ExtComm(classification, content, false) {}

  // The hash by which tables look up a content before there is an object. It differs in each
  // process (Kiv::hashSingleAttr, seed 0), so it must not be stored or sent.
  static U32 hashOf(const ExtCommContent& content) noexcept {
    return Kiv::hashSingleAttr(0, content.value());
  }
  // hashOf of this object's content.
  U32 hash() const override;
  // Whether `other`, which must be an ExtComm, has the same content.
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // Whether `key`, which must be an ExtCommContent, is this object's content.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return content_ == static_cast<const ExtCommContent&>(key);
  }

  // Whether this is a link bandwidth with AS number 0. False except for ExtCommLinkBandwidth.
  virtual bool isLinkBandwidthWithUnspecifiedAsNumber() const;
  // The subtype octet; unspecified for a class without subtypes.
  virtual BgpExtCommPktSubtype pktSubtype() const;
  // Writes the diagnostic text, for logs and dumps. The stream's format plays no part.
  virtual void formatDerivedType(std::ostream& out) const;
  // The text that policies, configurations and show commands use. A class with another text
  // overrides this function. Lists write and match the text of this function, whatever else a
  // class overrides. Here, what appendForPolicy appends: nothing without the user-interface flags;
  // with them, the type code and six octets in hexadecimal.
  virtual Kiv::String toStrepForPolicy(StrepFormat format) const;
  // Whether policies match this community by its user-interface text, in addition to the two texts
  // by which they match every community.
  virtual bool policyMatchStrepUI() const;
  // Whether the octets make sense for the class. Members that are not valid are pruned from lists.
  virtual bool isValid() const;
  // Whether this community is preferred to `other`, which must not be null. Here, the smaller
  // content is preferred; a class may compare otherwise and may require its own class of `other`.
  virtual bool isBetterThan(const Kiv::Ptr<const ExtComm>& other) const;
  // Appends the text that the toStrepForPolicy of the library's classes returns. A class may
  // override this function instead of toStrepForPolicy, and so write its text without a string.
  // Callers use appendPolicyText, because a subclass may have overridden only toStrepForPolicy.
  virtual void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;

  // The subject of the community, by which lists group their members.
  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(ownOctet() & classificationMask);
  }
  // The eight octets.
  ExtCommContent getContent() const noexcept { return content_; }
  // Whether the object is known to be valid, not matched by its user-interface text, and no link
  // bandwidth without an AS number. Most communities are plain, so lists check this flag instead of
  // making three virtual calls a member. False for objects that no table has made.
  bool isPlain() const noexcept { return (ownOctet() & plainBit) != 0; }
  // The type octet; extCommPktTypeUnknown if the octet has no name.
  BgpExtCommPktType pktType() const noexcept;

  // Appends the text of toStrepForPolicy. For the library's own classes it makes no string.
  void appendPolicyText(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;
  // The user-interface text with the given further options of StrepFormat.
  Kiv::String toStrepForUI(bool asdot, bool linkBwWeighted, bool json) const;
  // The diagnostic text. Throws std::bad_alloc.
  Kiv::String toStrep() const;
  // Writes 0x and 16 hexadecimal digits. The stream's format plays no part.
  void formatCommunityValue(std::ostream& out) const;
  // Writes the subtype's name, or "subtype=" and its number if it has no name. Writes "unspecified"
  // for a class without subtypes, and "none" for a type without an enumeration of subtypes.
  void formatSubtype(std::ostream& out) const;

  // The name of a subtype of type 0x00, two-octet AS specific; "subtype=" and the number if the
  // subtype has no name. Requires: the community has that type, and its class has subtypes;
  // otherwise the process stops. The twelve functions after this one differ only in the type.
  Kiv::String pktSubtypeTransTwoOctetAsString() const;
  // The name of a subtype of type 0x01, IPv4 address specific.
  Kiv::String pktSubtypeTransIpv4AddressString() const;
  // The name of a subtype of type 0x02, four-octet AS specific.
  Kiv::String pktSubtypeTransFourOctetAsString() const;
  // The name of a subtype of type 0x03, opaque.
  Kiv::String pktSubtypeTransOpaqueString() const;
  // The name of a subtype of type 0x06, EVPN.
  Kiv::String pktSubtypeEvpnString() const;
  // The name of a subtype of type 0x08, flowspec redirect to the next hop.
  Kiv::String pktSubtypeFlowspecRedirectNexthopString() const;
  // The name of a subtype of type 0x80, generic.
  Kiv::String pktSubtypeTransGenericString() const;
  // The name of a subtype of type 0x81, generic part 2.
  Kiv::String pktSubtypeTransGenericPart2String() const;
  // The name of a subtype of type 0x82, generic part 3.
  Kiv::String pktSubtypeTransGenericPart3String() const;
  // The name of a subtype of type 0x40, non-transitive two-octet AS specific.
  Kiv::String pktSubtypeNonTransTwoOctetAsString() const;
  // The name of a subtype of type 0x41, non-transitive IPv4 address specific.
  Kiv::String pktSubtypeNonTransIpv4AddressString() const;
  // The name of a subtype of type 0x42, non-transitive four-octet AS specific.
  Kiv::String pktSubtypeNonTransFourOctetAsString() const;
  // The name of a subtype of type 0x43, non-transitive opaque.
  Kiv::String pktSubtypeNonTransOpaqueString() const;

  // The interned object of this content. A hit costs one hash and one probe and builds nothing; on
  // a miss the table's rule tree makes the object. Any thread if the table is for several. Throws
  // std::bad_alloc. The body is in OvBgp/ValueTable/ExtCommDedupTable.h, so callers include that
  // header or OvBgp/OvBgpCommunity.h.
  OV_EXPORT inline static PtrConst dedupContent(const ExtCommDedupTable* table,
                                                const ExtCommContent& content);

  // Rebuilds the community that the writer of a shared-memory store has at `stored`. The object is
  // an ExtComm whatever its value, is in the state `rebuilt`, and never enters a table. For errors
  // and threads see OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 protected:
  // For subclasses. `variant` is one bit by which a subclass tells two forms of itself apart; it
  // takes no space.
  ExtComm(ExtCommClassification classification, const ExtCommContent& content, bool variant)
      // The value table's observer follows route targets only. All others enter and leave the
      // table without the notification lock.
      : KivStash::DedupHandle(
            static_cast<U8>(classificationKept(classification) | (variant ? variantBit : 0)),
            classification == extCommClassificationRouteTarget),
        content_(content) {}

  // The body of appendPolicyText, for the library's own classes, which override it to avoid a
  // string. A class with possible subclasses must check that the object belongs to none of them,
  // since a subclass may override toStrepForPolicy. Here, the text of toStrepForPolicy.
  virtual void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;

  // The bit given to the constructor.
  bool variant() const noexcept { return (ownOctet() & variantBit) != 0; }

  // Appends the start of a diagnostic text: the name of the type and, if the class has subtypes, a
  // blank and the subtype.
  void appendTypeNames(OvFmt::DynamicBufferInterface& to) const;

 private:
  friend class ExtCommDedupTable;

  Kiv::String subtypeText() const;
  // Sets plainBit by calling the virtual functions that it summarises. The constructor cannot do
  // that, as virtual calls do not reach the subclass yet. Called before other threads can see the
  // object.
  void plainNoted();

  // The fields of ownOctet(): the classification in the lower six bits (classificationMask), and
  // these two. Millions of these objects may exist, so a data member for them would cost eight
  // octets with alignment.
  static constexpr U8 variantBit = 0x40;
  static constexpr U8 plainBit = 0x80;
  const ExtCommContent content_;
};

// The rows of ExtComm::StrepFormat.
#define FLAG_ROWS(flagRow)                                              \
  flagRow(strepFormatDefault, strepFormatDefaultIs, 0x01)               \
  flagRow(strepFormatClassification, strepFormatClassificationIs, 0x02) \
  flagRow(strepFormatUI, strepFormatUIIs, 0x04)                         \
  flagRow(strepFormatJson, strepFormatJsonIs, 0x08)                     \
  flagRow(strepFormatAsdot, strepFormatAsdotIs, 0x10)                   \
  flagRow(strepFormatLinkBwWeighted, strepFormatLinkBwWeightedIs, 0x20)
// The options of a community's text. Each class honours the options that apply to it.
//
//   strepFormatDefault          changes nothing
//   strepFormatClassification   a prefix that names the classification
//   strepFormatUI               with strepFormatClassification: the user-interface text
//   strepFormatJson             changes nothing in this library
//   strepFormatAsdot            AS numbers above 65535 as "high.low" (RFC 5396)
//   strepFormatLinkBwWeighted   link bandwidths as bare numbers, in the user-interface text, too
//
// A bit without a name throws Kiv::RangeException.
class ExtComm::StrepFormat : public Kiv::FlagSet<ExtComm::StrepFormat> {
 public:
  // No flag, the flags of an octet, or those of a text (Kiv/FlagSet.h).
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Routing::Bgp::ExtComm::StrepFormat", FLAG_ROWS)

  // Whether both flags are set that together select the user-interface text.
  constexpr bool isUI() const { return strepFormatClassification() && strepFormatUI(); }
};
#undef FLAG_ROWS

inline void ExtComm::appendPolicyText(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  policyTextAppend(to, format);
}

// A community whose second octet is a subtype.
class OV_EXPORT ExtCommSubtyped : public ExtComm {
  KIV_OBJECT(ExtCommSubtyped)

 public:
  // Constructs like ExtComm.
  using ExtComm::ExtComm;
  // The second octet of the content.
  BgpExtCommPktSubtype pktSubtype() const override;
};

static_assert(sizeof(ExtCommSubtyped) == 24, "there are millions of them");

// A new ExtComm, not interned, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtComm::Ptr extCommFactory(ExtCommClassification classification,
                                      const ExtCommContent& content);
// A new ExtCommSubtyped, not interned, with notification switched on. Throws std::bad_alloc. The
// interface gives the name, which does not follow the pattern of extCommFactory.
OV_EXPORT ExtCommSubtyped::Ptr ExtCommSubtypedIs(ExtCommClassification classification,
                                                 const ExtCommContent& content);

// Writes the diagnostic text; "NULL" for a null pointer. The stream's format plays no part, and its
// width is reset to 0.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtComm* extComm);
// Writes the diagnostic text, as the operator for pointers.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtComm& extComm);

}  // namespace Routing::Bgp

#endif
