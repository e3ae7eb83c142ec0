// Macros that declare the value classes of route targets and route origins.
//
// Each of the two communities consists of an AS number or an IPv4 address and a local number. They
// differ only in classification and texts (RFC 4360 sections 4 and 5). Each has one class for AS
// numbers and one class for addresses. These macros declare such a class together with its factory.
// Applications include ExtCommRouteTarget.h or ExtCommRouteOrigin.h instead of this header.
#ifndef OVBGP_PARSE_TYPED_DETAIL_EXTCOMMROUTECLASSES_H
#define OVBGP_PARSE_TYPED_DETAIL_EXTCOMMROUTECLASSES_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

// Declares the virtual functions that each of these classes overrides. Nothing can override their
// texts again, since the classes are final. The section after the macro is private.
#define EXT_COMM_ROUTE_TEXTS()                                                                  \
  void formatDerivedType(std::ostream& out) const override;                                     \
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;   \
                                                                                                \
 private:                                                                                       \
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override { \
    appendForPolicy(to, format);                                                                \
  }

// Declares the class for AS numbers, `Class`, and `factory`. Objects are immutable and may be used
// by any thread.
#define EXT_COMM_ROUTE_AS_CLASS(Class, factory, classification)                                   \
  class OV_EXPORT Class final : public ExtCommAsNumber {                                          \
    KIV_OBJECT(Class)                                                                             \
                                                                                                  \
   public:                                                                                        \
    /* `fourOctetAs` alone selects how the octets are read; the type octet is not checked. */     \
    Class(const ExtCommContent& content, bool fourOctetAs)                                        \
        : ExtCommAsNumber(classification, content, fourOctetAs) {}                                \
                                                                                                  \
    /* The diagnostic text names the width that the type octet implies, so formatDerivedType() */ \
    /* aborts unless the type is 0x00 or 0x02. appendForPolicy() accepts any type.             */ \
    EXT_COMM_ROUTE_TEXTS()                                                                        \
  };                                                                                              \
  /* Returns a new object with notification on, not interned. Throws std::bad_alloc. */           \
  OV_EXPORT Class::Ptr factory(const ExtCommContent& content, bool fourOctetAs)

// Declares the class for IPv4 addresses, `Class`, and `factory`. Objects are immutable and may be
// used by any thread.
#define EXT_COMM_ROUTE_IPV4_CLASS(Class, factory, classification)                                  \
  class OV_EXPORT Class final : public ExtCommIpv4Address {                                        \
    KIV_OBJECT(Class)                                                                              \
                                                                                                   \
   public:                                                                                         \
    /* The type octet of `content` is not checked. */                                              \
    explicit Class(const ExtCommContent& content) : ExtCommIpv4Address(classification, content) {} \
                                                                                                   \
    /* Each text accepts any type octet. */                                                        \
    EXT_COMM_ROUTE_TEXTS()                                                                         \
  };                                                                                               \
  /* Returns a new object with notification on, not interned. Throws std::bad_alloc. */            \
  OV_EXPORT Class::Ptr factory(const ExtCommContent& content)

#endif
