#include "OvBgp/Value/ExtCommText.h"

#include <string>

namespace Routing::Bgp {
namespace {

// Set in the types of communities that do not leave their autonomous system (RFC 4360 section 2).
constexpr U8 nonTransitiveBit = 0x40;

}  // namespace

void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix, U8 type,
                            U8 subtype, bool transitive) {
  to.appendHex(type & ~U64{nonTransitiveBit}, 2);
  to.appendHex(subtype, 2);
  to.append(suffix);
  if (!transitive) to.append("(NT)");
}

Kiv::String extCommTypeAsString(const char* suffix, U8 type, U8 subtype, bool transitive) {
  ExtCommTextBuffer text;
  addExtCommTypeAsString(text, suffix, type, subtype, transitive);
  return text.str();
}

// Markers of the enumeration have a row, too, but are not valid: 256 means "unknown", and a
// wildcard of configurations is no name for a received subtype.
Kiv::String extCommSubtypeText(const Kiv::EnumInfo& subtypes, U8 subtype) {
  const Kiv::EnumRow* row = subtypes.findValue(subtype);
  if (row && row->valid) return Kiv::String(row->name);
  return "subtype=" + std::to_string(subtype);
}

}  // namespace Routing::Bgp
