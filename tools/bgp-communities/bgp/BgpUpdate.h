// Decoding of BGP messages into routes (RFC 4271, RFC 4760, RFC 7911).
#ifndef TOOLS_BGP_COMMUNITIES_BGP_BGP_UPDATE_H
#define TOOLS_BGP_COMMUNITIES_BGP_BGP_UPDATE_H

#include "tools/bgp-communities/bgp/Counts.h"
#include "tools/bgp-communities/bgp/Nlri.h"
#include "tools/bgp-communities/bgp/PathAttributes.h"

namespace CommTool {

// Facts about a message that the file format knows and the message itself does not contain.
struct MessageContext {
  // When the message was recorded, in seconds since 1970 UTC.
  U32 seconds = 0;
  // The other end of the session.
  Peer peer;
  // Whether the session uses ADD-PATH, so that a path identifier stands before each prefix. The
  // encoding is ambiguous without this knowledge.
  bool addPath = false;
};

// Delivers at most two batches for each UPDATE message: first the withdrawn routes, then the
// announced ones. In this order a route that is in both is announced at the end, as RFC 4271,
// section 4.3, demands.
//
// If a path attribute is damaged, the announced routes are delivered as withdrawn (see
// PathAttributes.h). If a prefix is damaged, the message delivers no route at all: the intention of
// the sender is unknown, and RFC 7606, section 5.3, would reset the session. Owner thread only.
class BgpMessageDecoder {
 public:
  // Delivers routes to `sink` and counts in `counts`. Both must outlive this object.
  BgpMessageDecoder(RouteSink& sink, InputCounts& counts) : sink_(sink), counts_(counts) {}

  // Decodes one message of any type; `octets` begin with its marker. Throws Malformed if the
  // message cannot be used. Errors in a message that is used nevertheless are added to `problems`.
  void decode(Octets octets, const MessageContext& context, Problems& problems);

 private:
  void decodeUpdate(OctetReader body, const MessageContext& context, Problems& problems);
  void readMpReach(Octets value, bool addPath);
  void readMpUnreach(Octets value, bool addPath);
  void readFamily(OctetReader reader, U16 afi, U8 safi, bool addPath, std::vector<Nlri>& to);
  void deliver(const MessageContext& context, const PathAttributes& attributes);

  RouteSink& sink_;
  InputCounts& counts_;
  // The routes of the current UPDATE. Members, so that their memory is reused.
  std::vector<Nlri> withdrawn_;
  std::vector<Nlri> announced_;
};

}  // namespace CommTool

#endif
