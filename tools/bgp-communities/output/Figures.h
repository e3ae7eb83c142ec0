// What the communities of all routes held amount to.
#ifndef TOOLS_BGP_COMMUNITIES_FIGURES_H
#define TOOLS_BGP_COMMUNITIES_FIGURES_H

#include <array>
#include <string>
#include <vector>

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

// Lists by how many members they have: 1, 2, up to 4, up to 8 and so on; the last
// class has no bound.
inline constexpr std::size_t lengthClasses = 8;
constexpr std::size_t lengthClassOf(U64 members) {
  std::size_t found = 0;
  while (found + 1 < lengthClasses && members > U64{1} << found) ++found;
  return found;
}

// A list that many routes hold.
struct ListUse {
  CommunityKind kind{};
  std::string text;
  U64 references = 0;  // routes that hold it
};

// Standard and large values are part of their lists' storage and take no bytes of
// their own; the kinds without classifications have no sub-lists.
struct KindFigures {
  ObjectFigures values;
  ObjectFigures lists;
  ObjectFigures subLists;
  std::array<U64, lengthClasses> lengths{};  // of distinct lists, by lengthClassOf()

  U64 bytes() const { return values.bytes + lists.bytes + subLists.bytes; }
  U64 bytesUnshared() const {
    return values.bytesUnshared + lists.bytesUnshared + subLists.bytesUnshared;
  }
};

struct HeldFigures {
  U64 routes = 0;
  std::array<KindFigures, communityKinds> kinds;
  U64 bytes = 0;             // of all, tables included
  std::vector<ListUse> top;  // the lists that most routes hold, these first

  const KindFigures& of(CommunityKind kind) const { return kinds[indexOf(kind)]; }
  U64 bytesUnshared() const;
};

// Walks all routes: for the end of a run.  `top`: how many of the lists in most use
// are named.
HeldFigures figuresOf(const HeldRoutes& routes, std::size_t top = 0);

}  // namespace CommTool

#endif
