// What the communities of all routes held amount to.
#ifndef TOOLS_BGP_COMMUNITIES_FIGURES_H
#define TOOLS_BGP_COMMUNITIES_FIGURES_H

#include <array>

#include "tools/bgp-communities/HeldRoutes.h"

namespace CommTool {

// Of one class of object: values, lists or sub-lists of a kind.
struct ObjectFigures {
  U64 occurrences = 0;    // in routes, each counted with every route
  U64 unique = 0;         // distinct ones: how many are interned
  U64 references = 0;     // to these, from what holds them: routes or lists
  U64 bytes = 0;          // of these, with what only they hold; tables apart
  U64 bytesUnshared = 0;  // had each occurrence its own
};

// Standard and large values are part of their lists' storage and take no bytes of
// their own; the kinds without classifications have no sub-lists.
struct KindFigures {
  ObjectFigures values;
  ObjectFigures lists;
  ObjectFigures subLists;

  U64 bytes() const { return values.bytes + lists.bytes + subLists.bytes; }
  U64 bytesUnshared() const {
    return values.bytesUnshared + lists.bytesUnshared + subLists.bytesUnshared;
  }
};

struct HeldFigures {
  U64 routes = 0;
  std::array<KindFigures, communityKinds> kinds;
  U64 bytes = 0;  // of all, tables included

  const KindFigures& of(CommunityKind kind) const { return kinds[indexOf(kind)]; }
  U64 bytesUnshared() const;
};

// Walks all routes: for the end of a run.
HeldFigures figuresOf(const HeldRoutes& routes);

}  // namespace CommTool

#endif
