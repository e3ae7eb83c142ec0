// The IPv6 address specific extended community as an interned, immutable object of twenty octets
// (RFC 5701).
#ifndef OVBGP_VALUE_EXTCOMMIP6_H
#define OVBGP_VALUE_EXTCOMMIP6_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/FlagSet.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "KivStash/DedupHandle.h"
#include "OvBgp/Value/ExtCommIp6Content.h"
#include "OvBgp/Value/PacketTypes.h"

namespace KivStash {
class StoreManager;
}

namespace OvFmt {
class DynamicBufferInterface;
}

namespace Routing::Bgp {

class ExtCommIp6DedupTable;

// One IPv6 address specific extended community. Equal values share one object, which users get by
// dedupContent. The object is immutable, and any thread may read it. Hash and equality depend on
// the content alone, never on the class.
class OV_EXPORT ExtCommIp6 : public KivStash::DedupHandle {
  KIV_OBJECT(ExtCommIp6)

 public:
  // The options of a community's text, defined below.
  class StrepFormat;

  // An object that is not interned. Users call dedupContent or a factory instead. The bound
  // extCommClassificationOneBeyondLast, 10, and a classification above 63 stop the process.
  ExtCommIp6(ExtCommClassification classification, const ExtCommIp6Content& content)
      : KivStash::DedupHandle(classificationKept(classification)), extCommIp6Content_(content) {}

  // The byte hash of the content (ExtCommIp6Content::hash).
  U32 hash() const override;
  // Whether `other`, which must be an ExtCommIp6, has the same content.
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  // Whether `key`, which must be an ExtCommIp6Content, is this object's content.
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return extCommIp6Content_ == static_cast<const ExtCommIp6Content&>(key);
  }
  // The hash by which tables probe (ExtCommIp6Content::probeHash).
  U32 probeHash() const override;

  // The subtype octet; unspecified for a class without subtypes.
  virtual BgpExtCommPktSubtype pktSubtype() const;
  // Writes the diagnostic text, for logs and dumps: "<", the type's name, a blank and the subtype
  // if there is one, " addr=", the address, " localAdmin=", the local administrator, ">". The
  // stream's format plays no part.
  virtual void formatDerivedType(std::ostream& out) const;
  // The text for policies. A class with another text overrides this function. Lists write the text
  // of this function, whatever else a class overrides. Here, what appendForPolicy appends: the
  // address, ":" and the local administrator; for the user interface with the type code and "-IP6:"
  // before them. The other flags change nothing.
  virtual Kiv::String toStrepForPolicy(StrepFormat format) const;
  // Appends the text that the toStrepForPolicy of the library's classes returns. A class may
  // override this function instead of toStrepForPolicy, and so write its text without a string.
  // Callers use appendPolicyText, because a subclass may have overridden only toStrepForPolicy.
  virtual void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;

  // The subject of the community, by which lists group their members.
  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(ownOctet());
  }
  // The twenty octets.
  ExtCommIp6Content getContent() const noexcept { return extCommIp6Content_; }
  // The same as getContent(), under the name of the attribute.
  ExtCommIp6Content extCommIp6Content() const noexcept { return extCommIp6Content_; }
  // The type octet; extCommIp6PktTypeUnknown if the octet has no name.
  BgpExtCommIp6PktType pktType() const noexcept;

  // Appends the text of toStrepForPolicy. For the library's own classes it makes no string.
  void appendPolicyText(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;
  // The diagnostic text. Throws std::bad_alloc.
  Kiv::String toStrep() const;
  // Writes the subtype's name, or "subtype=" and its number if it has no name. Writes "unspecified"
  // for a class without subtypes, and "none" for a type without an enumeration of subtypes.
  void formatSubtype(std::ostream& out) const;

  // The name of a subtype of type 0x00, or "subtype=" and the number if the subtype has no name.
  // Requires: the community has that type, and its class has subtypes; otherwise the process stops.
  Kiv::String pktSubtypeTransIpv6AddressAsString() const;
  // As the function before, for type 0x40, non-transitive.
  Kiv::String pktSubtypeNonTransIpv6AddressAsString() const;

  // The interned object of this content. A hit costs one hash and one probe and builds nothing; on
  // a miss the table's rule tree makes the object. Any thread if the table is for several. Throws
  // std::bad_alloc.
  static PtrConst dedupContent(const ExtCommIp6DedupTable* table, const ExtCommIp6Content& content);

  // Rebuilds the community that the writer of a shared-memory store has at `stored`. The object is
  // an ExtCommIp6 whatever its value, is in the state `rebuilt`, and never enters a table. For
  // errors and threads see OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);
  // The same function for a caller with a counted pointer to the manager.
  static Ptr destash(const void* stored, const Kiv::Ptr<KivStash::StoreManager>& storeManager) {
    return destash(stored, storeManager.ptr());
  }

 private:
  Kiv::String subtypeText() const;

  const ExtCommIp6Content extCommIp6Content_;
};

// The rows of ExtCommIp6::StrepFormat.
#define FLAG_ROWS(flagRow)                                              \
  flagRow(strepFormatDefault, strepFormatDefaultIs, 0x01)               \
  flagRow(strepFormatClassification, strepFormatClassificationIs, 0x02) \
  flagRow(strepFormatUI, strepFormatUIIs, 0x04)                         \
  flagRow(strepFormatAsdot, strepFormatAsdotIs, 0x08)                   \
  flagRow(strepFormatLinkBwWeighted, strepFormatLinkBwWeightedIs, 0x10)
// The options of a community's text. strepFormatClassification and strepFormatUI together select
// the user-interface text; the other flags change nothing here.
//
// The bits are not those of ExtComm::StrepFormat, which has one flag more. A bit without a name is
// ignored.
class ExtCommIp6::StrepFormat
    : public Kiv::FlagSet<ExtCommIp6::StrepFormat, Kiv::UnnamedFlags::ignore> {
 public:
  // No flag, the flags of an octet, or those of a text (Kiv/FlagSet.h).
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommIp6::StrepFormat", FLAG_ROWS)

  // Whether both flags are set that together select the user-interface text.
  constexpr bool isUI() const { return strepFormatClassification() && strepFormatUI(); }
};
#undef FLAG_ROWS

// A community whose second octet is a subtype.
class OV_EXPORT ExtCommIp6Subtyped : public ExtCommIp6 {
  KIV_OBJECT(ExtCommIp6Subtyped)

 public:
  // Constructs like ExtCommIp6.
  using ExtCommIp6::ExtCommIp6;
  // The second octet of the content.
  BgpExtCommPktSubtype pktSubtype() const override;
};

static_assert(sizeof(ExtCommIp6Subtyped) <= 40, "there are many of them");

// A new ExtCommIp6, not interned, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6::Ptr extCommIp6Factory(ExtCommClassification classification,
                                            const ExtCommIp6Content& content);
// A new ExtCommIp6Subtyped, not interned, with notification switched on. Throws std::bad_alloc. The
// name is given by the interface.
OV_EXPORT ExtCommIp6Subtyped::Ptr ExtCommIp6SubtypedIs(ExtCommClassification classification,
                                                       const ExtCommIp6Content& content);

// Writes the diagnostic text; "NULL" for a null pointer. The stream's format plays no part, and its
// width is reset to 0.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6* extComm);
// Writes the diagnostic text, as the operator for pointers.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6& extComm);

}  // namespace Routing::Bgp

#endif
