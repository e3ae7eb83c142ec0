#include "tools/bgp-communities/TableDump.h"

#include "tools/bgp-communities/PathAttributes.h"

namespace CommTool {

namespace {

constexpr U8 peerIsIpv6 = 0x01;
constexpr U8 peerHasLongAs = 0x02;

enum V2Subtype : U16 {
  peerIndexTable = 1,
  ribIpv4Unicast = 2,
  ribIpv4Multicast = 3,
  ribIpv6Unicast = 4,
  ribIpv6Multicast = 5,
  ribGeneric = 6,
  geoPeerTable = 7,  // RFC 6397: where the peers are
  ribIpv4UnicastAddPath = 8,
  ribIpv6MulticastAddPath = 11,
  ribGenericAddPath = 12,
};

// The four ADDPATH subtypes follow in the order of the four plain ones.
std::optional<NlriKind> ribKind(U16 subtype) {
  const bool addPath = subtype >= ribIpv4UnicastAddPath && subtype <= ribIpv6MulticastAddPath;
  const U16 plain = addPath ? static_cast<U16>(subtype - 6) : subtype;
  switch (plain) {
    case ribIpv4Unicast:
      return NlriKind{Family::ipv4, false, addPath};
    case ribIpv4Multicast:
      return NlriKind{Family::ipv4, true, addPath};
    case ribIpv6Unicast:
      return NlriKind{Family::ipv6, false, addPath};
    case ribIpv6Multicast:
      return NlriKind{Family::ipv6, true, addPath};
    default:
      return std::nullopt;
  }
}

Peer readPeer(OctetReader& reader) {
  const U8 type = reader.u8();
  reader.u32();  // BGP identifier
  Peer peer;
  peer.address = readAddress(reader, (type & peerIsIpv6) != 0 ? Family::ipv6 : Family::ipv4);
  peer.as = (type & peerHasLongAs) != 0 ? reader.u32() : reader.u16();
  return peer;
}

void checkEnd(const OctetReader& reader, Problems& problems) {
  if (!reader.atEnd()) {
    problems.add(std::to_string(reader.left()) + " octets follow the last entry");
  }
}

}  // namespace

void TableDumpDecoder::decodeV1(const MrtRecord& record, Problems& problems) {
  const std::optional<NlriKind> kind = nlriKind(record.subtype, 1);
  if (!kind) {
    throw Malformed("TABLE_DUMP of unknown subtype " + std::to_string(record.subtype));
  }
  OctetReader reader(record.body, "TABLE_DUMP record");
  reader.u32();  // view, sequence number
  const Address network = readAddress(reader, kind->family);
  const Nlri nlri{prefixOf(network, reader.u8(), false), std::nullopt};
  reader.u8();   // status
  reader.u32();  // time of origin
  Peer peer;
  peer.address = readAddress(reader, kind->family);
  peer.as = reader.u16();
  const Octets attributes = reader.octets(reader.u16());
  deliver(record.seconds, peer, nlri, attributes, problems);
  checkEnd(reader, problems);
}

void TableDumpDecoder::decodeV2(const MrtRecord& record, Problems& problems) {
  if (const std::optional<NlriKind> kind = ribKind(record.subtype)) {
    decodeRib(record, *kind, problems);
  } else if (record.subtype == peerIndexTable) {
    readPeerIndex(OctetReader(record.body, "PEER_INDEX_TABLE"));
  } else if (record.subtype == ribGeneric || record.subtype == ribGenericAddPath ||
             record.subtype == geoPeerTable) {
    ++counts_.recordsSkipped;
  } else {
    throw Malformed("TABLE_DUMP_V2 of unknown subtype " + std::to_string(record.subtype));
  }
}

// A broken index leaves no peers: entries would be put down to wrong ones.
void TableDumpDecoder::readPeerIndex(OctetReader reader) {
  peers_.clear();
  std::vector<Peer> peers;
  reader.u32();                 // collector's BGP identifier
  reader.octets(reader.u16());  // name of the view
  for (U32 left = reader.u16(); left > 0; --left) {
    peers.push_back(readPeer(reader));
  }
  peers_ = std::move(peers);
}

void TableDumpDecoder::decodeRib(const MrtRecord& record, NlriKind kind, Problems& problems) {
  OctetReader reader(record.body, "RIB record");
  reader.u32();  // sequence number
  Nlri nlri{readPrefix(reader, kind.family, kind.multicast), std::nullopt};
  for (U32 left = reader.u16(); left > 0; --left) {
    const U16 peer = reader.u16();
    reader.u32();  // time of origin
    if (kind.addPath) {
      nlri.pathId = reader.u32();
    }
    const Octets attributes = reader.octets(reader.u16());
    if (peer < peers_.size()) {
      deliver(record.seconds, peers_[peer], nlri, attributes, problems);
    } else {
      problems.add("peer " + std::to_string(peer) + " is not in the index of " +
                   std::to_string(peers_.size()));
    }
  }
  checkEnd(reader, problems);
}

// MP_REACH_NLRI stands here in the short form of RFC 6396, section 4.3.4, or,
// from some writers, in full.  Both serve: it could only repeat the prefix.
void TableDumpDecoder::deliver(U32 seconds, const Peer& peer, const Nlri& nlri, Octets octets,
                               Problems& problems) {
  const PathAttributes attributes = readPathAttributes(octets, problems);
  if (!attributes.treatAsWithdraw) {
    sink_.handleRoutes(
        {seconds, RouteAction::tableEntry, peer, attributes.communities, {&nlri, 1}});
  }
}

}  // namespace CommTool
