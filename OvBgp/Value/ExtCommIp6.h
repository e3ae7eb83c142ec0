// The IPv6 address specific extended community as it is shared: an interned,
// immutable object of twenty octets (RFC 5701).
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

// Equal values share one object: get them by dedupContent. Immutable, any thread.
// Hash and equality are those of the content, whatever the class.
class OV_EXPORT ExtCommIp6 : public KivStash::DedupHandle {
  KIV_OBJECT(ExtCommIp6)

 public:
  // Which text a community is asked for. Not the bits of ExtComm::StrepFormat: this
  // set is smaller, and bits without a name are dropped.
  class StrepFormat;

  ExtCommIp6(ExtCommClassification classification, const ExtCommIp6Content& content)
      : classification_(classificationKept(classification)), extCommIp6Content_(content) {}

  U32 hash() const override;
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override;
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return extCommIp6Content_ == static_cast<const ExtCommIp6Content&>(key);
  }
  U32 probeHash() const override;

  // The subtype octet; unspecified for a class without subtypes.
  virtual BgpExtCommPktSubtype pktSubtype() const;
  // Writes the diagnostic text, for logs and dumps:
  // "<" type, blank and subtype if there is one, " addr=" ... " localAdmin=" ... ">".
  virtual void formatDerivedType(std::ostream& out) const;
  // What appendForPolicy appends, which is what a class overrides.
  virtual Kiv::String toStrepForPolicy(StrepFormat format) const;
  // Appends "address:local administrator"; for the user interface (both flags) with
  // the type code and "-IP6:" in front. The other flags change nothing.
  virtual void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const;

  ExtCommClassification classification() const noexcept {
    return static_cast<ExtCommClassification>(classification_);
  }
  ExtCommIp6Content getContent() const noexcept { return extCommIp6Content_; }
  // The type octet, or extCommIp6PktTypeUnknown if it has no name.
  BgpExtCommIp6PktType pktType() const noexcept;

  // The diagnostic text.
  Kiv::String toStrep() const;
  // The subtype's name, "subtype=" and its number, "unspecified", or "none" for a
  // type that has no table of subtypes.
  void formatSubtype(std::ostream& out) const;

  // The name of the subtype, or "subtype=" and its number. Each requires: the
  // community is of the function's type, and its class has subtypes.
  Kiv::String pktSubtypeTransIpv6AddressAsString() const;
  Kiv::String pktSubtypeNonTransIpv6AddressAsString() const;

  // The interned object of this value, made by the table's rule tree. One hash and
  // one probe if there is one. Throws std::bad_alloc.
  static PtrConst dedupContent(const ExtCommIp6DedupTable* table, const ExtCommIp6Content& content);

  // The value that the writer of a store has at `stored`: of this class, whatever
  // the value, in the state `rebuilt`, and never in a table.  OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);
  static Ptr destash(const void* stored, const Kiv::Ptr<KivStash::StoreManager>& storeManager) {
    return destash(stored, storeManager.ptr());
  }

 private:
  template <class Subtype>
  Kiv::String subtypeName() const;
  Kiv::String subtypeText() const;

  const U8 classification_;  // in an octet that the handle has left over
  const ExtCommIp6Content extCommIp6Content_;
};

#define FLAG_ROWS(flagRow)                                              \
  flagRow(strepFormatDefault, strepFormatDefaultIs, 0x01)               \
  flagRow(strepFormatClassification, strepFormatClassificationIs, 0x02) \
  flagRow(strepFormatUI, strepFormatUIIs, 0x04)                         \
  flagRow(strepFormatAsdot, strepFormatAsdotIs, 0x08)                   \
  flagRow(strepFormatLinkBwWeighted, strepFormatLinkBwWeightedIs, 0x10)
class ExtCommIp6::StrepFormat
    : public Kiv::FlagSet<ExtCommIp6::StrepFormat, Kiv::UnnamedFlags::ignore> {
 public:
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Routing::Bgp::ExtCommIp6::StrepFormat", FLAG_ROWS)

  // Both flags that together ask for the user-interface text.
  constexpr bool isUI() const { return strepFormatClassification() && strepFormatUI(); }
};
#undef FLAG_ROWS

// A community whose second octet is a subtype.
class OV_EXPORT ExtCommIp6Subtyped : public ExtCommIp6 {
  KIV_OBJECT(ExtCommIp6Subtyped)

 public:
  using ExtCommIp6::ExtCommIp6;
  BgpExtCommPktSubtype pktSubtype() const override;
};

static_assert(sizeof(ExtCommIp6Subtyped) <= 32 + sizeof(void*),
              "there are many of them: 40 octets on 64-bit builds");

// New, not interned, with notification switched on.
OV_EXPORT ExtCommIp6::Ptr extCommIp6Factory(ExtCommClassification classification,
                                            const ExtCommIp6Content& content);
OV_EXPORT ExtCommIp6Subtyped::Ptr ExtCommIp6SubtypedIs(ExtCommClassification classification,
                                                       const ExtCommIp6Content& content);

// The diagnostic text; "NULL" for a null pointer.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6* extComm);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6& extComm);

}  // namespace Routing::Bgp

#endif
