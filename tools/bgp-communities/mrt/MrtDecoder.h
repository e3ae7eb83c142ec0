// What the records of one file say, delivered as routes.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_DECODER_H
#define TOOLS_BGP_COMMUNITIES_MRT_DECODER_H

#include "tools/bgp-communities/BgpUpdate.h"
#include "tools/bgp-communities/MrtReader.h"
#include "tools/bgp-communities/TableDump.h"

namespace CommTool {

// One for each file: the peers of a table count for their own file only.
class MrtDecoder {
 public:
  MrtDecoder(RouteSink& sink, InputCounts& counts)
      : counts_(counts), messages_(sink, counts), tables_(sink, counts) {}

  // Decodes one record and delivers its routes; never throws Malformed, but
  // adds to `problems`.
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
