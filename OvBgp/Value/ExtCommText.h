// Pieces from which the texts of extended communities are made.
#ifndef OVBGP_VALUE_EXTCOMMTEXT_H
#define OVBGP_VALUE_EXTCOMMTEXT_H

#include <iosfwd>
#include <string_view>

#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Room for the policy text of any one community.
using ExtCommTextBuffer = OvFmt::StackBackedBuffer<64>;

// Appends the type code, with which user-interface texts start: type and subtype
// in two hexadecimal digits each, `suffix`, and "(NT)" unless `transitive`.  The
// type's bit 0x40, which says the same, is left out of the digits.
OV_EXPORT void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                                      U8 type, U8 subtype, bool transitive);
OV_EXPORT Kiv::String extCommTypeAsString(const char* suffix, U8 type, U8 subtype, bool transitive);
// The type code of `content`.
void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                            const ExtCommContent& content);

// The name of a subtype, or "subtype=" and the number if it is no valid member of
// `subtypes`, the enumeration of its type.
OV_EXPORT Kiv::String extCommSubtypeText(const Kiv::EnumInfo& subtypes, U8 subtype);
template <Kiv::RegisteredEnum E>
Kiv::String extCommSubtypeString(unsigned char subtype) {
  return extCommSubtypeText(Kiv::enumInfo<E>, subtype);
}

// Writes a diagnostic text: `words` and the value, in angle brackets.  Unformatted:
// the stream's width, fill and base neither matter nor change.
void writeExtCommDiagnostic(std::ostream& out, std::string_view words,
                            const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
