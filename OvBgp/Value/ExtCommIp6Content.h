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

// The content of one such community (RFC 5701 section 2):
//
//   offset  size  field
//   0       1     type
//   1       1     subtype
//   2       16    global administrator, an IPv6 address
//   18      2     local administrator; big-endian on the wire, here in host byte order
//
// Contents are ordered by these fields in turn, the address by its octets. The content is the key
// by which a value is looked up before an object for it exists. A plain value; owner thread only.
class ExtCommIp6Content : public Dorn::DedupContentHandle {
 public:
  // All fields 0.
  constexpr ExtCommIp6Content() = default;
  // The given fields; `localAdmin` in host byte order.
  constexpr ExtCommIp6Content(U8 type, U8 subtype, const Ovnet::Ip6Addr& addr, U16 localAdmin)
      : type_(type), subtype_(subtype), addr_(addr), localAdmin_(localAdmin) {}

  // The type octet.
  constexpr U8 type() const { return type_; }
  // The subtype octet.
  constexpr U8 subtype() const { return subtype_; }
  // The global administrator.
  constexpr const Ovnet::Ip6Addr& addr() const { return addr_; }
  // The local administrator in host byte order.
  constexpr U16 localAdmin() const { return localAdmin_; }
  // Replaces the type octet. This function and the next three accept any value.
  constexpr void typeIs(U8 type) { type_ = type; }
  // Replaces the subtype octet.
  constexpr void subtypeIs(U8 subtype) { subtype_ = subtype; }
  // Replaces the global administrator.
  constexpr void addrIs(const Ovnet::Ip6Addr& addr) { addr_ = addr; }
  // Replaces the local administrator by a number in host byte order.
  constexpr void localAdminIs(U16 localAdmin) { localAdmin_ = localAdmin; }
  // Whether routes may carry the community into another autonomous system (bit 0x40 of the type is
  // clear).
  constexpr bool transitiveFlag() const { return (type_ & 0x40) == 0; }

  // The one-at-a-time hash (BgpCommon/BgpHashMixImpl.h) of the octets in wire order, except that
  // the low octet of the local administrator precedes the high one.
  OV_EXPORT U32 hash() const noexcept;
  // The hash by which tables probe. It reads whole words, so it is several times as fast as hash().
  // The hash differs in each process (Kiv/Hash.h), so it must not be stored or sent.
  OV_EXPORT U32 probeHash() const noexcept;

  // Compares all fields.
  friend constexpr bool operator==(const ExtCommIp6Content&, const ExtCommIp6Content&) = default;
  // Orders by type, subtype, address, local administrator.
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

// "type=T;subtype=S;addr=...;localAdmin=...", where T and S are the raw octets, each as one
// character, whatever it is. The text is meant for dumps; sequenceToValue does not read it back in
// general.
OV_EXPORT Kiv::String valueToStrep(const ExtCommIp6Content& content);
// Reads a text with the same labels in which all numbers, T and S included, are decimal, and moves
// `it` behind it. Throws Kiv::RangeException, and changes nothing, on any other text.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, ExtCommIp6Content* target);
// Writes the text of valueToStrep. The stream's base and fill neither matter nor change; its width
// is ignored and reset to 0.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6Content& content);

}  // namespace Routing::Bgp

#endif
