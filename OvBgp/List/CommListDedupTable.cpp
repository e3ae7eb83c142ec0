#include "OvBgp/List/CommListDedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/List/CommListContent.h"
#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Routing::Bgp {
namespace {

U32 probeOfWire(const Dorn::DedupContentHandle& key) {
  return static_cast<const CommListContent&>(key).probeHash();
}

}  // namespace

KIV_OBJECT_DEFINE(CommListDedupTable)
KIV_OBJECT_DEFINE(LargeCommListDedupTable)

// Whether the hash table locks is decided here, once and for all. The host must therefore
// call OvBgpGlobals::multiThreadedIs before it makes a table.
CommListDedupTable::CommListDedupTable() { dedupTable()->keyProbeIs(probeOfWire); }
LargeCommListDedupTable::LargeCommListDedupTable() { dedupTable()->keyProbeIs(probeOfWire); }

void CommListDedupTableBase::initDedupTable() {
  dedupTable_ =
      Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(OvBgpGlobals::multiThreaded());
}

void CommListDedupTableBase::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                       unsigned int indent) const {
  Dorn::objDumpIndent(context, indent);
  Dorn::objDumpPrintf(context, "DedupTable");
  Dorn::ObjDumpChild(context, dedupTable_, indent + 2);
}

CommListDedupTable::Ptr commListDedupTableFactory() {
  return Dorn::notifyingObject<CommListDedupTable>();
}

LargeCommListDedupTable::Ptr largeCommListDedupTableFactory() {
  return Dorn::notifyingObject<LargeCommListDedupTable>();
}

}  // namespace Routing::Bgp
