#include "tools/bgp-communities/mrt/MrtDecoder.h"

#include <algorithm>

namespace CommTool {

namespace {

// The format of one BGP4MP subtype (RFC 6396, section 4.4; RFC 8050, section 3).
struct Bgp4mpRow {
  // Obsolete subtypes have no specified format (RFC 6396, appendix B), so they are only counted.
  enum Content : U8 { stateChange, message, obsolete };
  U16 subtype;
  Content content;
  bool longAs;   // AS numbers of four octets and not of two
  bool local;    // a message that the collector sent
  bool addPath;  // a path identifier before each prefix
};

// The layouts differ in three independent properties, so a table replaces twelve cases. The numbers
// of the subtypes follow no rule.
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

// The row of a subtype. Throws Malformed for an unknown one.
const Bgp4mpRow& bgp4mpRow(U16 subtype) {
  const auto* row = std::ranges::find(bgp4mpRows, subtype, &Bgp4mpRow::subtype);
  if (row == std::end(bgp4mpRows)) {
    throw Malformed("BGP4MP of unknown subtype " + std::to_string(subtype));
  }
  return *row;
}

// Reads the fields that all BGP4MP records begin with, up to the message or the states.
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

// A record without an intact content is counted as well: its header was intact.
void MrtDecoder::decode(const MrtRecord& record, Problems& problems) {
  counts_.addRecord(record.seconds);
  try {
    dispatch(record, problems);
  } catch (const Malformed& malformed) {
    problems.add(malformed.what());
  }
  counts_.damaged += problems.empty() ? 0 : 1;
}

// Known types without BGP routes are skipped. An unknown type is an error, because it more likely
// means damage than a new type.
void MrtDecoder::dispatch(const MrtRecord& record, Problems& problems) {
  // Only BGP4MP records are read with it; tables have readers of their own.
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

// State changes have no routes, but their fields are read, so that truncated records are noticed.
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
