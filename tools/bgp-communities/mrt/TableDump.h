// Routes out of dumped tables: TABLE_DUMP and TABLE_DUMP_V2 (RFC 6396, sections
// 4.2 and 4.3; RFC 8050, section 4).
#ifndef TOOLS_BGP_COMMUNITIES_TABLE_DUMP_H
#define TOOLS_BGP_COMMUNITIES_TABLE_DUMP_H

#include <vector>

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/MrtReader.h"
#include "tools/bgp-communities/Nlri.h"
#include "tools/bgp-communities/Problems.h"

namespace CommTool {

// Delivers one batch with one route for each entry.  An entry with a problem
// (attributes that an agent would not use, a peer that the index does not have)
// is left out and reported; the others of its record are delivered.
//
// Serves one file: a peer index counts up to the next, or to the file's end.
class TableDumpDecoder {
 public:
  TableDumpDecoder(RouteSink& sink, InputCounts& counts) : sink_(sink), counts_(counts) {}

  // Both throw Malformed where the rest of the record cannot be read.
  void decodeV1(const MrtRecord& record, Problems& problems);
  void decodeV2(const MrtRecord& record, Problems& problems);

 private:
  void readPeerIndex(OctetReader reader);
  void decodeRib(const MrtRecord& record, NlriKind kind, Problems& problems);
  void deliver(U32 seconds, const Peer& peer, const Nlri& nlri, Octets octets, Problems& problems);

  RouteSink& sink_;
  InputCounts& counts_;
  std::vector<Peer> peers_;
};

}  // namespace CommTool

#endif
