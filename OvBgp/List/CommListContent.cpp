#include "OvBgp/List/CommListContent.h"

#include "OvBgp/List/Private/WireWords.h"

namespace Routing::Bgp {

U32 CommListContent::probeHash() const noexcept { return wireHash(octets_); }

}  // namespace Routing::Bgp
