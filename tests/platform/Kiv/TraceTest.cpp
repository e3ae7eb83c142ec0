#include "Kiv/Trace.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Kiv/Exception.h"

namespace {

constinit Kiv::TraceHandle bgpParse("BgpParse");
constinit Kiv::TraceHandle ovBgp("OvBgp");

// Collects the traced lines. Afterwards all levels are off and the default sink is installed.
class TraceTest : public testing::Test {
 protected:
  TraceTest() {
    Kiv::traceSinkIs([this](std::string_view line) { lines_.emplace_back(line); });
  }
  ~TraceTest() override {
    Kiv::traceLevelsIs("");
    Kiv::traceSinkIs({});
  }

  std::vector<std::string> lines_;
};

// The levels of `handle` that are on, as a text of digits.
std::string levelsOf(const Kiv::TraceHandle& handle) {
  std::string levels;
  for (unsigned level = 0; level < 64; ++level) {
    if (handle.enabled(level)) levels += std::to_string(level);
  }
  return levels;
}

TEST_F(TraceTest, SwitchesTheLevelsThatTheTextSays) {
  const struct {
    const char* text;
    const char* bgpParse;
    const char* ovBgp;
  } cases[] = {
      {"", "", ""},
      {"BgpParse/8", "8", ""},
      {"BgpParse/8,OvBgp/0-9", "8", "0123456789"},
      {"OvBgp/0-3+9", "", "01239"},
      {"OvBgp/5-5", "", "5"},
      {"*/9,BgpParse/0", "09", "9"},
      {"OvBgp/*", "", "0123456789"},
      {"BgpParse/1,BgpParse/2,BgpParses/3,Bgp/4", "12", ""},
  };
  for (const auto& c : cases) {
    Kiv::traceLevelsIs(c.text);
    EXPECT_EQ(levelsOf(bgpParse), c.bgpParse) << c.text;
    EXPECT_EQ(levelsOf(ovBgp), c.ovBgp) << c.text;
  }
}

TEST_F(TraceTest, RefusesMalformedTextsWhole) {
  Kiv::traceLevelsIs("BgpParse/7");
  for (const char* text :
       {"BgpParse", "BgpParse/", "/8", "BgpParse/10", "BgpParse/8+", "BgpParse/+8", "BgpParse/9-0",
        "BgpParse/a", "BgpParse/1-", "OvBgp/1,BgpParse", ",", "BgpParse/8 ", "BgpParse/1-2-3"}) {
    EXPECT_THROW(Kiv::traceLevelsIs(text), Kiv::RangeException) << text;
    EXPECT_EQ(levelsOf(bgpParse), "7");
    EXPECT_EQ(levelsOf(ovBgp), "");
  }
}

TEST_F(TraceTest, FollowsHandlesThatComeAndGo) {
  Kiv::traceLevelsIs("Passing/4");
  const auto first = std::make_unique<Kiv::TraceHandle>("Passing");
  auto second = std::make_unique<Kiv::TraceHandle>("Passing");
  const auto neverAsked = std::make_unique<Kiv::TraceHandle>("Passing");
  EXPECT_TRUE(first->enabled(4));
  EXPECT_TRUE(second->enabled(4));
  second.reset();
  Kiv::traceLevelsIs("Passing/5");  // must not touch the destroyed handle
  EXPECT_EQ(levelsOf(*first), "5");
}

TEST_F(TraceTest, EvaluatesOnlyWhatIsOn) {
  int evaluated = 0;
  const auto count = [&evaluated] { return ++evaluated; };
  Kiv::traceLevelsIs("BgpParse/8");
  KIV_TRACE(bgpParse, 7, "off " << count());
  KIV_TRACE(ovBgp, 8, "off " << count());
  EXPECT_EQ(evaluated, 0);
  if (evaluated == 0)
    KIV_TRACE(bgpParse, 8, "on " << count() << ", 0x" << std::hex << 255);
  else
    KIV_TRACE(bgpParse, 8, "a dangling else");
  const std::string position = "TraceTest.cpp:" + std::to_string(__LINE__ - 3);
  ASSERT_EQ(lines_.size(), 1U);
  EXPECT_EQ(lines_[0], "BgpParse/8 " + position + " on 1, 0xff");
}

TEST_F(TraceTest, WritesWholeLinesToStandardErrorByDefault) {
  Kiv::traceSinkIs({});
  Kiv::traceLevelsIs("OvBgp/9");
  testing::internal::CaptureStderr();
  KIV_TRACE(ovBgp, 9, "two\nlines");
  const std::string line = testing::internal::GetCapturedStderr();
  EXPECT_EQ(line, "OvBgp/9 TraceTest.cpp:" + std::to_string(__LINE__ - 2) + " two\\nlines\n");
}

TEST_F(TraceTest, DropsWhatASinkTraces) {
  Kiv::traceLevelsIs("OvBgp/9");
  Kiv::traceSinkIs([this](std::string_view line) {
    lines_.emplace_back(line);
    KIV_TRACE(ovBgp, 9, "again");
  });
  KIV_TRACE(ovBgp, 9, "once");
  KIV_TRACE(ovBgp, 9, "twice");
  EXPECT_EQ(lines_.size(), 2U);
}

// Lines of several threads stay whole while another thread switches levels and new handles
// register.
TEST_F(TraceTest, ServesSeveralThreads) {
  constexpr int threadCount = 4;
  constexpr int linesEach = 500;
  Kiv::traceLevelsIs("*/3");
  const Kiv::TraceHandle shared("Shared");
  std::vector<std::thread> threads;
  for (int t = 0; t < threadCount; ++t) {
    threads.emplace_back([&shared] {
      for (int i = 0; i < linesEach; ++i) {
        const Kiv::TraceHandle own("Own");
        KIV_TRACE(own, 5, "own");
        KIV_TRACE(shared, 3, "begin " << i << " end");
      }
    });
  }
  for (int i = 0; i < 200; ++i) Kiv::traceLevelsIs(i % 2 == 0 ? "*/3+4" : "*/3");
  for (std::thread& thread : threads) thread.join();
  ASSERT_EQ(lines_.size(), std::size_t{threadCount} * linesEach);
  for (const std::string& line : lines_) {
    EXPECT_EQ(line.substr(0, 9), "Shared/3 ");
    EXPECT_EQ(line.substr(line.size() - 4), " end");
  }
}

// The environment is read at the first use of a handle. Hence a new process, in which nothing was
// traced before setenv().
TEST(TraceDeathTest, TakesItsFirstLevelsFromTheEnvironment) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto askWith = [](const char* text) {
    setenv("KIV_TRACE", text, 1);
    KIV_TRACE(ovBgp, 2, "from the environment");
    std::exit(0);
  };
  EXPECT_EXIT(askWith("BgpParse/8,OvBgp/2"), testing::ExitedWithCode(0),
              "OvBgp/2 TraceTest.cpp:[0-9]+ from the environment");
  EXPECT_EXIT(askWith("OvBgp/x"), testing::ExitedWithCode(0),
              "^KIV_TRACE ignored: \"OvBgp/x\" is no");
}

}  // namespace
