#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

#include <ostream>

#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {

// Type and subtype octet and the transitive bit are all in the content.
void addExtCommTypeAsString(OvFmt::DynamicBufferInterface& to, const char* suffix,
                            const ExtCommContent& content) {
  addExtCommTypeAsString(to, suffix, content.typeOctet(), content.subtypeOctet(),
                         content.transitiveFlag());
}

// put and write are the unformatted output functions; the operator of contents uses them, too.
void writeExtCommDiagnostic(std::ostream& out, std::string_view words,
                            const ExtCommContent& content) {
  out.put('<');
  out.write(words.data(), static_cast<std::streamsize>(words.size()));
  out.put(' ');
  out << content;
  out.put('>');
}

}  // namespace Routing::Bgp
