// Decodes the MRT records of one file and delivers their routes.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_MRT_DECODER_H
#define TOOLS_BGP_COMMUNITIES_MRT_MRT_DECODER_H

#include "tools/bgp-communities/bgp/BgpUpdate.h"
#include "tools/bgp-communities/mrt/MrtReader.h"
#include "tools/bgp-communities/mrt/TableDump.h"

namespace CommTool {

// Serves a single file, because a table's peer index is valid only within its file. Owner thread
// only.
class MrtDecoder {
 public:
  // Delivers routes to `sink` and counts in `counts`. Both must outlive this object.
  MrtDecoder(RouteSink& sink, InputCounts& counts)
      : counts_(counts), messages_(sink, counts), tables_(sink, counts) {}

  // Decodes one record and delivers its routes. Never throws Malformed: errors are added to
  // `problems`, which must be empty before, and counted as one damaged record.
  void decode(const MrtRecord& record, Problems& problems);

 private:
  void dispatch(const MrtRecord& record, Problems& problems);
  void decodeBgp4mp(const MrtRecord& record, OctetReader body, Problems& problems);

  InputCounts& counts_;
  BgpMessageDecoder messages_;
  TableDumpDecoder tables_;
};

}  // namespace CommTool

#endif
