#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {
namespace {

// The diagnostic text and the policy text; the community has no content to show.
constexpr std::string_view name = "DefaultGateway";

}  // namespace

KIV_OBJECT_DEFINE(ExtCommDefaultGateway)

void ExtCommDefaultGateway::formatDerivedType(std::ostream& out) const {
  writeExtCommDiagnostic(out, name, getContent());
}

// Ignores the format, so policies and show commands use the same text.
void ExtCommDefaultGateway::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat) const {
  to.append(name);
}

ExtCommDefaultGateway::Ptr extCommDefaultGatewayFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommDefaultGateway>(content);
}

}  // namespace Routing::Bgp
