// Decodes dumped routing tables: TABLE_DUMP and TABLE_DUMP_V2 records (RFC 6396, sections 4.2 and
// 4.3; RFC 8050, section 4).
#ifndef TOOLS_BGP_COMMUNITIES_MRT_TABLE_DUMP_H
#define TOOLS_BGP_COMMUNITIES_MRT_TABLE_DUMP_H

#include <vector>

#include "tools/bgp-communities/bgp/Counts.h"
#include "tools/bgp-communities/bgp/Nlri.h"
#include "tools/bgp-communities/input/Problems.h"
#include "tools/bgp-communities/mrt/MrtReader.h"

namespace CommTool {

// Delivers one batch with one route for each table entry. An entry with damaged attributes, or with
// a peer that is not in the index, is reported and left out; the other entries of its record are
// delivered.
//
// Serves a single file: a peer index is valid until the next index or the end of the file. Owner
// thread only.
class TableDumpDecoder {
 public:
  // Delivers routes to `sink` and counts in `counts`. Both must outlive this object.
  TableDumpDecoder(RouteSink& sink, InputCounts& counts) : sink_(sink), counts_(counts) {}

  // Decodes a TABLE_DUMP record, which is one entry. Throws Malformed if the rest of the record
  // cannot be read; other errors are added to `problems`.
  void decodeV1(const MrtRecord& record, Problems& problems);
  // Decodes a TABLE_DUMP_V2 record: a peer index, or one prefix with an entry for each peer. Throws
  // as decodeV1(); the entries before the error have been delivered.
  void decodeV2(const MrtRecord& record, Problems& problems);

 private:
  void readPeerIndex(OctetReader reader);
  void decodeRib(const MrtRecord& record, NlriKind kind, Problems& problems);
  void deliver(U32 seconds, const Peer& peer, const Nlri& nlri, Octets octets, Problems& problems);

  RouteSink& sink_;
  InputCounts& counts_;
  std::vector<Peer> peers_;  // of the last PEER_INDEX_TABLE
};

}  // namespace CommTool

#endif
