#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

constexpr std::string_view name = "DefaultGateway";

}  // namespace

KIV_OBJECT_DEFINE(ExtCommDefaultGateway)

void ExtCommDefaultGateway::formatDerivedType(std::ostream& out) const {
  writeExtCommDiagnostic(out, name, getContent());
}

void ExtCommDefaultGateway::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat) const {
  to.append(name);
}

ExtCommDefaultGateway::Ptr extCommDefaultGatewayFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommDefaultGateway>(content);
}

}  // namespace Routing::Bgp
