// Routes out of BGP messages (RFC 4271, RFC 4760, RFC 7911).
#ifndef TOOLS_BGP_COMMUNITIES_BGP_UPDATE_H
#define TOOLS_BGP_COMMUNITIES_BGP_UPDATE_H

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/Nlri.h"
#include "tools/bgp-communities/PathAttributes.h"

namespace CommTool {

// What a message's frame does not say itself.
struct MessageContext {
  U32 seconds = 0;
  Peer peer;
  bool addPath = false;
};

// Delivers, for each UPDATE, at most one batch of withdrawn routes and then one
// of announced routes.  A route in both ends announced (RFC 4271, section 4.3).
//
// Broken attributes turn the announcements of their UPDATE into withdrawals
// (see PathAttributes.h).  An UPDATE whose prefixes cannot all be read delivers
// nothing: RFC 7606, section 5.3, would end the session there, because what the
// sender meant is unknown.
class BgpMessageDecoder {
 public:
  BgpMessageDecoder(RouteSink& sink, InputCounts& counts) : sink_(sink), counts_(counts) {}

  // `octets` start with the marker.  Throws Malformed, or adds to `problems`
  // what did not keep the message from being used.
  void decode(Octets octets, const MessageContext& context, Problems& problems);

 private:
  void decodeUpdate(OctetReader body, const MessageContext& context, Problems& problems);
  void readMpReach(Octets value, bool addPath);
  void readMpUnreach(Octets value, bool addPath);
  void readFamily(OctetReader reader, U16 afi, U8 safi, bool addPath, std::vector<Nlri>& to);
  void deliver(const MessageContext& context, const PathAttributes& attributes);

  RouteSink& sink_;
  InputCounts& counts_;
  std::vector<Nlri> withdrawn_;  // of the current UPDATE; kept to reuse the memory
  std::vector<Nlri> announced_;
};

}  // namespace CommTool

#endif
