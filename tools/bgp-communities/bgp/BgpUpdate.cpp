#include "tools/bgp-communities/bgp/BgpUpdate.h"

#include <algorithm>

namespace CommTool {

namespace {

constexpr std::size_t markerLength = 16;
constexpr std::size_t headerLength = 19;  // marker, length, type
constexpr U8 updateType = 2;

// A message behind its header.
struct Message {
  U8 type;
  OctetReader body;
};

// Reads one message (RFC 4271, section 4.1). The marker must be all ones, since authentication by
// marker is obsolete.
Message readMessage(OctetReader& reader) {
  const Octets marker = reader.octets(markerLength);
  if (!std::ranges::all_of(marker, [](U8 octet) { return octet == 0xFF; })) {
    throw Malformed("BGP message without its marker");
  }
  const U16 length = reader.u16();
  const U8 type = reader.u8();
  if (length < headerLength) {
    throw Malformed("BGP message length " + std::to_string(length) + " is less than its header");
  }
  return {type, reader.part(length - headerLength, "BGP message")};
}

}  // namespace

// Messages of other types (OPEN, NOTIFICATION, KEEPALIVE) are counted only.
void BgpMessageDecoder::decode(Octets octets, const MessageContext& context, Problems& problems) {
  OctetReader reader(octets, "BGP message");
  const Message message = readMessage(reader);
  ++counts_.messages;
  if (message.type == updateType) {
    ++counts_.updates;
    decodeUpdate(message.body, context, problems);
  }
  if (!reader.atEnd()) {
    problems.add(std::to_string(reader.left()) + " octets follow the BGP message");
  }
}

// The prefixes before and behind the attributes are IPv4 unicast; all other families are in
// MP_REACH_NLRI and MP_UNREACH_NLRI. Nothing is delivered before everything is read, because a
// malformed prefix at the end must keep the whole message from being used.
void BgpMessageDecoder::decodeUpdate(OctetReader body, const MessageContext& context,
                                     Problems& problems) {
  withdrawn_.clear();
  announced_.clear();
  const NlriKind kind{Family::ipv4, false, context.addPath};
  readNlri(body.part(body.u16(), "withdrawn routes"), kind, withdrawn_);
  const Octets octets = body.part(body.u16(), "path attributes").rest();
  // Damaged attributes add to `problems` and do not end the decoding: the prefixes behind them must
  // be known to be withdrawn.
  const PathAttributes attributes = readPathAttributes(octets, problems);
  readNlri(OctetReader(body.rest(), "announced routes"), kind, announced_);
  if (attributes.repeatedMp) {
    return;  // the problem was added with the attributes
  }
  if (attributes.mpUnreach) {
    readMpUnreach(*attributes.mpUnreach, context.addPath);
  }
  if (attributes.mpReach) {
    readMpReach(*attributes.mpReach, context.addPath);
  }
  deliver(context, attributes);
}

// RFC 4760, section 3. The next hop is of no interest here, but its length must be right.
void BgpMessageDecoder::readMpReach(Octets value, bool addPath) {
  OctetReader reader(value, "MP_REACH_NLRI");
  const U16 afi = reader.u16();
  const U8 safi = reader.u8();
  reader.octets(reader.u8());  // next hop
  reader.u8();                 // reserved, to be ignored (RFC 4760, section 3)
  readFamily(reader, afi, safi, addPath, announced_);
}

// RFC 4760, section 4.
void BgpMessageDecoder::readMpUnreach(Octets value, bool addPath) {
  OctetReader reader(value, "MP_UNREACH_NLRI");
  const U16 afi = reader.u16();
  const U8 safi = reader.u8();
  readFamily(reader, afi, safi, addPath, withdrawn_);
}

// Reads the prefixes of an MP attribute. Families that the tool does not decode are only counted.
void BgpMessageDecoder::readFamily(OctetReader reader, U16 afi, U8 safi, bool addPath,
                                   std::vector<Nlri>& to) {
  std::optional<NlriKind> kind = nlriKind(afi, safi);
  if (!kind) {
    ++counts_.familiesSkipped;
    return;
  }
  kind->addPath = addPath;
  readNlri(reader, *kind, to);
}

// The batches share one object; the second differs in action, attributes and routes.
void BgpMessageDecoder::deliver(const MessageContext& context, const PathAttributes& attributes) {
  RouteBatch batch{context.seconds, RouteAction::withdraw, context.peer, {}, {}};
  if (attributes.treatAsWithdraw) {
    withdrawn_.insert(withdrawn_.end(), announced_.begin(), announced_.end());
    announced_.clear();
  }
  if (!withdrawn_.empty()) {
    batch.routes = withdrawn_;
    sink_.handleRoutes(batch);
  }
  if (!announced_.empty()) {
    batch.action = RouteAction::announce;
    batch.communities = attributes.communities;
    batch.routes = announced_;
    sink_.handleRoutes(batch);
  }
}

}  // namespace CommTool
