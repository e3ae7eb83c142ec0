// What was read, counted while decoding.
#ifndef TOOLS_BGP_COMMUNITIES_COUNTS_H
#define TOOLS_BGP_COMMUNITIES_COUNTS_H

#include "tools/bgp-communities/CommunityKinds.h"

namespace CommTool {

// How many attributes of each kind had a flag, by CommunityKind.
struct FlagCounts {
  std::array<U64, communityKinds> partial{};
  std::array<U64, communityKinds> extendedLength{};
};

struct InputCounts {
  U64 files = 0;            // opened
  U64 unopened = 0;         // files that could not be opened
  U64 records = 0;          // with an intact frame
  U64 messages = 0;         // BGP messages of every kind
  U64 updates = 0;          // of these, UPDATE messages
  U64 stateChanges = 0;     // records of a session's state
  U64 recordsSkipped = 0;   // known record types without routes that can be decoded
  U64 familiesSkipped = 0;  // MP_REACH or MP_UNREACH of an undecoded address family
  U64 damaged = 0;          // records with a problem, and broken frames
};

}  // namespace CommTool

#endif
