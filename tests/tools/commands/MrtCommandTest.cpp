// Tests of `mrt` through the whole command: files in; text, error lines and exit status out.
#include "tools/bgp-communities/commands/MrtCommand.h"

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <sstream>

#include "tests/tools/MrtBytes.h"
#include "tests/tools/TempFile.h"
#include "tests/tools/commands/Outcome.h"
#include "tools/bgp-communities/input/Input.h"
#include "tools/bgp-communities/mrt/MrtReader.h"

namespace CommTool {
namespace {

Outcome run(const MrtOptions& options) {
  return outcomeOf([&](int out, std::ostream& e) { return runMrt(options, out, e); });
}
MrtOptions optionsFor(const TempFile& input, bool routes = false) {
  return {.files = {input.path()}, .routes = routes};
}
Outcome run(const std::vector<std::string>& files, bool routes = true) {
  return run(MrtOptions{.files = files, .routes = routes});
}

Bytes announcement(U8 network) {
  return messageAs4(update({}, communities({0x10002, 0x10001, 0x10002}), {8, network}));
}
std::string lineOf(U8 network) {
  return "1000|A|192.0.2.1|65001|" + std::to_string(network) + ".0.0.0/8|1:1 1:2|||\n";
}

Bytes goodFile() {
  return announcement(10).add(announcement(11)).add(messageAs4(update({8, 10}, {}, {})));
}
const std::string goodLines = lineOf(10) + lineOf(11) + "1000|W|192.0.2.1|65001|10.0.0.0/8||||\n";

// The text with single blanks, so that it does not depend on the widths of columns.
std::string squeezed(const std::string& text) {
  std::string narrow;
  std::ranges::unique_copy(text, std::back_inserter(narrow),
                           [](char a, char b) { return a == ' ' && b == ' '; });
  return narrow;
}

// The first `length` octets.
Bytes cutAt(Bytes octets, std::size_t length) {
  octets.resize(length);
  return octets;
}

Bytes compressed(const Bytes& octets, int (*addFilter)(archive*)) {
  Bytes result;
  result.resize(octets.size() + 100000);
  std::size_t used = 0;
  archive* stream = archive_write_new();
  addFilter(stream);
  archive_write_set_format_raw(stream);
  archive_write_set_bytes_in_last_block(stream, 1);
  archive_write_open_memory(stream, result.data(), result.size(), &used);
  archive_entry* entry = archive_entry_new();
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_write_header(stream, entry);
  archive_write_data(stream, octets.data(), octets.size());
  archive_entry_free(entry);
  archive_write_free(stream);
  result.resize(used);
  return result;
}

TEST(MrtCommand, ReadsEveryCompressionByContent) {
  // Larger than a block, so that some records span two blocks.
  Bytes file;
  std::string lines;
  for (int i = 0; i < 4000; ++i) {
    file.add(goodFile());
    lines += goodLines;
  }
  for (const auto filter : {archive_write_add_filter_none, archive_write_add_filter_gzip,
                            archive_write_add_filter_bzip2, archive_write_add_filter_xz,
                            archive_write_add_filter_zstd}) {
    const TempFile input(compressed(file, filter));
    const Outcome outcome = run({input.path()});
    EXPECT_EQ(outcome.status, ExitStatus::fine);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(outcome.out == lines);
  }
}

TEST(MrtCommand, TruncationLosesOnlyWhatWasCutOff) {
  const Bytes file = goodFile();
  std::vector<std::size_t> ends{0};
  for (const Bytes& record : {announcement(10), announcement(11)}) {
    ends.push_back(ends.back() + record.size());
  }
  for (std::size_t length = 0; length < file.size(); ++length) {
    const TempFile input(cutAt(file, length));
    const Outcome outcome = run({input.path()});
    const auto end = std::upper_bound(ends.begin(), ends.end(), length) - 1;
    const bool whole = *end == length;
    const std::size_t records = static_cast<std::size_t>(end - ends.begin());
    EXPECT_EQ(outcome.out, goodLines.substr(0, records * lineOf(10).size()));
    EXPECT_EQ(outcome.status, whole ? ExitStatus::fine : ExitStatus::damaged) << length;
    const std::string place = "bgp-communities: " + input.path() + ": record " +
                              std::to_string(records + 1) + " at octet " + std::to_string(*end) +
                              ": record ";
    EXPECT_EQ(outcome.errors.substr(0, place.size()), whole ? "" : place);
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), whole ? 0 : 1);
  }
}

TEST(MrtCommand, GoesOnBehindADamagedRecord) {
  const TempFile input(announcement(10).add(mrt(99, 0, {1, 2})).add(announcement(11)));
  const Outcome outcome = run({input.path()});
  EXPECT_EQ(outcome.status, ExitStatus::damaged);
  EXPECT_EQ(outcome.out, lineOf(10) + lineOf(11));
  EXPECT_EQ(outcome.errors, "bgp-communities: " + input.path() + ": record 2 at octet " +
                                std::to_string(announcement(10).size()) +
                                ": unknown record type 99\n");
}

TEST(MrtCommand, GoesOnBehindADamagedFile) {
  Bytes lost = announcement(10);
  lost.add(Bytes().u32(0).u16(16).u16(4).u32(0xFFFFFFFF)).add(announcement(12));
  const TempFile first(lost);
  const TempFile second(announcement(11));
  const Outcome outcome = run({first.path(), second.path(), "/nonexistent/file"});
  EXPECT_EQ(outcome.status, ExitStatus::damaged);
  EXPECT_EQ(outcome.out, lineOf(10) + lineOf(11));
  EXPECT_NE(outcome.errors.find(": record length 4294967295 is more than "), std::string::npos);
  EXPECT_NE(outcome.errors.find("/nonexistent/file: No such file"), std::string::npos);
}

TEST(MrtCommand, TellsUnreadableFromEmpty) {
  const TempFile empty;
  EXPECT_EQ(run({empty.path()}).status, ExitStatus::fine);
  EXPECT_EQ(run({empty.path()}, false).status, ExitStatus::fine);
  EXPECT_EQ(run({"/nonexistent/file", "/tmp"}).status, ExitStatus::impossible);
  EXPECT_EQ(run({"/tmp"}).errors, "bgp-communities: /tmp: Is a directory\n");
}

// Files of another format are noticed at their first record. Later the same damage has other
// causes.
TEST(MrtCommand, AsksWhetherAFileIsMrtAtItsFirstRecordOnly) {
  const TempFile text(Bytes().fill(28, 't'));
  EXPECT_TRUE(run({text.path()}).errors.ends_with(" is more than 16777216; not an MRT file?\n"));
  const TempFile lost(announcement(10).fill(28, 't'));
  EXPECT_TRUE(run({lost.path()}).errors.ends_with(" is more than 16777216\n"));
}

// The times are the earliest and the latest of all files, in whatever order the files are given.
TEST(MrtCommand, SummaryShowsTheTimeSpanOfTheRecords) {
  Bytes late = announcement(10);
  late[1] = 16;  // the second octet of the seconds
  const TempFile second(late);
  const TempFile first(announcement(11));
  const std::string text = squeezed(run({second.path(), first.path()}, false).out);
  EXPECT_NE(text.find("first record 1970-01-01T00:16:40Z\nlast record 1970-01-13T03:32:56Z\n"
                      " time between them 12 d 03:16:16\n"),
            std::string::npos)
      << text;
  const TempFile empty;
  EXPECT_EQ(run({empty.path()}, false).out.find("first record"), std::string::npos);
  const MrtOptions json{.files = {empty.path()}, .json = true, .summary = true};
  EXPECT_NE(run(json).out.find(R"("first_record":null,"last_record":null)"), std::string::npos);
}

// A damaged gzip file loses no route before the damage.
TEST(MrtCommand, DeliversWhatCameBeforeDamagedGzip) {
  const Bytes gzip = compressed(goodFile(), archive_write_add_filter_gzip);
  const Bytes cut = cutAt(gzip, gzip.size() - 8);  // without checksum and length
  Bytes changed = gzip;
  changed[gzip.size() - 8] ^= 1;
  Bytes followed = gzip;
  followed.add(Bytes{0, 0, 2});
  struct Row {
    const Bytes& file;
    const char* damage;
  };
  for (const Row& row : {Row{cut, "truncated gzip"}, Row{changed, "broken gzip"},
                         Row{followed, "data after the end of the gzip stream"}}) {
    const TempFile input(row.file);
    const Outcome outcome = run({input.path()});
    EXPECT_EQ(outcome.status, ExitStatus::damaged) << row.damage;
    EXPECT_EQ(outcome.out, goodLines) << row.damage;
    EXPECT_NE(outcome.errors.find(row.damage), std::string::npos) << outcome.errors;
  }
  const TempFile padded(Bytes(gzip).fill(1000, 0));
  EXPECT_EQ(run({padded.path()}).status, ExitStatus::fine);
  const TempFile twice(Bytes(gzip).add(gzip));
  EXPECT_EQ(run({twice.path()}).out, goodLines + goodLines);
}

TEST(MrtCommand, SurvivesEveryTruncationOfEveryCompression) {
  for (const auto filter : {archive_write_add_filter_gzip, archive_write_add_filter_bzip2,
                            archive_write_add_filter_xz, archive_write_add_filter_zstd}) {
    const Bytes whole = compressed(goodFile(), filter);
    for (std::size_t length = 1; length < whole.size(); ++length) {
      const TempFile input(cutAt(whole, length));
      const Outcome outcome = run({input.path()});
      EXPECT_EQ(outcome.status, ExitStatus::damaged) << length << " of " << whole.size();
      EXPECT_EQ(outcome.out, goodLines.substr(0, outcome.out.size()));
    }
  }
}

TEST(MrtCommand, SummaryShowsTheFigures) {
  const TempFile input(goodFile());
  const Outcome outcome = run({input.path()}, false);
  EXPECT_EQ(outcome.status, ExitStatus::fine);
  const std::string summary = "\n" + squeezed(outcome.out);
  for (const char* line :
       {"files 1", "records 3", "BGP messages 3", "routes announced 2", "routes withdrawn 1",
        "routes at the end 1", " routes with a list 1 0 0 0", " distinct lists 1 0 0 0",
        " distinct communities 2 0 0 0", "first record 1970-01-01T00:16:40Z",
        "last record 1970-01-01T00:16:40Z", " time between them 00:00:00",
        " 1 standard: 1:1 1:2"}) {
    EXPECT_NE(summary.find('\n' + std::string(line) + '\n'), summary.npos) << line << summary;
  }
}

// One route with a list of each kind; the last has an extended community that
// policies know no text for.
Bytes everyKind() {
  Bytes attributes = communities({0x10001, 0xFFFFFF01});
  attributes.add(attribute(32, Bytes().u32(4200000000).u32(1).u32(2)));
  attributes.add(attribute(
      16, Bytes().u32(0x0002FDE8).u32(100).u32(0x030B4000).u32(7).u32(0x06FF0000).u32(1)));
  attributes.add(attribute(25, Bytes{0, 2, 0x20, 1}.fill(14, 0).u16(9)));
  return messageAs4(update({}, attributes, {8, 12}));
}

TEST(MrtCommand, PrintsEveryKind) {
  const TempFile input(everyKind());
  EXPECT_EQ(run({input.path()}).out,
            "1000|A|192.0.2.1|65001|12.0.0.0/8|1:1 no-export|4200000000:1:2|"
            "RT:65000:100 Color:CO(01):7 0x06ff000000000001|2001:::9\n");
}

TEST(MrtCommand, KeepsRoutesOfWhichAListMatches) {
  const Bytes withdrawal = messageAs4(update({8, 10}, {}, {}));
  const TempFile input(announcement(10).add(everyKind()).add(announcement(11)).add(withdrawal));
  struct Row {
    const char* regex;
    int routes;
    const char* held;  // at the end
  };
  for (const Row& row : {Row{"1:1", 3, "2"}, Row{"^1:1 1:2$", 2, "1"}, Row{"no-export", 1, "1"},
                         Row{"65535:65281", 1, "1"}, Row{"^4200000000:1:2$", 1, "1"},
                         Row{"RT:65000:100", 1, "1"}, Row{"^65000:100 ", 1, "1"},
                         Row{"2001:", 1, "1"}, Row{"^$", 0, "0"}, Row{"4294967295", 0, "0"}}) {
    MrtOptions options = optionsFor(input, true);
    options.match.emplace(row.regex);
    const Outcome lines = run(options);
    EXPECT_EQ(std::ranges::count(lines.out, '\n'), row.routes) << row.regex << lines.out;
    EXPECT_EQ(lines.status, row.routes ? ExitStatus::fine : ExitStatus::noMatch) << row.regex;
    options.routes = false;
    const std::string summary = squeezed(run(options).out);
    const std::string held = "routes at the end " + std::string(row.held) + "\n";
    EXPECT_NE(summary.find(held), summary.npos) << row.regex << summary;
  }
}

TEST(MrtCommand, VerifiesEveryKind) {
  const TempFile input(announcement(10).add(everyKind()));
  const Outcome outcome = run(MrtOptions{.files = {input.path()}, .verify = true});
  EXPECT_EQ(outcome.status, ExitStatus::fine);
  EXPECT_EQ(outcome.errors, "");
}

std::vector<rapidjson::Document> objectsOf(const std::string& text) {
  std::vector<rapidjson::Document> objects;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    objects.emplace_back();
    objects.back().Parse<rapidjson::kParseValidateEncodingFlag>(line.c_str());
    EXPECT_FALSE(objects.back().HasParseError()) << line;
  }
  return objects;
}

TEST(MrtCommand, FiltersCombine) {
  const Bytes withdrawal = messageAs4(update({8, 10, 8, 12}, {}, {}));
  const Bytes two = messageAs4(update({}, communities({5}), {16, 10, 1, 16, 11, 1}));
  const TempFile input(announcement(10).add(everyKind()).add(two).add(withdrawal));
  using enum CommunityKind;
  struct Row {
    std::vector<CommunityKind> kinds;
    const char* within;
    std::optional<U32> peerAs;
    const char* match;
    int routes;
  };
  for (const Row& row :
       {Row{{}, "", {}, "", 6}, Row{{}, "10.0.0.0/8", {}, "", 3}, Row{{}, "10.1.0.0/16", {}, "", 1},
        Row{{}, "::/0", {}, "", 0}, Row{{}, "", 65001, "", 6}, Row{{}, "", 65002, "", 0},
        Row{{standard}, "", {}, "", 4}, Row{{large}, "", {}, "", 1},
        Row{{large, extended}, "", {}, "^4200", 1}, Row{{extended}, "", {}, "^4200", 0},
        Row{{ip6Extended}, "12.0.0.0/8", 65001, "2001", 1},
        Row{{ip6Extended}, "10.0.0.0/8", 65001, "2001", 0},
        Row{{standard}, "10.0.0.0/8", {}, "0:5", 1}}) {
    MrtOptions options = optionsFor(input, true);
    for (const CommunityKind kind : row.kinds) {
      if (!options.filter.kinds) options.filter.kinds.emplace();
      options.filter.kinds->add(kind);
    }
    options.filter.within = readPrefixText(row.within);
    options.filter.peerAs = row.peerAs;
    if (*row.match != 0) options.match.emplace(row.match);
    const Outcome outcome = run(options);
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), row.routes)
        << row.within << row.match << outcome.out;
    EXPECT_EQ(outcome.status, row.routes > 0 ? ExitStatus::fine : ExitStatus::noMatch);
  }
}

TEST(MrtCommand, OtherKindsAreLeftOut) {
  const TempFile input(everyKind());
  MrtOptions options = optionsFor(input);
  options.filter.kinds.emplace().add(CommunityKind::large);
  const std::string summary = run(options).out;
  EXPECT_NE(summary.find("large"), std::string::npos);
  EXPECT_EQ(summary.find("standard"), std::string::npos);
  options.routes = true;
  EXPECT_EQ(run(options).out, "1000|A|192.0.2.1|65001|12.0.0.0/8||4200000000:1:2||\n");
  options.json = true;
  const auto objects = objectsOf(run(options).out);
  ASSERT_EQ(objects.size(), 1U);
  EXPECT_TRUE(objects[0]["communities"].Empty());
  EXPECT_EQ(objects[0]["large_communities"].Size(), 1U);
  EXPECT_EQ(objects[0]["raw"].MemberCount(), 1U);
}

TEST(MrtCommand, JsonHasEveryMember) {
  const TempFile input(everyKind());
  EXPECT_EQ(run(MrtOptions{.files = {input.path()}, .json = true}).out,
            R"({"v":1,"file":")" + input.path() +
                R"(","record":1,"offset":0,"time":"1970-01-01T00:16:40Z","action":"announce",)"
                R"("peer":{"ip":"192.0.2.1","as":65001},"prefix":"12.0.0.0/8","path_id":null,)"
                R"("communities":["1:1","no-export"],"large_communities":["4200000000:1:2"],)"
                R"("extended_communities":[{"text":"RT:65000:100","hex":"0002fde800000064"},)"
                R"({"text":"Color:CO(01):7","hex":"030b400000000007"},)"
                R"({"text":"0x06ff000000000001","hex":"06ff000000000001"}],)"
                R"("ipv6_extended_communities":[{"text":"2001:::9",)"
                R"("hex":"0002200100000000000000000000000000000009"}],)"
                R"("raw":{"8":"00010001ffffff01","32":"fa56ea000000000100000002",)"
                R"("16":"0002fde800000064030b40000000000706ff000000000001",)"
                R"("25":"0002200100000000000000000000000000000009"},"errors":[]})"
                "\n");
}

// Routes that were decoded before an error of their record have it in "errors" as well.
TEST(MrtCommand, JsonTellsTheErrorsOfTheRecord) {
  const Bytes entry = ribEntry(0, communities({0x10002}));
  Bytes file = peerIndex();
  file.add(rib(8, {8, 10}, 2, Bytes().u16(1).u32(0).u32(7).u16(0).add(ribEntry(9, {}))));
  file.add(rib(2, {8, 11}, 1, entry)).add(messageAs4(update({}, attribute(8, {1}), {8, 12})));
  const TempFile input(file);
  const Outcome outcome = run(MrtOptions{.files = {input.path()}, .json = true});
  EXPECT_EQ(outcome.status, ExitStatus::damaged);
  const auto objects = objectsOf(outcome.out);
  ASSERT_EQ(objects.size(), 3U);
  EXPECT_EQ(objects[0]["path_id"].GetUint(), 7U);
  EXPECT_STREQ(objects[0]["action"].GetString(), "table");
  ASSERT_EQ(objects[0]["errors"].Size(), 1U);
  EXPECT_EQ(objects[1]["errors"].Size(), 0U);
  EXPECT_STREQ(objects[2]["action"].GetString(), "withdraw");
  EXPECT_STREQ(objects[2]["errors"][0].GetString(),
               "COMMUNITIES attribute of 1 octets: not a positive multiple of 4");
  EXPECT_EQ(objects[2]["raw"].MemberCount(), 0U);
  EXPECT_TRUE(objects[2]["communities"].Empty());
}

TEST(MrtCommand, JsonSummaryIsOneObject) {
  Bytes flagged = communities({7, 8, 9});
  flagged[0] = 0xE0;
  Bytes extendedLength{0xD0, 8};
  extendedLength.u16(4).u32(7);
  const TempFile input(everyKind()
                           .add(messageAs4(update({}, flagged, {8, 30, 8, 31})))
                           .add(messageAs4(update({}, extendedLength, {8, 32})))
                           .add(mrt(99, 0, {}))
                           .add(mrt(98, 0, {})));
  const MrtOptions options{.files = {input.path(), "/nonexistent/file"},
                           .json = true,
                           .summary = true,
                           .top = 1,
                           .verify = true};
  const auto objects = objectsOf(run(options).out);
  ASSERT_EQ(objects.size(), 1U);
  const rapidjson::Document& summary = objects[0];
  EXPECT_EQ(summary["v"].GetUint(), 1U);
  EXPECT_EQ(summary["records"].GetUint(), 5U);
  EXPECT_STREQ(summary["first_record"].GetString(), "1970-01-01T00:16:40Z");
  EXPECT_STREQ(summary["last_record"].GetString(), "1970-01-01T00:16:40Z");
  EXPECT_EQ(summary["routes"].GetUint(), 4U);
  EXPECT_EQ(summary["errors"]["unknown record type N"].GetUint(), 2U);
  EXPECT_EQ(summary["errors"]["No such file or directory"].GetUint(), 1U);
  EXPECT_EQ(summary["standard"]["lists"]["references"].GetUint(), 4U);
  EXPECT_EQ(summary["standard"]["values"]["occurrences"].GetUint(), 9U);
  EXPECT_EQ(summary["ipv6_extended"]["values"]["unique"].GetUint(), 1U);
  ASSERT_EQ(summary["top"].Size(), 1U);
  EXPECT_STREQ(summary["top"][0]["kind"].GetString(), "standard");
  EXPECT_STREQ(summary["top"][0]["text"].GetString(), "0:7 0:8 0:9");
  EXPECT_EQ(summary["top"][0]["references"].GetUint(), 2U);
  EXPECT_EQ(summary["flags"]["partial"]["standard"].GetUint(), 1U);
  EXPECT_EQ(summary["flags"]["extended_length"]["standard"].GetUint(), 1U);
  EXPECT_EQ(summary["flags"]["partial"]["large"].GetUint(), 0U);
}

// With --routes, the summary is printed after the routes, in text and in JSON.
TEST(MrtCommand, RoutesAndSummaryGoTogether) {
  const TempFile input(goodFile());
  MrtOptions options = optionsFor(input);
  options.routes = options.summary = true;
  EXPECT_EQ(run(options).out.find(goodLines + "files "), 0U);
  options.json = true;
  const auto objects = objectsOf(run(options).out);
  ASSERT_EQ(objects.size(), 4U);
  EXPECT_TRUE(objects[2].HasMember("prefix"));
  EXPECT_TRUE(objects[3].HasMember("top"));
}

TEST(MrtCommand, EndsQuietlyWhenTheReaderGoes) {
  const TempFile input(goodFile());
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  std::ostringstream errors;
  EXPECT_EQ(runMrt(optionsFor(input, true), ends[1], errors), ExitStatus::fine);
  EXPECT_EQ(errors.str(), "");
  std::signal(SIGPIPE, before);
  ::close(ends[1]);
}

// The stream ends within a record: no further record may be read.
TEST(MrtReader, EndsAtALengthThatTheStreamDoesNotHave) {
  const TempFile input(Bytes().u32(0).u16(16).u16(4).u32(MrtReader::maxLength).fill(100, 0));
  Input stream(input.path());
  MrtReader reader(stream);
  EXPECT_THROW(reader.next(), Malformed);
  EXPECT_EQ(reader.position().number, 1U);
  EXPECT_EQ(stream.take(1).size(), 0U);
}

}  // namespace
}  // namespace CommTool
