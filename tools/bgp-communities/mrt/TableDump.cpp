#include "tools/bgp-communities/mrt/TableDump.h"

#include "tools/bgp-communities/bgp/PathAttributes.h"

namespace CommTool {

namespace {

// Bits of the peer type in a peer index (RFC 6396, section 4.3.1).
constexpr U8 peerIsIpv6 = 0x01;
constexpr U8 peerHasLongAs = 0x02;

// Subtypes of TABLE_DUMP_V2 (RFC 6396, section 4.3; RFC 8050, section 4).
enum V2Subtype : U16 {
  peerIndexTable = 1,
  ribIpv4Unicast = 2,
  ribIpv4Multicast = 3,
  ribIpv6Unicast = 4,
  ribIpv6Multicast = 5,
  ribGeneric = 6,
  geoPeerTable = 7,  // RFC 6397: locations of the peers
  ribIpv4UnicastAddPath = 8,
  ribIpv6MulticastAddPath = 11,
  ribGenericAddPath = 12,
};

// The encoding of a RIB record of one family; nothing for other subtypes. Subtypes 8 to 11 are the
// ADD-PATH forms of 2 to 5, in the same order.
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

// Reads one entry of a peer index.
Peer readPeer(OctetReader& reader) {
  const U8 type = reader.u8();
  reader.u32();  // BGP identifier
  Peer peer;
  peer.address = readAddress(reader, (type & peerIsIpv6) != 0 ? Family::ipv6 : Family::ipv4);
  peer.as = (type & peerHasLongAs) != 0 ? reader.u32() : reader.u16();
  return peer;
}

// Octets behind the last entry do not spoil the entries, so they are only reported.
void checkEnd(const OctetReader& reader, Problems& problems) {
  if (!reader.atEnd()) {
    problems.add(std::to_string(reader.left()) + " octets follow the last entry");
  }
}

}  // namespace

// The subtype is the AFI; the SAFI is always unicast.
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

// RIB_GENERIC can hold any address family and is hardly used; it is counted, not decoded.
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

// The old index is removed first: after a damaged index there must be no peers, since entries would
// be attributed to wrong ones.
void TableDumpDecoder::readPeerIndex(OctetReader reader) {
  peers_.clear();
  // Filled completely before it replaces the old index: an exception must not leave half an index.
  std::vector<Peer> peers;
  reader.u32();                 // collector's BGP identifier
  reader.octets(reader.u16());  // name of the view
  for (U32 left = reader.u16(); left > 0; --left) {
    peers.push_back(readPeer(reader));
  }
  peers_ = std::move(peers);
}

// An entry refers to its peer by index. ADD-PATH entries have a path identifier of their own.
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
    // An entry with an unknown peer is left out, but the entries behind it can be read.
    if (peer < peers_.size()) {
      deliver(record.seconds, peers_[peer], nlri, attributes, problems);
    } else {
      problems.add("peer " + std::to_string(peer) + " is not in the peer index, which has " +
                   std::to_string(peers_.size()) + " peers");
    }
  }
  checkEnd(reader, problems);
}

// MP_REACH_NLRI is ignored here: the prefix is known from the record, and the attribute could only
// repeat it. It has the short form of RFC 6396, section 4.3.4; some writers use the full form.
void TableDumpDecoder::deliver(U32 seconds, const Peer& peer, const Nlri& nlri, Octets octets,
                               Problems& problems) {
  const PathAttributes attributes = readPathAttributes(octets, problems);
  // Withdrawing makes no sense for a table, so a damaged entry is simply left out.
  if (!attributes.treatAsWithdraw) {
    sink_.handleRoutes(
        {seconds, RouteAction::tableEntry, peer, attributes.communities, {&nlri, 1}});
  }
}

}  // namespace CommTool
