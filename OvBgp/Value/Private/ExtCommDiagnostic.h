// Text helpers that take the whole content of a community. Private to the library.
//
// The exported helpers for single octets and subtypes are in OvBgp/Value/ExtCommText.h.
#ifndef OVBGP_VALUE_PRIVATE_EXTCOMMDIAGNOSTIC_H
#define OVBGP_VALUE_PRIVATE_EXTCOMMDIAGNOSTIC_H

#include <iosfwd>
#include <string_view>

#include "OvBgp/Value/ExtCommContent.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Appends the type code of `content`, as the exported function of the same name does for octets.
void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                            const ExtCommContent& content);

// Writes a diagnostic text: "<", `words`, a blank, the content in hexadecimal, ">". Only
// unformatted output is used, so that the stream's width, fill and base neither matter nor change.
void writeExtCommDiagnostic(std::ostream& out, std::string_view words,
                            const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
