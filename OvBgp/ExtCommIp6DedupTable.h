// Umbrella: the interning table of IPv6 address specific extended communities.
//
// extCommIp6DedupTableFactory makes a table for a rule tree (OvBgp/Parse/ExtComm.h), and
// ExtCommIp6::dedupContent interns a value in it.
#ifndef OVBGP_EXTCOMMIP6DEDUPTABLE_H
#define OVBGP_EXTCOMMIP6DEDUPTABLE_H

#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"  // IWYU pragma: export
#include "OvBgp/ValueTable/ExtCommIp6DedupTable.h"           // IWYU pragma: export

#endif
