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
  for (const std::vector<U8>& octets : {std::vector<U8>(100, 'x'), {}, std::vector<U8>(4096)}) {
    const TempFile other(octets);
    const Outcome refused = remove(other.path());
    EXPECT_EQ(ExitStatus::impossible, refused.status);
    EXPECT_NE(refused.errors.npos, refused.errors.find("not a store")) << refused.errors;
    EXPECT_EQ(octets.size(), other.contents().size());
    EXPECT_EQ(0, ::access(other.path().c_str(), F_OK));
  }
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
  EXPECT_NE(outcome.errors.npos, outcome.errors.find("marked sorted but unsorted: 1\n"));
}

// Overwrites the octets of a file.
template <class T>
void overwrite(const TestName& name, std::size_t at, const T& value) {
  std::fstream file(name.text(), std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(static_cast<std::streamoff>(at));
  file.write(reinterpret_cast<const char*>(&value), sizeof value);
}

// The offset of one of the first records in a store.
constexpr std::size_t recordAt(std::size_t index) {
  return Stash::firstDirectoryBlock + offsetof(Stash::DirectoryBlock, images) +
         index * sizeof(Stash::StoredImage);
}

// Forty lists have the same elements, a third of the store, which a true store cannot have. In the
// other store, the writer seems to have died while it changed forty lists.
TEST(StoreCommand, SaysWhyAStoreIsNotSound) {
  const TestName name(true);
  const TestName other(true);
  for (const TestName* const store : {&name, &other}) {
    StoreTest::StoreWriter writer(store->name(), {0, 8192});
    const std::vector<U32> comms(700, 7);
    for (std::size_t i = 0; i < 40; ++i) {
      const auto elements = std::span<const U32>(comms).first(i == 0 ? comms.size() : 1);
      writer.putList(StoreTest::standardList, false, elements);
    }
  }
  Stash::StoredImage first;
  std::ifstream file(name.text(), std::ios::binary);
  file.seekg(static_cast<std::streamoff>(recordAt(0)));
  file.read(reinterpret_cast<char*>(&first), sizeof first);
  for (std::size_t i = 0; i < 40; ++i) {
    overwrite(name, recordAt(i), first);
    overwrite(other, recordAt(i), U32{5});
  }
  const Outcome shared = read(name.text());
  EXPECT_EQ(ExitStatus::damaged, shared.status);
  EXPECT_NE(shared.errors.npos, shared.errors.find("lists share their elements")) << shared.errors;
  EXPECT_GE(std::size_t{8192} * 2 / sizeof(U32), figures(shared.out, "  communities of all lists"));
  const Outcome changing = read(other.text());
  EXPECT_EQ(ExitStatus::damaged, changing.status);
  EXPECT_NE(changing.errors.npos, changing.errors.find("always being changed: 40;"));
}

TEST(StoreCommand, OneDamagedListLeavesTheOthers) {
  const TestName name(true);
  write({.name = name.text(), .files = samples});
  const std::size_t lists = listLines(read(name.text()).out).size();
  overwrite(name, recordAt(0) + offsetof(Stash::StoredImage, count), U32{0xFFFFFFF0});
  const Outcome outcome = read(name.text());
  EXPECT_EQ(ExitStatus::damaged, outcome.status);
  EXPECT_NE(outcome.errors.npos, outcome.errors.find("cannot be in a store")) << outcome.errors;
  EXPECT_EQ(lists - 1, listLines(outcome.out).size());
  EXPECT_EQ(1U, figure(outcome.out, "damaged"));
}

// A running process of the tool, with its output in files.
pid_t start(std::vector<std::string> arguments, const TempFile& out,
            const TempFile* errors = nullptr) {
  const pid_t pid = ::fork();
  if (pid != 0) return pid;
  ::dup2(out.fd(), STDOUT_FILENO);
  if (errors) ::dup2(errors->fd(), STDERR_FILENO);
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

// Waits until `file` contains `text`, at most a minute.
void awaitText(const TempFile& file, const std::string& text) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (file.contents().find(text) == std::string::npos) {
    ASSERT_LT(std::chrono::steady_clock::now(), until) << text;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

TEST(StoreCommand, FollowsAStoreThatIsRemovedAndMadeAnew) {
  const TestName name;
  const TempFile out;
  const TempFile errors;
  pid_t reader = 0;
  for (U32 round = 1; round <= 2; ++round) {
    StoreTest::StoreWriter writer(name.name());
    writer.putList(StoreTest::standardList, true, std::span<const U32>(std::array{round}));
    if (reader == 0)
      reader = start({"store", "read", name.text(), "--follow", "--lists"}, out, &errors);
    awaitText(out, "0:" + std::to_string(round) + "|||\n");
    Stash::storeRemove(name.name());
    awaitText(errors, round == 1 ? "waiting for a new one\n" : "reading the new store\n");
  }
  EXPECT_EQ(0, end(reader, SIGINT));
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
