// Statistics of the communities and lists of all routes that are present, and their memory.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_FIGURES_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_FIGURES_H

#include <array>
#include <string>
#include <vector>

#include "tools/bgp-communities/rib/HeldRoutes.h"

namespace CommTool {

// The statistics of one class of objects: the values, lists or sub-lists of one kind.
struct ObjectFigures {
  // How often an object occurs in routes. A list that 10 routes have counts 10 times.
  U64 occurrences = 0;
  // The number of different objects, which is the number of interned ones.
  U64 unique = 0;
  // The number of references to these objects, from routes to lists or from lists to values.
  U64 references = 0;
  // The memory of the different objects, with the arrays that they own, without the tables.
  U64 bytes = 0;
  // The memory that would be needed if each occurrence had a copy of its own.
  U64 bytesUnshared = 0;
};

// The number of classes of list lengths: 1, 2, 3 to 4, 5 to 8 and so on. The last class is
// unbounded.
inline constexpr std::size_t lengthClasses = 8;
// The class of a list with this number of members. Class n ends at 2^n members.
constexpr std::size_t lengthClassOf(U64 members) {
  std::size_t found = 0;
  while (found + 1 < lengthClasses && members > U64{1} << found) ++found;
  return found;
}

// One of the most used lists.
struct ListUse {
  // The kind of its communities.
  CommunityKind kind{};
  // The communities, in the form of ListTexts.h.
  std::string text;
  // How many routes have the list.
  U64 references = 0;
};

// The statistics of one kind. Standard and large values are no objects of their own, but part of
// their lists, so their memory is counted there. These two kinds also have no sub-lists.
struct KindFigures {
  // The communities.
  ObjectFigures values;
  // The lists.
  ObjectFigures lists;
  // The sub-lists of one classification.
  ObjectFigures subLists;
  // How many different lists have a length of each class, see lengthClassOf().
  std::array<U64, lengthClasses> lengths{};

  // The memory of values, lists and sub-lists together.
  U64 bytes() const { return values.bytes + lists.bytes + subLists.bytes; }
  // The memory that they would need without sharing.
  U64 bytesUnshared() const {
    return values.bytesUnshared + lists.bytesUnshared + subLists.bytesUnshared;
  }
};

// The statistics of all routes that are present.
struct HeldFigures {
  // The number of routes, also of those without communities.
  U64 routes = 0;
  // Indexed by kind.
  std::array<KindFigures, communityKinds> kinds;
  // The memory of all values, lists and tables together.
  U64 bytes = 0;
  // The most used lists, those of the most routes first.
  std::vector<ListUse> top;

  // The statistics of one kind.
  const KindFigures& of(CommunityKind kind) const { return kinds[indexOf(kind)]; }
  // The memory that the objects of all kinds would need without sharing.
  U64 bytesUnshared() const;
};

// Computes the statistics and names the `top` most used lists. Visits every route and every
// community, so call it once, at the end of a run.
HeldFigures figuresOf(const HeldRoutes& routes, std::size_t top = 0);

}  // namespace CommTool

#endif
