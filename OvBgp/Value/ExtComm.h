// The extended community as it is shared: an interned, immutable object of eight
// octets (RFC 4360), and the base of its typed classes.
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

// Equal values share one object: get them by dedupContent. Immutable, any thread.
// The class says what the rule tree made of the value; hash, equality and order
// are those of the 64-bit content, whatever the class.
class OV_EXPORT ExtComm : public KivStash::DedupHandle {
  KIV_OBJECT(ExtComm)

 public:
  // Which of its texts a community is asked for. Each class honours what applies
  // to it; "UI" means strepFormatClassification and strepFormatUI together.
  class StrepFormat;

  ExtComm(ExtCommClassification classification, const ExtCommContent& content)
      : ExtComm(classification, content, false) {}

  // hashSingleAttr of the value, seed 0; what dedupContent looks up by.
  static U32 hashOf(const ExtCommContent& content) noexcept {
    return Kiv::hashSingleAttr(0, content.value());
  }
  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return content_ == static_cast<const ExtCommContent&>(key);
  }

  virtual bool isLinkBandwidthWithUnspecifiedAsNumber() const;
  // The subtype octet; unspecified for a class without subtypes.
  virtual BgpExtCommPktSubtype pktSubtype() const;
  // Writes the diagnostic text, for logs and dumps.
  virtual void formatDerivedType(std::ostream& out) const;
  // What appendForPolicy appends, which is what a class overrides.
  virtual Kiv::String toStrepForPolicy(StrepFormat format) const;
  // Whether policies match this community by its user-interface text.
  virtual bool policyMatchStrepUI() const;
  virtual bool isValid() const;
  // Whether this one wins over `other`: the smaller value does.
  virtual bool isBetterThan(const Kiv::Ptr<const ExtComm>& other) const;
  // Appends the text that policies, configurations and show commands use.
  virtual void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;

  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(classification_);
  }
  ExtCommContent getContent() const noexcept { return content_; }
  // Whether it is known, without a virtual call, to answer what most communities do:
  // valid, not matched by its user-interface text, no AS number missing.
  bool isPlain() const noexcept { return plain_; }
  // The type octet, or extCommPktTypeUnknown if it has no name.
  BgpExtCommPktType pktType() const noexcept;

  Kiv::String toStrepForUI(bool asdot, bool linkBwWeighted, bool json) const;
  // The diagnostic text.
  Kiv::String toStrep() const;
  // 0x and 16 hexadecimal digits.
  void formatCommunityValue(std::ostream& out) const;
  // The subtype's name, "subtype=" and its number, "unspecified", or "none" for a
  // type that has no table of subtypes.
  void formatSubtype(std::ostream& out) const;

  // The name of the subtype, or "subtype=" and its number. Each requires: the
  // community is of the function's type, and its class has subtypes.
  Kiv::String pktSubtypeTransTwoOctetAsString() const;
  Kiv::String pktSubtypeTransIpv4AddressString() const;
  Kiv::String pktSubtypeTransFourOctetAsString() const;
  Kiv::String pktSubtypeTransOpaqueString() const;
  Kiv::String pktSubtypeEvpnString() const;
  Kiv::String pktSubtypeFlowspecRedirectNexthopString() const;
  Kiv::String pktSubtypeTransGenericString() const;
  Kiv::String pktSubtypeTransGenericPart2String() const;
  Kiv::String pktSubtypeTransGenericPart3String() const;
  Kiv::String pktSubtypeNonTransTwoOctetAsString() const;
  Kiv::String pktSubtypeNonTransIpv4AddressString() const;
  Kiv::String pktSubtypeNonTransFourOctetAsString() const;
  Kiv::String pktSubtypeNonTransOpaqueString() const;

  // The interned object of this value, typed by the table's rule tree. One hash
  // and one probe if there is one. Throws std::bad_alloc. To use it, include
  // OvBgp/ValueTable/ExtCommDedupTable.h.
  OV_EXPORT inline static PtrConst dedupContent(const ExtCommDedupTable* table,
                                                const ExtCommContent& content);

  // The value that the writer of a store has at `stored`: of this class, whatever
  // the value, in the state `rebuilt`, and never in a table.  OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 protected:
  // `variant`: one bit for a subclass to tell its objects apart.
  ExtComm(ExtCommClassification classification, const ExtCommContent& content, bool variant)
      : classification_(classificationKept(classification) & classificationMask),
        variant_(variant),
        content_(content) {
    // What the observer of their table hears of.
    if (classification == extCommClassificationRouteTarget) notableIs();
  }
  bool variant() const noexcept { return variant_; }

  // How a diagnostic text starts unless the class has words of its own: the name
  // of the type and, if the class has subtypes, a blank and the subtype.
  void appendTypeNames(OvFmt::DynamicBufferInterface& to) const;

 private:
  friend class ExtCommDedupTable;

  Kiv::String subtypeText() const;
  // Asks the virtual operations; before others can see the object.
  void plainNoted();

  // One octet, which the handle has left over: there are many of these objects.
  const U8 classification_ : 6;
  const bool variant_ : 1;
  bool plain_ : 1 = false;
  const ExtCommContent content_;
};

#define FLAG_ROWS(flagRow)                                              \
  flagRow(strepFormatDefault, strepFormatDefaultIs, 0x01)               \
  flagRow(strepFormatClassification, strepFormatClassificationIs, 0x02) \
  flagRow(strepFormatUI, strepFormatUIIs, 0x04)                         \
  flagRow(strepFormatJson, strepFormatJsonIs, 0x08)                     \
  flagRow(strepFormatAsdot, strepFormatAsdotIs, 0x10)                   \
  flagRow(strepFormatLinkBwWeighted, strepFormatLinkBwWeightedIs, 0x20)
class ExtComm::StrepFormat : public Kiv::FlagSet<ExtComm::StrepFormat> {
 public:
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Routing::Bgp::ExtComm::StrepFormat", FLAG_ROWS)

  // Both flags that together ask for the user-interface text.
  constexpr bool isUI() const { return strepFormatClassification() && strepFormatUI(); }
};
#undef FLAG_ROWS

// A community whose second octet is a subtype.
class OV_EXPORT ExtCommSubtyped : public ExtComm {
  KIV_OBJECT(ExtCommSubtyped)

 public:
  using ExtComm::ExtComm;
  BgpExtCommPktSubtype pktSubtype() const override;
};

static_assert(sizeof(ExtCommSubtyped) == 16 + sizeof(void*),
              "there are many of them: 24 octets on 64-bit builds");

// New, not interned, with notification switched on.
OV_EXPORT ExtComm::Ptr extCommFactory(ExtCommClassification classification,
                                      const ExtCommContent& content);
OV_EXPORT ExtCommSubtyped::Ptr ExtCommSubtypedIs(ExtCommClassification classification,
                                                 const ExtCommContent& content);

// The diagnostic text; "NULL" for a null pointer.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtComm* extComm);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtComm& extComm);

}  // namespace Routing::Bgp

#endif
