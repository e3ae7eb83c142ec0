#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"

#include "Dorn/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(NotifyingRouteTargetList)

NotifyingRouteTargetList::Ptr notifyingRouteTargetListFactory() {
  return Dorn::notifyingObject<NotifyingRouteTargetList>();
}

// An observer may let go of the list while it is told.
void NotifyingRouteTargetList::rtDelAll() {
  const Ptr self(this);
  rt_.delAll();
}

void NotifyingRouteTargetList::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                         U32 indent) const {
  Dorn::objDumpIndent(context, indent);
  Dorn::objDumpPrintf(context, "NotifyingRouteTargetList #%u:\n", rt_.size());
  for (const RouteTarget& routeTarget : rt_) {
    Dorn::objDumpIndent(context, indent + 2);
    Dorn::objDumpPrintf(context, "%s\n", routeTarget.toStrep(false).c_str());
  }
}

}  // namespace Routing::Bgp
