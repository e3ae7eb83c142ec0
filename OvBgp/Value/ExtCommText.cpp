#include "OvBgp/Value/ExtCommText.h"

#include <ostream>
#include <string>

namespace Routing::Bgp {
namespace {

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

void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                            const ExtCommContent& content) {
  addExtCommTypeAsString(to, suffix, content.typeOctet(), content.subtypeOctet(),
                         content.transitiveFlag());
}

Kiv::String extCommSubtypeText(const Kiv::EnumInfo& subtypes, U8 subtype) {
  const Kiv::EnumRow* row = subtypes.findValue(subtype);
  if (row && row->valid) return Kiv::String(row->name);
  return "subtype=" + std::to_string(subtype);
}

void writeExtCommDiagnostic(std::ostream& out, std::string_view words,
                            const ExtCommContent& content) {
  out.put('<');
  out.write(words.data(), static_cast<std::streamsize>(words.size()));
  out.put(' ');
  out << content;
  out.put('>');
}

}  // namespace Routing::Bgp
