// Tests of the progress line and of the counts of errors by kind.
#include "tools/bgp-communities/output/Progress.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "tests/tools/TempFile.h"
#include "tools/bgp-communities/input/ErrorCounts.h"

namespace CommTool {
namespace {

using Seconds = std::chrono::duration<double>;

TEST(Progress, TellsWhatIsKnown) {
  EXPECT_EQ(progressText(12'500'000, 50'000'000, 260, Seconds(2)),
            "12.5 of 50.0 MB (25%), 260 records, 6 s left");
  EXPECT_EQ(progressText(1'000'000, 0, 7, Seconds(2)), "1.0 MB, 7 records");
  EXPECT_EQ(progressText(0, 100, 0, Seconds(0)), "0.0 of 0.0 MB (0%), 0 records");
  // The file has grown since its size was taken.
  EXPECT_EQ(progressText(3'000'000, 2'000'000, 1, Seconds(5)),
            "3.0 of 3.0 MB (100%), 1 records, 0 s left");
}

TEST(Progress, KnowsTheSizeOfRegularFilesOnly) {
  const std::vector<U8> octets(100);
  const TempFile one(octets);
  const TempFile two(octets);
  EXPECT_EQ(bytesOfFiles({one.path(), two.path()}), 200U);
  EXPECT_EQ(bytesOfFiles({one.path(), "-"}), 0U);
  EXPECT_EQ(bytesOfFiles({"/dev/null"}), 0U);
  EXPECT_EQ(bytesOfFiles({one.path(), "/nonexistent/file"}), 0U);
}

TEST(Progress, ShowsNothingAtFirstAndErasesWhatItShowed) {
  std::ostringstream terminal;
  {
    Progress progress(terminal, 1000);
    progress.bytesRead(10, 1);
    EXPECT_EQ(terminal.str(), "");
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    progress.bytesRead(10, 2);  // the amount has not changed
    EXPECT_EQ(terminal.str(), "");
    progress.bytesRead(500, 3);
    EXPECT_NE(terminal.str().find("\r0.0 of 0.0 MB (50%), 3 records"), std::string::npos);
    progress.bytesRead(600, 4);  // the last update was too recent
    EXPECT_EQ(terminal.str().find("4 records"), std::string::npos);
  }
  const std::string text = terminal.str();
  const std::size_t width = text.find('\r', 1) - 1;
  EXPECT_EQ(text.substr(1 + width), "\r" + std::string(width, ' ') + "\r");
}

TEST(ErrorCounts, ErrorsThatDifferInFiguresAreOneKind) {
  EXPECT_EQ(kindOfError("record length 4294967295 is more than 16777216"),
            "record length N is more than N");
  EXPECT_EQ(kindOfError("IPv6 ADDRESS of 19 octets (12)"), "IPv6 ADDRESS of N octets (N)");
  ErrorCounts counts;
  counts.add("unknown record type 9");
  Problems problems;
  for (U32 type = 0; type < 20; ++type) problems.add("unknown record type " + std::to_string(type));
  counts.add(problems);
  const std::map<std::string, U64> expected = {{"more in the same records", 12},
                                               {"unknown record type N", 9}};
  EXPECT_EQ(counts.counts(), expected);
}

}  // namespace
}  // namespace CommTool
