#include "OvBgp/List/ExtCommListDedupTableBase.h"

#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Routing::Bgp {

// A table that exists may have members, so it stays.
void ExtCommListDedupTableBase::initClassificationListTable() {
  if (!extCommClassificationListDedupTable_) extCommClassificationListDedupTable_ = subTable();
}

// Reads the setting again for each hash table. The host must not change it in between.
Kiv::Ptr<Dorn::DedupHashTable> ExtCommListDedupTableBase::subTable() {
  return Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      OvBgpGlobals::multiThreaded());
}

void ExtCommListDedupTableBase::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                          unsigned int indent) const {
  Dorn::objDumpIndent(context, indent);
  Dorn::objDumpPrintf(context, "ExtCommListDedupTable\n");
  dumpTable(context, indent, "extComm", dedupTable());
  dumpTable(context, indent, "extCommClassification", extCommClassificationListDedupTable_);
}

// The indentation is unsigned, and the additions may wrap around. A caller may pass 0xFFFFFFFE,
// that is, -2, to get labels without indentation and tables indented by 2.
void ExtCommListDedupTableBase::dumpTable(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                          unsigned int indent, const char* label,
                                          const Kiv::Ptr<Dorn::DedupHashTable>& table) {
  Dorn::objDumpIndent(context, indent + 2);
  Dorn::objDumpPrintf(context, "%s\n", label);
  Dorn::ObjDumpChild(context, table, indent + 4);
}

}  // namespace Routing::Bgp
