// The enumeration functions of Kiv/Enum.h, made visible in namespace Routing::Bgp.
//
// A caller writes stringValue(e), valueToStrep(e), os << e or sequenceToValue(it, end, &e) without
// a namespace. Argument-dependent lookup then searches the namespace of the enumeration, which is
// Routing::Bgp, and not Kiv. The using-declarations below close this gap. Every header of the
// library that declares enumerations includes this file.
#ifndef BGPCOMMON_ENUMTEXT_H
#define BGPCOMMON_ENUMTEXT_H

#include "Kiv/Enum.h"
#include "Kiv/Strep.h"

namespace Routing::Bgp {

// Writes a member's name to a stream.
using Kiv::operator<<;
// Reads a member's name from a range of characters.
using Kiv::sequenceToValue;
// Gives a member's name.
using Kiv::stringValue;
// Gives a member's name, too; the function exists for every type that has a text form.
using Kiv::valueToStrep;

// Whether `member` is a valid member of its enumeration. Markers such as "Unknown" are not valid,
// nor are numbers without a name. Meant for numbers from the wire: any number may be passed, and an
// octet takes constant time.
template <Kiv::RegisteredEnum E>
constexpr bool bgpIsValidEnumMember(E member) {
  return Kiv::enumIsValid(member);
}

}  // namespace Routing::Bgp

#endif
