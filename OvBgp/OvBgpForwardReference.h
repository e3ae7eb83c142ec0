// Forward declarations of the library's shared classes.
#ifndef OVBGP_OVBGPFORWARDREFERENCE_H
#define OVBGP_OVBGPFORWARDREFERENCE_H

namespace Routing::Bgp {

class CommList;
class CommListDedupTable;
class CommListDedupTableBase;

}  // namespace Routing::Bgp

#endif
