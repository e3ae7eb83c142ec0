// The pieces that texts of extended communities consist of.
//
// Typed classes outside this library can use these functions, too, so that their texts look like
// those of the classes here.
#ifndef OVBGP_VALUE_EXTCOMMTEXT_H
#define OVBGP_VALUE_EXTCOMMTEXT_H

#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// A buffer with room for the policy text of one community. It allocates only for a longer text.
using ExtCommTextBuffer = OvFmt::StackBackedBuffer<64>;

// Appends the type code, with which user-interface texts begin: `type` and `subtype` in two
// hexadecimal digits each, `suffix`, and "(NT)" unless `transitive`. Bit 0x40 of the type is
// cleared in the digits, because "(NT)" says the same.
OV_EXPORT void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                                      U8 type, U8 subtype, bool transitive);
// The type code as a string. Throws std::bad_alloc.
OV_EXPORT Kiv::String extCommTypeAsString(const char* suffix, U8 type, U8 subtype, bool transitive);

// The name of a subtype, or "subtype=" and the number if `subtypes`, the enumeration of the
// community's type, has no valid member of this number.
OV_EXPORT Kiv::String extCommSubtypeText(const Kiv::EnumInfo& subtypes, U8 subtype);
// The text of extCommSubtypeText for an enumeration that is known when compiling.
template <Kiv::RegisteredEnum E>
Kiv::String extCommSubtypeString(unsigned char subtype) {
  return extCommSubtypeText(Kiv::enumInfo<E>, subtype);
}

}  // namespace Routing::Bgp

#endif
