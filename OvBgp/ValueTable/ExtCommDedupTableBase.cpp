#include "OvBgp/ValueTable/ExtCommDedupTableBase.h"

#include "Kiv/Assert.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"
#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Routing::Bgp {

// Whether the table locks is decided here, once, so the host sets multiThreaded() before.
ExtCommDedupTableBase::ExtCommDedupTableBase(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule)
    : dedupTable_(Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
          OvBgpGlobals::multiThreaded())),
      parseExtCommRule_(rule) {}

ExtCommDedupTableBase::~ExtCommDedupTableBase() = default;

Kiv::Ptr<const BgpParseExtendedCommunityRule> ExtCommDedupTableBase::parseExtCommRule() const {
  return parseExtCommRule_;
}

// A reference instead of a counted pointer spares each miss two atomic operations. It stays valid
// since the table holds the rule tree and the caller of dedupContent keeps the table.
const BgpParseExtendedCommunityRule& ExtCommDedupTableBase::rule() const {
  KIV_ASSERT(parseExtCommRule_, "parseExtCommRule", "OvBgp/ExtCommDedupTableBase");
  return *parseExtCommRule_;
}

void ExtCommDedupTableBase::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                      unsigned int indent) const {
  Dorn::ObjDumpChild(context, dedupTable_, indent);
}

}  // namespace Routing::Bgp
