#include "tools/bgp-communities/MrtDecoder.h"

#include <algorithm>

namespace CommTool {

namespace {

// BGP4MP subtypes (RFC 6396, section 4.4; RFC 8050, section 3).
struct Bgp4mpRow {
  enum Content : U8 { stateChange, message, obsolete };
  U16 subtype;
  Content content;
  bool longAs;
  bool local;
  bool addPath;
};

constexpr Bgp4mpRow bgp4mpRows[] = {
    {0, Bgp4mpRow::stateChange, false, false, false},  // STATE_CHANGE
    {1, Bgp4mpRow::message, false, false, false},      // MESSAGE
    {2, Bgp4mpRow::obsolete, false, false, false},     // ENTRY
    {3, Bgp4mpRow::obsolete, false, false, false},     // SNAPSHOT
    {4, Bgp4mpRow::message, true, false, false},       // MESSAGE_AS4
    {5, Bgp4mpRow::stateChange, true, false, false},   // STATE_CHANGE_AS4
    {6, Bgp4mpRow::message, false, true, false},       // MESSAGE_LOCAL
    {7, Bgp4mpRow::message, true, true, false},        // MESSAGE_AS4_LOCAL
    {8, Bgp4mpRow::message, false, false, true},       // MESSAGE_ADDPATH
    {9, Bgp4mpRow::message, true, false, true},        // MESSAGE_AS4_ADDPATH
    {10, Bgp4mpRow::message, false, true, true},       // MESSAGE_LOCAL_ADDPATH
    {11, Bgp4mpRow::message, true, true, true},        // MESSAGE_AS4_LOCAL_ADDPATH
};

const Bgp4mpRow& bgp4mpRow(U16 subtype) {
  const auto* row = std::ranges::find(bgp4mpRows, subtype, &Bgp4mpRow::subtype);
  if (row == std::end(bgp4mpRows)) {
    throw Malformed("BGP4MP of unknown subtype " + std::to_string(subtype));
  }
  return *row;
}

// The head that all BGP4MP records share; leaves `reader` behind it.
Peer readBgp4mpHead(OctetReader& reader, const Bgp4mpRow& row) {
  Peer peer;
  peer.local = row.local;
  peer.as = row.longAs ? reader.u32() : reader.u16();
  reader.octets(row.longAs ? 4 : 2);  // the collector's AS
  reader.u16();                       // interface index
  const U16 afi = reader.u16();
  if (afi != 1 && afi != 2) {
    throw Malformed("peer address of unknown family " + std::to_string(afi));
  }
  peer.address = readAddress(reader, afi == 1 ? Family::ipv4 : Family::ipv6);
  readAddress(reader, peer.address.family);  // the collector's address
  return peer;
}

}  // namespace

void MrtDecoder::decode(const MrtRecord& record, Problems& problems) {
  ++counts_.records;
  try {
    dispatch(record, problems);
  } catch (const Malformed& malformed) {
    problems.add(malformed.what());
  }
  counts_.damaged += problems.empty() ? 0 : 1;
}

void MrtDecoder::dispatch(const MrtRecord& record, Problems& problems) {
  OctetReader body(record.body, "BGP4MP record");
  switch (record.type) {
    case MrtType::tableDump:
      return tables_.decodeV1(record, problems);
    case MrtType::tableDumpV2:
      return tables_.decodeV2(record, problems);
    case MrtType::bgp4mpEt:
      body.u32();  // microseconds
      [[fallthrough]];
    case MrtType::bgp4mp:
      return decodeBgp4mp(record, body, problems);
    case MrtType::ospf2:
    case MrtType::isis:
    case MrtType::isisEt:
    case MrtType::ospf3:
    case MrtType::ospf3Et:
      ++counts_.recordsSkipped;
      return;
  }
  throw Malformed("unknown record type " + std::to_string(static_cast<U16>(record.type)));
}

void MrtDecoder::decodeBgp4mp(const MrtRecord& record, OctetReader body, Problems& problems) {
  const Bgp4mpRow& row = bgp4mpRow(record.subtype);
  if (row.content == Bgp4mpRow::obsolete) {
    ++counts_.recordsSkipped;
    return;
  }
  const Peer peer = readBgp4mpHead(body, row);
  if (row.content == Bgp4mpRow::stateChange) {
    body.u32();  // old state, new state
    ++counts_.stateChanges;
    return;
  }
  messages_.decode(body.rest(), {record.seconds, peer, row.addPath}, problems);
}

}  // namespace CommTool
