// Counters of the decoders.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_COUNTS_H
#define TOOLS_BGP_COMMUNITIES_BGP_COUNTS_H

#include <algorithm>

#include "tools/bgp-communities/bgp/CommunityKinds.h"

namespace CommTool {

// How many community attributes had a flag set, by kind.
struct FlagCounts {
  // Attributes with the flag Partial: some speaker on the way did not know the attribute.
  std::array<U64, communityKinds> partial{};
  // Attributes with the flag Extended Length: a length of two octets.
  std::array<U64, communityKinds> extendedLength{};
};

// What was read, over all files.
struct InputCounts {
  // Files that were opened.
  U64 files = 0;
  // Files that could not be opened.
  U64 unopened = 0;
  // MRT records with an intact header, whatever their contents.
  U64 records = 0;
  // BGP messages of every type.
  U64 messages = 0;
  // UPDATE messages, which are among `messages`.
  U64 updates = 0;
  // Records of a change of a session's state.
  U64 stateChanges = 0;
  // Records of known types from which the tool decodes no routes.
  U64 recordsSkipped = 0;
  // MP_REACH_NLRI and MP_UNREACH_NLRI attributes of address families that are not decoded.
  U64 familiesSkipped = 0;
  // Records with a problem, and files that ended early.
  U64 damaged = 0;
  // The earliest time of a record, in seconds since 1970 UTC. Valid only if there are records.
  U32 firstSeconds = ~U32{0};
  // The latest time of a record, in seconds since 1970 UTC. Valid only if there are records.
  U32 lastSeconds = 0;

  // Counts a record of this time.
  void addRecord(U32 seconds) {
    ++records;
    firstSeconds = std::min(firstSeconds, seconds);
    lastSeconds = std::max(lastSeconds, seconds);
  }
};

}  // namespace CommTool

#endif
