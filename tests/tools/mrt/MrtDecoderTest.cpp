// Tests of the decoder: records in, delivered routes and problems out.
#include "tools/bgp-communities/mrt/MrtDecoder.h"

#include <gtest/gtest.h>

#include "tests/tools/MrtBytes.h"
#include "tools/bgp-communities/bgp/AddressText.h"

namespace CommTool {
namespace {

// Writes each route as a line of text: action, peer, AS, prefix, the four attributes in
// hexadecimal.
class Recorder : public RouteSink {
 public:
  void handleRoutes(const RouteBatch& batch) override {
    for (const Nlri& nlri : batch.routes) {
      text += static_cast<char>(batch.action);
      text.append(batch.peer.local ? "l " : " ").append(AddressText(batch.peer.address).view());
      text.append(" ").append(std::to_string(batch.peer.as)).append(" ");
      text.append(AddressText(nlri.prefix).view()).append(nlri.prefix.multicast ? "m" : "");
      text += nlri.pathId ? std::string("#").append(std::to_string(*nlri.pathId)) : "";
      for (std::size_t kind = 0; kind < communityKinds; ++kind) {
        addValue(batch.communities[static_cast<CommunityKind>(kind)]);
      }
      text += "\n";
    }
  }

  std::string text;

 private:
  void addValue(const CommunityAttributes::Value& value) {
    text += value ? " " : " -";
    for (const U8 octet : value.value_or(Octets())) {
      text.push_back("0123456789abcdef"[octet >> 4]);
      text.push_back("0123456789abcdef"[octet & 15]);
    }
  }
};

// Decodes whole records and collects their problems.
struct Decoding {
  explicit Decoding(const Bytes& octets) {
    MrtDecoder decoder(recorder, counts);
    OctetReader reader(octets, "test");
    for (MrtRecord record; !reader.atEnd();) {
      record.seconds = reader.u32();
      record.type = static_cast<MrtType>(reader.u16());
      record.subtype = reader.u16();
      record.body = reader.octets(reader.u32());
      decoder.decode(record, problems);
    }
  }
  const std::string& routes() const { return recorder.text; }

  Recorder recorder;
  InputCounts counts;
  Problems problems;
};

const Bytes ten{8, 10};         // 10.0.0.0/8
const Bytes eleven{16, 11, 1};  // 11.1.0.0/16
const Bytes v6{32, 0x20, 1, 0xd, 0xb8};

Bytes mpReach(U16 afi, U8 safi, const Bytes& nlri) {
  return attribute(14, Bytes().u16(afi).u8(safi).u8(4).add({192, 0, 2, 1}).u8(0).add(nlri));
}
Bytes mpUnreach(U16 afi, U8 safi, const Bytes& nlri) {
  return attribute(15, Bytes().u16(afi).u8(safi).add(nlri));
}

TEST(MrtDecoder, DeliversWithdrawnThenAnnounced) {
  const Bytes attributes = communities({0x10002}).add(mpReach(2, 1, v6)).add(mpUnreach(2, 2, v6));
  const Decoding decoding(messageAs4(update(ten, attributes, eleven)));
  EXPECT_EQ(decoding.routes(),
            "W 192.0.2.1 65001 10.0.0.0/8 - - - -\n"
            "W 192.0.2.1 65001 2001:db8::/32m - - - -\n"
            "A 192.0.2.1 65001 11.1.0.0/16 00010002 - - -\n"
            "A 192.0.2.1 65001 2001:db8::/32 00010002 - - -\n");
  EXPECT_TRUE(decoding.problems.empty());
}

TEST(MrtDecoder, ReadsEveryBgp4mpSubtype) {
  const struct {
    U16 type, subtype;
    bool longAs, addPath;
    const char* action;
  } rows[] = {
      {16, 1, false, false, "A "},  {16, 4, true, false, "A "},  {16, 6, false, false, "Al "},
      {16, 7, true, false, "Al "},  {16, 8, false, true, "A "},  {16, 9, true, true, "A "},
      {16, 10, false, true, "Al "}, {16, 11, true, true, "Al "}, {17, 4, true, false, "A "}};
  for (const auto& row : rows) {
    Bytes body = row.type == 17 ? Bytes().u32(999999) : Bytes();
    body.add(bgp4mpHead(row.longAs));
    const Bytes nlri = row.addPath ? Bytes().u32(7).add(ten) : ten;
    body.add(update({}, {}, nlri));
    const Decoding decoding(mrt(row.type, row.subtype, body));
    EXPECT_EQ(decoding.routes(), std::string(row.action) + "192.0.2.1 65001 10.0.0.0/8" +
                                     (row.addPath ? "#7" : "") + " - - - -\n")
        << row.subtype;
  }
}

TEST(MrtDecoder, CountsWhatCarriesNoRoutes) {
  Bytes file = mrt(16, 5, bgp4mpHead(true).u16(6).u16(1));
  file.add(mrt(16, 0, bgp4mpHead(false).u16(1).u16(6)));
  file.add(messageAs4(message(4, {})));      // KEEPALIVE
  file.add(messageAs4(update({}, {}, {})));  // end of RIB
  file.add(messageAs4(update({}, mpReach(1, 128, ten).add(mpUnreach(25, 70, ten)), {})));
  file.add(mrt(11, 0, {1})).add(mrt(13, 6, {1}));  // OSPFv2, RIB_GENERIC
  const Decoding decoding(file);
  EXPECT_EQ(decoding.routes(), "");
  EXPECT_TRUE(decoding.problems.empty());
  EXPECT_EQ(decoding.counts.records, 7U);
  EXPECT_EQ(decoding.counts.stateChanges, 2U);
  EXPECT_EQ(decoding.counts.messages, 3U);
  EXPECT_EQ(decoding.counts.updates, 2U);
  EXPECT_EQ(decoding.counts.familiesSkipped, 2U);
  EXPECT_EQ(decoding.counts.recordsSkipped, 2U);
}

TEST(MrtDecoder, ReadsBothTableDumps) {
  Bytes v1 = Bytes().u32(0).add({10, 9, 8, 7}).u8(8).u8(1).u32(0).add({192, 0, 2, 9});
  v1.u16(64512).u16(7).add(communities({0xFFFFFF01}));
  // The short form of MP_REACH_NLRI in tables (only a next hop) and the full form.
  const Bytes shortReach = attribute(14, Bytes().u8(16).fill(16, 1));
  Bytes file = mrt(12, 1, v1).add(peerIndex());
  file.add(rib(4, v6, 2, ribEntry(0, shortReach).add(ribEntry(1, mpReach(2, 1, v6)))));
  file.add(rib(8, ten, 1, Bytes().u16(1).u32(0).u32(36).u16(7).add(communities({5}))));
  const Decoding decoding(file);
  EXPECT_EQ(decoding.problems.text(), "");
  EXPECT_EQ(decoding.routes(),
            "B 192.0.2.9 64512 10.0.0.0/8 ffffff01 - - -\n"
            "B 192.0.2.1 4200000000 2001:db8::/32 - - - -\n"
            "B 2001:db8::1 65001 2001:db8::/32 - - - -\n"
            "B 2001:db8::1 65001 10.0.0.0/8#36 00000005 - - -\n");
}

TEST(MrtDecoder, HandsOverEveryKindOfCommunity) {
  Bytes attributes = attribute(32, Bytes().fill(12, 1)).add(attribute(16, Bytes().fill(8, 2)));
  attributes.add(attribute(25, Bytes().fill(20, 3)));
  attributes.add({0xD0, 8, 0, 4, 0, 1, 0, 2});  // extended length
  EXPECT_EQ(Decoding(messageAs4(update({}, attributes, ten))).routes(),
            "A 192.0.2.1 65001 10.0.0.0/8 00010002 010101010101010101010101 0202020202020202 "
            "0303030303030303030303030303030303030303\n");
}

TEST(MrtDecoder, ClearsBitsBehindThePrefixLength) {
  const Bytes nlri{9, 10, 0xFF, 0, 32, 1, 2, 3, 4};
  EXPECT_EQ(Decoding(messageAs4(update({}, {}, nlri))).routes(),
            "A 192.0.2.1 65001 10.128.0.0/9 - - - -\n"
            "A 192.0.2.1 65001 0.0.0.0/0 - - - -\n"
            "A 192.0.2.1 65001 1.2.3.4/32 - - - -\n");
}

// Which routes of a malformed UPDATE are delivered, and which problem is reported.
TEST(MrtDecoder, UsesOfDamagedUpdatesWhatIsSafe) {
  const std::string announced = "A 192.0.2.1 65001 10.0.0.0/8 00000001 - - -\n";
  const std::string withdrawn = "W 192.0.2.1 65001 10.0.0.0/8 - - - -\n";
  const Bytes one = communities({1});
  const struct {
    Bytes message;
    std::string routes, problem;
  } rows[] = {
      {update({}, attribute(8, {1, 2, 3}), ten), withdrawn,
       "COMMUNITIES attribute of 3 octets: not a positive multiple of 4"},
      {update({}, communities({}), ten), withdrawn,
       "COMMUNITIES attribute of 0 octets: not a positive multiple of 4"},
      {update({}, attribute(32, Bytes().fill(8, 0)), ten), withdrawn,
       "LARGE_COMMUNITY attribute of 8 octets: not a positive multiple of 12"},
      {update({}, Bytes{0x40, 8, 4, 0, 0, 0, 1}, ten), withdrawn,
       "COMMUNITIES attribute without the flags optional and transitive"},
      {update({}, Bytes(one).add({0xC0, 9, 200, 1}), ten), withdrawn,
       "path attributes: 200 octets wanted, 1 left"},
      {update({}, Bytes(one).add({0xD0, 9, 4}), ten), withdrawn,
       "path attributes: 2 octets wanted, 1 left"},
      {update({}, Bytes(one).add(communities({2})), ten), announced, "path attribute 8 repeated"},
      {update({}, mpReach(2, 1, v6).add(mpReach(2, 1, v6)), ten), "", "path attribute 14 repeated"},
      {update({}, one, {200, 10}), "", "prefix length 200 is more than 32"},
      {update({33, 1, 2, 3, 4, 5}, one, ten), "", "prefix length 33 is more than 32"},
      {update({}, mpReach(2, 1, {129}), ten), "", "prefix length 129 is more than 128"},
      {update({}, one, {24, 10, 1}), "", "announced routes: 3 octets wanted, 2 left"},
      {message(2, {0, 9, 0}), "", "BGP message: 9 octets wanted, 1 left"},
      {update({}, one, ten).add({0, 0}), announced, "2 octets follow the BGP message"},
      {Bytes().fill(16, 0).u16(19).u8(4), "", "BGP message without its marker"},
      {Bytes().fill(16, 0xFF).u16(18).u8(2), "", "BGP message length 18 is less than its header"},
      {Bytes().fill(16, 0xFF).u16(0xFFFF).u8(2), "", "BGP message: 65516 octets wanted, 0 left"},
  };
  for (const auto& row : rows) {
    const Decoding decoding(messageAs4(row.message));
    EXPECT_EQ(decoding.routes(), row.routes) << row.problem;
    EXPECT_EQ(decoding.problems.text(), row.problem);
    EXPECT_EQ(decoding.counts.damaged, 1U);
  }
}

TEST(MrtDecoder, ReportsOneLineForDamagedRecords) {
  const Bytes good = ribEntry(0, communities({1}));
  const std::string route = "B 192.0.2.1 4200000000 10.0.0.0/8 00000001 - - -\n";
  const struct {
    Bytes file;
    std::string routes, problem;
  } rows[] = {
      {rib(2, ten, 1, good), "", "peer 0 is not in the peer index, which has 0 peers"},
      {peerIndex().add(rib(2, ten, 3, ribEntry(2, {}).add(ribEntry(9, {})).add(good))), route,
       "peer 2 is not in the peer index, which has 2 peers (and 1 more)"},
      {peerIndex().add(rib(2, ten, 65535, good)), route, "RIB record: 2 octets wanted, 0 left"},
      {peerIndex().add(rib(2, {33, 1, 2, 3, 4, 5}, 1, good)), "",
       "prefix length 33 is more than 32"},
      {peerIndex().add(rib(2, ten, 1, good)).add(rib(2, ten, 0, {7})), route,
       "1 octets follow the last entry"},
      {peerIndex().add(rib(2, ten, 2, ribEntry(0, attribute(8, {1})).add(good))), route,
       "COMMUNITIES attribute of 1 octets: not a positive multiple of 4"},
      {mrt(13, 1, Bytes().u32(1).u16(0).u16(1)), "", "PEER_INDEX_TABLE: 1 octets wanted, 0 left"},
      {mrt(13, 13, {}), "", "TABLE_DUMP_V2 of unknown subtype 13"},
      {mrt(12, 3, {}), "", "TABLE_DUMP of unknown subtype 3"},
      {mrt(16, 12, {}), "", "BGP4MP of unknown subtype 12"},
      {mrt(17, 4, {0, 0}), "", "BGP4MP record: 4 octets wanted, 2 left"},
      {mrt(99, 0, {}), "", "unknown record type 99"},
      {mrt(16, 4, Bytes().u32(1).u32(2).u16(0).u16(3)), "", "peer address of unknown family 3"},
  };
  for (const auto& row : rows) {
    const Decoding decoding(row.file);
    EXPECT_EQ(decoding.routes(), row.routes) << row.problem;
    EXPECT_EQ(decoding.problems.text(), row.problem);
  }
}

// A record that is cut off anywhere ends decoding with a problem. The fuzz target MrtReader changes
// octets as well.
TEST(MrtDecoder, SurvivesEveryCut) {
  const Bytes announcement = communities({1, 2}).add(mpReach(2, 1, v6)).add(mpUnreach(1, 2, ten));
  const Bytes bodies[] = {
      bgp4mpHead(true).add(update(ten, announcement, eleven)),
      Bytes().u32(0).add(ten).u16(2).add(ribEntry(0, announcement)).add(ribEntry(1, announcement)),
  };
  for (const Bytes& body : bodies) {
    for (std::size_t length = 0; length <= body.size(); ++length) {
      const Bytes octets(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(length));
      const Bytes record = &body == bodies ? mrt(16, 4, octets) : mrt(13, 2, octets);
      const Decoding decoding(peerIndex().add(record));
      EXPECT_EQ(length == body.size(), decoding.problems.empty()) << length;
    }
  }
}

}  // namespace
}  // namespace CommTool
