// The 20 octets of an IPv6 address specific extended community.
#ifndef OVBGP_VALUE_EXTCOMMIP6CONTENT_H
#define OVBGP_VALUE_EXTCOMMIP6CONTENT_H

#include <compare>
#include <iosfwd>
#include <type_traits>

#include "Dorn/DedupContentHandle.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "Ovnet/Ip6Addr.h"

namespace Routing::Bgp {

// The value of one such community (RFC 5701 section 2). On the wire: type,
// subtype, 16 octets of global administrator, and the local administrator
// big-endian, which is held here in host byte order. Ordered by the fields as
// they stand, the address by its octets. A plain value.
class ExtCommIp6Content : public Dorn::DedupContentHandle {
 public:
  constexpr ExtCommIp6Content() = default;
  constexpr ExtCommIp6Content(U8 type, U8 subtype, const Ovnet::Ip6Addr& addr, U16 localAdmin)
      : type_(type), subtype_(subtype), addr_(addr), localAdmin_(localAdmin) {}

  constexpr U8 type() const { return type_; }
  constexpr U8 subtype() const { return subtype_; }
  constexpr const Ovnet::Ip6Addr& addr() const { return addr_; }
  constexpr U16 localAdmin() const { return localAdmin_; }
  // Whether the community may cross the border of an autonomous system.
  constexpr bool transitiveFlag() const { return (type_ & 0x40) == 0; }

  // The one-at-a-time hash of the octets (BgpCommon/BgpHashMixImpl.h) in wire
  // order, but for the local administrator: low octet first.
  OV_EXPORT U32 hash() const noexcept;
  // What tables are probed with: a hash by whole words, several times as fast, and
  // another one in each process (Kiv/Hash.h).
  OV_EXPORT U32 probeHash() const noexcept;

  friend constexpr bool operator==(const ExtCommIp6Content&, const ExtCommIp6Content&) = default;
  friend constexpr std::strong_ordering operator<=>(const ExtCommIp6Content&,
                                                    const ExtCommIp6Content&) = default;

 private:
  U8 type_ = 0;
  U8 subtype_ = 0;
  Ovnet::Ip6Addr addr_;
  U16 localAdmin_ = 0;
};

static_assert(sizeof(ExtCommIp6Content) == 20 && std::is_trivially_copyable_v<ExtCommIp6Content> &&
                  std::has_unique_object_representations_v<ExtCommIp6Content>,
              "contents are held inline and hashed by words, with no octet to spare");

// "type=T;subtype=S;addr=...;localAdmin=...", where T and S are the two octets
// themselves, each as one raw character, whatever it is.
OV_EXPORT Kiv::String valueToStrep(const ExtCommIp6Content& content);
// Reads the same labels with the framework's readers, so T and S in decimal: what
// valueToStrep writes is for dumps and is read back only by chance. Throws
// Kiv::RangeException, and changes nothing, on any other text.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, ExtCommIp6Content* target);
// As valueToStrep, whatever the stream's format.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6Content& content);

}  // namespace Routing::Bgp

#endif
