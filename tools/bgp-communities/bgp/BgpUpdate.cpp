#include "tools/bgp-communities/BgpUpdate.h"

#include <algorithm>

namespace CommTool {

namespace {

constexpr std::size_t markerLength = 16;
constexpr std::size_t headerLength = 19;  // marker, length, type
constexpr U8 updateType = 2;

// The message's type and its body; leaves `reader` behind the message.
struct Message {
  U8 type;
  OctetReader body;
};

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

void BgpMessageDecoder::decodeUpdate(OctetReader body, const MessageContext& context,
                                     Problems& problems) {
  withdrawn_.clear();
  announced_.clear();
  const NlriKind kind{Family::ipv4, false, context.addPath};
  readNlri(body.part(body.u16(), "withdrawn routes"), kind, withdrawn_);
  const Octets octets = body.part(body.u16(), "path attributes").rest();
  const PathAttributes attributes = readPathAttributes(octets, problems);
  readNlri(OctetReader(body.rest(), "announced routes"), kind, announced_);
  if (attributes.repeatedMp) {
    return;  // reported with the attributes
  }
  if (attributes.mpUnreach) {
    readMpUnreach(*attributes.mpUnreach, context.addPath);
  }
  if (attributes.mpReach) {
    readMpReach(*attributes.mpReach, context.addPath);
  }
  deliver(context, attributes);
}

void BgpMessageDecoder::readMpReach(Octets value, bool addPath) {
  OctetReader reader(value, "MP_REACH_NLRI");
  const U16 afi = reader.u16();
  const U8 safi = reader.u8();
  reader.octets(reader.u8());  // next hop
  reader.u8();                 // reserved; to be ignored
  readFamily(reader, afi, safi, addPath, announced_);
}

void BgpMessageDecoder::readMpUnreach(Octets value, bool addPath) {
  OctetReader reader(value, "MP_UNREACH_NLRI");
  const U16 afi = reader.u16();
  const U8 safi = reader.u8();
  readFamily(reader, afi, safi, addPath, withdrawn_);
}

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
