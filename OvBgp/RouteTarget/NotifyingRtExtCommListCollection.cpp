#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"

#include "Dorn/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(NotifyingRtExtCommListCollection)

NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollectionFactory() {
  return Dorn::notifyingObject<NotifyingRtExtCommListCollection>();
}

// An observer may release the last other reference to the collection while it is notified, hence
// `self`.
void NotifyingRtExtCommListCollection::rtExtCommListDelAll() {
  const Ptr self(this);
  rtExtCommList_.delAll();
}

// The semicolon, where the other set has a colon, is part of a given text.
void NotifyingRtExtCommListCollection::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                                 U32 indent) const {
  Dorn::objDumpIndent(context, indent);
  Dorn::objDumpPrintf(context, "NotifyingRtExtCommListCollection rtExtCommLists #%u;\n",
                      rtExtCommList_.size());
  for (const RtExtCommListLifeTimeNotifier::Ptr& notifier : rtExtCommList_) {
    Dorn::objDumpIndent(context, indent + 2);
    Dorn::objDumpPrintf(context, "rtExtCommList %s\n", notifier->toStrep().c_str());
  }
}

}  // namespace Routing::Bgp
