#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"

#include "Dorn/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(NotifyingRouteTargetList)

// An object that observers may register with must be made with notification switched on.
NotifyingRouteTargetList::Ptr notifyingRouteTargetListFactory() {
  return Dorn::notifyingObject<NotifyingRouteTargetList>();
}

// An observer may release the last other reference to the set while it is notified, hence `self`.
void NotifyingRouteTargetList::rtDelAll() {
  const Ptr self(this);
  rt_.delAll();
}

// Route targets are printed without asdot, as in all diagnostic texts.
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
