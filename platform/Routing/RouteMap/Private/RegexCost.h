// The cost of compiling a regular expression. Private to the library.
#ifndef ROUTING_ROUTEMAP_PRIVATE_REGEXCOST_H
#define ROUTING_ROUTEMAP_PRIVATE_REGEXCOST_H

#include "Kiv/Types.h"
#include "Routing/RouteMap/Private/RegexSyntax.h"

namespace Routing::RouteMap {

// An estimate of what the C library needs to compile an expression.
struct RegexCost {
  U64 nodes = 0;   // of the automaton
  U64 octets = 0;  // the most memory in use at a time
  U64 work = 0;    // steps of one or two nanoseconds
};

// The bounds of what is compiled: memory, and a work of 0.1 to 0.2 seconds. A bound on memory also
// bounds what one new state of the automaton costs a match.
constexpr U64 regexOctetsMax = U64{32} << 20;
constexpr U64 regexWorkMax = 100'000'000;

// The cost of an expression. Throws RegexRefusal if the cost exceeds a bound, and std::bad_alloc.
// The function takes about as long as the C library for the same expression, and needs half of its
// memory; both stay within the bounds also for an expression that is refused.
RegexCost regexCostOf(const RegexPiece& expression);

}  // namespace Routing::RouteMap

#endif
