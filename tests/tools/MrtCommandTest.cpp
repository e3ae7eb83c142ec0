// The command as a user meets it: files in, text, error lines and status out.
#include "tools/bgp-communities/MrtCommand.h"

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <sstream>

#include "tests/tools/MrtBytes.h"
#include "tests/tools/TempFile.h"
#include "tools/bgp-communities/Input.h"
#include "tools/bgp-communities/MrtReader.h"

namespace CommTool {
namespace {

struct Outcome {
  ExitStatus status{};
  std::string out;
  std::string errors;
};

Outcome run(const MrtOptions& options) {
  const TempFile out;
  std::ostringstream errors;
  const ExitStatus status = runMrt(options, out.fd(), errors);
  return {status, out.contents(), errors.str()};
}
Outcome run(const std::vector<std::string>& files, bool routes = true) {
  MrtOptions options;
  options.files = files;
  options.routes = routes;
  return run(options);
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
  // Larger than any block, so that records lie across borders.
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
    Bytes cut = file;
    cut.resize(length);
    const TempFile input(cut);
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

// Whatever happened to a gzip file, the routes before it are there.
TEST(MrtCommand, DeliversWhatCameBeforeDamagedGzip) {
  const Bytes gzip = compressed(goodFile(), archive_write_add_filter_gzip);
  Bytes cut = gzip;
  cut.resize(gzip.size() - 8);  // its checksum and length
  Bytes changed = gzip;
  changed[gzip.size() - 8] ^= 1;
  Bytes followed = gzip;
  followed.add(Bytes{0, 0, 2});
  struct Row {
    const Bytes& file;
    const char* damage;
  };
  for (const Row& row : {Row{cut, "truncated gzip"}, Row{changed, "broken gzip"},
                         Row{followed, "octets behind the end of gzip"}}) {
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
      Bytes cut = whole;
      cut.resize(length);
      const TempFile input(cut);
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
  std::istringstream lines(outcome.out);
  std::map<std::string, std::string> figures;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t name = line.find("  ", line.find_first_not_of(' '));
    const std::size_t value = line.find_first_not_of(' ', name);
    figures[line.substr(0, name)] = line.substr(value, line.find(' ', value) - value);
  }
  const std::map<std::string, std::string> expected = {{"files", "1"},
                                                       {"records", "3"},
                                                       {"BGP messages", "3"},
                                                       {"routes announced", "2"},
                                                       {"routes withdrawn", "1"},
                                                       {"routes held", "1"},
                                                       {"  routes with a list", "1"},
                                                       {"  distinct lists", "1"},
                                                       {"  distinct communities", "2"}};
  for (const auto& [name, value] : expected) {
    EXPECT_EQ(figures[name], value) << name << "\n" << outcome.out;
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
    MrtOptions options;
    options.files = {input.path()};
    options.routes = true;
    options.match.emplace(row.regex);
    const Outcome lines = run(options);
    EXPECT_EQ(std::ranges::count(lines.out, '\n'), row.routes) << row.regex << lines.out;
    EXPECT_EQ(lines.status, row.routes ? ExitStatus::fine : ExitStatus::noMatch) << row.regex;
    options.routes = false;
    const std::string summary = run(options).out;
    const std::size_t name = summary.find("routes held");
    ASSERT_NE(name, std::string::npos);
    const std::size_t value = summary.find_first_not_of(' ', name + 11);
    EXPECT_EQ(summary.substr(value, summary.find('\n', value) - value), row.held) << row.regex;
  }
}

TEST(MrtCommand, VerifiesEveryKind) {
  const TempFile input(announcement(10).add(everyKind()));
  MrtOptions options;
  options.files = {input.path()};
  options.verify = true;
  const Outcome outcome = run(options);
  EXPECT_EQ(outcome.status, ExitStatus::fine);
  EXPECT_EQ(outcome.errors, "");
}

TEST(MrtCommand, EndsQuietlyWhenTheReaderGoes) {
  const TempFile input(goodFile());
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  std::ostringstream errors;
  MrtOptions options;
  options.files = {input.path()};
  options.routes = true;
  EXPECT_EQ(runMrt(options, ends[1], errors), ExitStatus::fine);
  EXPECT_EQ(errors.str(), "");
  std::signal(SIGPIPE, before);
  ::close(ends[1]);
}

// The stream ends within the record: nothing is left to take for a next one.
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
