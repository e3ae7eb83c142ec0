#include "OvBgp/CommListContent.h"

#include "OvBgp/WireWords.h"

namespace Routing::Bgp {

U32 CommListContent::probeHash() const noexcept { return wireHash(octets_); }

}  // namespace Routing::Bgp
