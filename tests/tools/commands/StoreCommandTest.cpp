// Tests of `store` through the whole command: one process at a time, and three at once.
#include "tools/bgp-communities/commands/StoreCommand.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include "Stash/StoreLayout.h"
#include "tests/platform/KivStash/StoreImages.h"
#include "tests/tools/MrtBytes.h"
#include "tests/tools/TempFile.h"
#include "tests/tools/commands/Outcome.h"
#include "tools/bgp-communities/bgp/CommunityKinds.h"
#include "tools/bgp-communities/commands/MrtCommand.h"

namespace CommTool {
namespace {

using StoreTest::TestName;

Outcome write(const StoreWriteOptions& options) {
  return outcomeOf([&](int out, std::ostream& e) { return runStoreWrite(options, out, e); });
}
Outcome read(const std::string& name, bool lists = true) {
  return outcomeOf([&](int out, std::ostream& e) {
    return runStoreRead({.name = name, .lists = lists}, out, e);
  });
}
Outcome info(const std::string& name) {
  return outcomeOf([&](int out, std::ostream& e) { return runStoreInfo(name, out, e); });
}

const std::vector<std::string> samples = {OVBGP_SAMPLES_DIR "/speakers-updates.mrt.gz",
                                          OVBGP_SAMPLES_DIR "/speakers-rib-ipv6.mrt.gz"};

// The lines of `text` that have a list. Each has one list, in the column of its kind.
std::multiset<std::string> listLines(const std::string& text) {
  std::multiset<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (std::count(line.begin(), line.end(), '|') == 3) lines.insert(line);
  }
  return lines;
}

// The different lists of the routes in the files, in the form of listLines(). Different lists may
// have equal texts; such a text is returned once.
std::set<std::string> listsOfRoutes(const std::vector<std::string>& files) {
  const Outcome routes = outcomeOf([&](int out, std::ostream& errors) {
    MrtOptions options;
    options.files = files;
    options.routes = true;
    return runMrt(options, out, errors);
  });
  std::set<std::string> lists;
  std::istringstream in(routes.out);
  for (std::string line; std::getline(in, line);) {
    std::size_t at = line.size();
    for (std::size_t column = 4; column-- > 0;) {
      const std::size_t bar = line.rfind('|', at - 1);
      const std::string list = line.substr(bar + 1, at - bar - 1);
      if (!list.empty()) {
        lists.insert(std::string(column, '|') + list + std::string(3 - column, '|'));
      }
      at = bar;
    }
  }
  return lists;
}

std::set<std::string> distinct(const std::multiset<std::string>& lines) {
  return {lines.begin(), lines.end()};
}

U64 figure(const std::string& text, const std::string& name) {
  const std::size_t at = text.find("\n" + name);
  if (at == text.npos) return ~U64{0};
  return std::stoull(text.substr(at + 1 + name.size()));
}

// The sum over all kinds.
U64 figures(const std::string& text, const std::string& name) {
  const std::size_t at = text.find("\n" + name);
  if (at == text.npos) return ~U64{0};
  std::istringstream row(text.substr(at + 1 + name.size()));
  U64 sum = 0;
  for (U64 ofKind = 0, kind = 0; kind < communityKinds && row >> ofKind; ++kind) sum += ofKind;
  return sum;
}

TEST(StoreCommand, ReadsTheListsThatTheRoutesHave) {
  const TestName name;
  const Outcome written = write({.name = name.text(), .files = samples});
  EXPECT_EQ(ExitStatus::fine, written.status) << written.errors;
  const Outcome lists = read(name.text());
  EXPECT_EQ(ExitStatus::fine, lists.status) << lists.errors;
  EXPECT_EQ("", lists.errors);
  EXPECT_GT(listLines(lists.out).size(), 100U);
  EXPECT_EQ(listsOfRoutes(samples), distinct(listLines(lists.out)));
  EXPECT_EQ(figures(written.out, "  lists"), listLines(lists.out).size());
  EXPECT_EQ(figures(written.out, "  lists"),
            figures(lists.out, "  distinct lists in the last walk"));
  EXPECT_TRUE(listLines(read(name.text(), false).out).empty());
  EXPECT_EQ(0U, figure(lists.out, "retries"));
}

TEST(StoreCommand, ChurningChangesImagesAndKeepsLists) {
  const TestName name;
  const Outcome written =
      write({.name = name.text(), .files = samples, .churn = std::chrono::seconds(1)});
  EXPECT_EQ(ExitStatus::fine, written.status) << written.errors;
  EXPECT_GT(figure(written.out, "lists rewritten"), 1000U);
  const auto expected = listsOfRoutes(samples);
  const auto lists = listLines(read(name.text()).out);
  EXPECT_EQ(figures(written.out, "  lists"), lists.size());
  for (const std::string& list : lists) EXPECT_TRUE(expected.contains(list)) << list;
}

TEST(StoreCommand, InfoTellsHeaderAndImages) {
  const TestName name;
  write({.name = name.text(), .files = samples, .size = 1 << 20});
  const Outcome told = info(name.text());
  EXPECT_EQ(ExitStatus::fine, told.status);
  EXPECT_EQ(sizeof(void*) * 8, figure(told.out, "word size, bits"));
  EXPECT_EQ(1U << 20, figure(told.out, "maximum size, bytes"));
  U64 images = 0;
  for (const char* kind : {"standard lists", "large lists", "extended values", "extended lists",
                           "IPv6 values", "IPv6 lists"}) {
    images += figure(told.out, std::string("  ") + kind);
  }
  EXPECT_EQ(figure(told.out, "images"), images);
}

TEST(StoreCommand, RemovesStoresAndNothingElse) {
  const TestName name;
  const auto remove = [](const std::string& store) {
    return outcomeOf([&](int, std::ostream& errors) { return runStoreRemove(store, errors); });
  };
  write({.name = name.text(), .files = samples});
  EXPECT_EQ(ExitStatus::fine, remove(name.text()).status);
  EXPECT_EQ(ExitStatus::impossible, remove(name.text()).status);
  const TempFile other(std::vector<U8>(100, 'x'));
  EXPECT_EQ(ExitStatus::impossible, remove(other.path()).status);
  EXPECT_EQ(100U, other.contents().size());
}

TEST(StoreCommand, WhatCannotBeDoneIsSaid) {
  const TestName name;
  const auto says = [&](const Outcome& outcome, ExitStatus status, const std::string& error) {
    EXPECT_EQ(status, outcome.status) << error;
    EXPECT_NE(outcome.errors.npos, outcome.errors.find(error)) << outcome.errors;
  };
  says(read(name.text()), ExitStatus::impossible, "bgp-communities: " + name.text() + ": ");
  says(info(name.text()), ExitStatus::impossible, name.text());
  says(write({.name = name.text(), .files = {"/nowhere"}}), ExitStatus::impossible, "/nowhere");
  says(read(name.text()), ExitStatus::impossible, name.text());  // nothing was made
  says(write({.name = name.text(), .files = {samples[0], "/nowhere"}}), ExitStatus::damaged,
       "/nowhere");
  says(write({.name = name.text(), .files = samples}), ExitStatus::impossible, name.text());
  const TestName small;
  says(write({.name = small.text(), .files = samples, .size = 4096}), ExitStatus::impossible,
       "full");
  EXPECT_EQ(ExitStatus::fine, read(small.text()).status) << "what fitted is there";
  says(read("/dev/null"), ExitStatus::impossible, "/dev/null");
}

// A hostile writer marks an unsorted list as sorted. The reader must sort it before interning.
TEST(StoreCommand, AStoreOfAnotherMakerMayLie) {
  const TestName name;
  {
    StoreTest::StoreWriter writer(name.name());
    using Comms = std::vector<U32>;
    const auto put = [&](bool sorted, const Comms& comms) {
      writer.putList(StoreTest::standardList, sorted, std::span<const U32>(comms));
    };
    put(true, {0x10001, 0x10002});
    put(true, {0x10002, 0x10001, 0x10002});
    put(false, {0x10002, 0x10001});
    writer.putValue(StoreTest::extendedValue, 99, std::array<U32, 2>{1, 2});
  }
  const Outcome outcome = read(name.text());
  EXPECT_EQ(ExitStatus::damaged, outcome.status);
  EXPECT_EQ((std::multiset<std::string>{"1:1 1:2|||", "1:1 1:2|||", "1:1 1:2|||"}),
            listLines(outcome.out));
  EXPECT_EQ(1U, figure(outcome.out, "  lists marked sorted but unsorted"));
  EXPECT_EQ(1U, figure(outcome.out, "  distinct lists in the last walk"));
}

TEST(StoreCommand, OneDamagedListLeavesTheOthers) {
  const TestName name(true);
  write({.name = name.text(), .files = samples});
  const std::size_t lists = listLines(read(name.text()).out).size();
  std::fstream file(name.text(), std::ios::in | std::ios::out | std::ios::binary);
  const U32 absurd = 0xFFFFFFF0;
  file.seekp(Stash::firstDirectoryBlock + offsetof(Stash::DirectoryBlock, images) +
             offsetof(Stash::StoredImage, count));
  file.write(reinterpret_cast<const char*>(&absurd), sizeof absurd);
  file.close();
  const Outcome outcome = read(name.text());
  EXPECT_EQ(ExitStatus::damaged, outcome.status);
  EXPECT_NE(outcome.errors.npos, outcome.errors.find("cannot be in a store")) << outcome.errors;
  EXPECT_EQ(lists - 1, listLines(outcome.out).size());
  EXPECT_EQ(1U, figure(outcome.out, "damaged"));
}

// A running process of the tool, with its output in a file.
pid_t start(std::vector<std::string> arguments, const TempFile& out) {
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  ::dup2(out.fd(), STDOUT_FILENO);
  std::string tool = OVBGP_TOOL_PATH;
  std::vector<char*> argv = {tool.data()};
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  ::execv(tool.c_str(), argv.data());
  ::_exit(127);
}

int end(pid_t pid, int signal) {
  int status = -1;
  if (signal != 0) ::kill(pid, signal);
  EXPECT_EQ(pid, ::waitpid(pid, &status, 0));
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST(StoreCommand, TwoFollowWhatAThirdOneChurns) {
  const TestName name;
  const TempFile outs[3];
  const pid_t writer =
      start({"store", "write", name.text(), samples[0], samples[1], "--churn", "60"}, outs[2]);
  // Wait until the store has its lists.
  const auto expected = listsOfRoutes(samples);
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (listLines(read(name.text()).out).size() < expected.size() &&
         std::chrono::steady_clock::now() < until) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  const pid_t readers[] = {start({"store", "read", name.text(), "--follow", "--lists"}, outs[0]),
                           start({"store", "read", name.text(), "--follow"}, outs[1])};
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  for (const pid_t reader : readers) EXPECT_EQ(0, end(reader, SIGINT));
  EXPECT_EQ(0, end(writer, SIGTERM));
  for (const std::string& list : listLines(outs[0].contents())) {
    ASSERT_TRUE(expected.contains(list)) << list;
  }
  for (const TempFile* const out : {&outs[0], &outs[1]}) {
    // The summary follows the lists.
    const std::string text = "\n" + out->contents();
    EXPECT_GT(figure(text, "walks"), 1U);
    EXPECT_EQ(0U, figure(text, "damaged"));
    EXPECT_EQ(0U, figure(text, "lists always being changed"));
  }
  EXPECT_GT(figure(outs[2].contents(), "lists rewritten"), 0U);
}

}  // namespace
}  // namespace CommTool
