// Makes the framework's enumeration functions part of this namespace.
//
// Argument-dependent lookup of stringValue(e), valueToStrep(e), os << e and
// sequenceToValue(it, end, &e) searches the namespace of the enumeration, which
// is this one.  Every header here that declares enumerations includes this file.
#ifndef BGPCOMMON_ENUMTEXT_H
#define BGPCOMMON_ENUMTEXT_H

#include "Kiv/Enum.h"
#include "Kiv/Strep.h"

namespace Routing::Bgp {

using Kiv::operator<<;
using Kiv::sequenceToValue;
using Kiv::stringValue;
using Kiv::valueToStrep;

// Whether `member` is one of the valid members of its enumeration.  Markers such
// as "Unknown", and numbers that have no name, are not.  Constant time for any
// octet; made for numbers that come from the wire.
template <Kiv::RegisteredEnum E>
constexpr bool bgpIsValidEnumMember(E member) {
  return Kiv::enumIsValid(member);
}

}  // namespace Routing::Bgp

#endif
