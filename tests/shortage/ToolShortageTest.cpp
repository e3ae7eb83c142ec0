// The tool's commands on sample data, when memory runs out: they say so, and end.
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <streambuf>
#include <vector>

#include "Kiv/Type.h"
#include "tests/shortage/Sweep.h"
#include "tests/tools/TempFile.h"
#include "tools/bgp-communities/commands/AttributeCommand.h"
#include "tools/bgp-communities/commands/MrtCommand.h"
#include "tools/bgp-communities/commands/ShowCommand.h"

namespace Shortage {
namespace {

using CommTool::ExitStatus;
using CommTool::MrtOptions;
using CommTool::TempFile;

constexpr auto* sample = OVBGP_SAMPLES_DIR "/speakers-updates.mrt.gz";

// The first `records` records of the sample, as they are.
std::vector<U8> sampleStart(U32 records) {
  std::vector<U8> octets(1 << 20);
  gzFile file = ::gzopen(sample, "rb");
  const int got = ::gzread(file, octets.data(), static_cast<unsigned>(octets.size()));
  ::gzclose(file);
  std::size_t end = 0;
  for (; records > 0 && end + 12 <= static_cast<std::size_t>(got); --records) {
    std::size_t length = 0;
    for (std::size_t at = 8; at < 12; ++at) length = length << 8 | octets[end + at];
    end += 12 + length;
  }
  octets.resize(end);
  return octets;
}

// Takes what a command says of errors, and needs no memory for it.
class ErrorText : public std::streambuf {
 public:
  ErrorText() { clear(); }
  void clear() { setp(text_.data(), text_.data() + text_.size()); }
  std::string_view view() const { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }

 private:
  std::array<char, 4096> text_{};
};

const std::string& inputPath() {
  static const TempFile input(sampleStart(6));
  return input.path();
}

struct ToolWorld {
  std::vector<U64> facts() const {
    U64 objects = 0;
    Kiv::forEachType([&objects](const Kiv::Type& type) { objects += type.objects(); });
    return {objects};
  }

  const TempFile out;
  std::vector<char> printed = std::vector<char>(1 << 20);
  ErrorText errorText;
  std::ostream errors{&errorText};
  const std::vector<std::string> files{inputPath()};
  const std::vector<std::string> values{"65000:1", "65000:1:2", "0x0002fde800000064"};
  const std::vector<std::string> attribute{"c00808fde80001fde80002"};
};

// Whether a command did all of its work, and printed what it printed at first; what it
// says when there is no memory is for the sweep to judge.
bool isDone(ToolWorld& world, ExitStatus status, std::string* expected) {
  const auto size = std::min(world.printed.size(),
                             static_cast<std::size_t>(::lseek(world.out.fd(), 0, SEEK_END)));
  const bool isRead = ::pread(world.out.fd(), world.printed.data(), size, 0) >= 0;
  const bool saysWhy = world.errorText.view() == "bgp-communities: out of memory\n";
  const bool saysNothing = world.errorText.view().empty();
  world.errorText.clear();
  world.errors.clear();
  if (!isRead || ::ftruncate(world.out.fd(), 0) != 0) return false;
  ::lseek(world.out.fd(), 0, SEEK_SET);
  if (status == ExitStatus::impossible && saysWhy) throw std::bad_alloc();
  const std::string_view text(world.printed.data(), size);
  if (expected && expected->empty()) *expected = text;
  return status == ExitStatus::fine && saysNothing && size > 0 && (!expected || text == *expected);
}

// `mrt` with the options that `ask` sets. The figures of the summary are not the same each time.
template <void (*ask)(MrtOptions&), bool isTheSameEachTime = true>
bool mrt(ToolWorld& world) {
  static std::string expected;
  MrtOptions options;
  options.files = world.files;
  ask(options);
  return isDone(world, CommTool::runMrt(options, world.out.fd(), world.errors),
                isTheSameEachTime ? &expected : nullptr);
}
void askVerify(MrtOptions& options) { options.verify = true; }
void askRoutes(MrtOptions& options) { options.routes = true; }
void askJson(MrtOptions& options) { options.json = true; }
void askMatch(MrtOptions& options) {
  options.routes = true;
  options.match.emplace(".");
}
bool show(ToolWorld& world) {
  static std::string expected;
  const CommTool::ShowOptions options{.values = world.values};
  return isDone(world, CommTool::runShow(options, world.out.fd(), world.errors), &expected);
}
bool attribute(ToolWorld& world) {
  static std::string expected;
  const CommTool::AttributeOptions options{.octets = world.attribute};
  return isDone(world, CommTool::runAttribute(options, world.out.fd(), world.errors), &expected);
}

class ToolShortage : public testing::TestWithParam<Operation<ToolWorld>> {};
TEST_P(ToolShortage, IsSurvived) { sweep(GetParam()); }

constexpr Operation<ToolWorld> toolRows[] = {
    {"MrtSummary", mrt<askVerify, false>},
    {"MrtRoutes", mrt<askRoutes>},
    {"MrtJson", mrt<askJson>},
    {"MrtMatch", mrt<askMatch>},
    {"Show", show},
    {"Attribute", attribute},
};
INSTANTIATE_TEST_SUITE_P(Rows, ToolShortage, testing::ValuesIn(toolRows), operationName);

// A whole file, where every allocation would take too long: some of all, evenly spread.
TEST(ToolShortageOfAFile, IsSurvivedAnywhere) {
  ToolWorld world;
  MrtOptions options;
  options.files = {sample};
  options.json = true;
  const auto run = [&] { return CommTool::runMrt(options, world.out.fd(), world.errors); };
  U64 needed = 0;
  {
    const OutOfMemory none(0);
    ASSERT_TRUE(isDone(world, run(), nullptr));
    needed = none.asked();
  }
  // The first run makes a few allocations that later runs reuse, so the last step is left out: its
  // allocation may not occur.
  const U64 step = needed / 41;
  for (U64 at = 1; at + step < needed; at += step) {
    const U64 before = allocationsAlive();
    ExitStatus status{};
    {
      const OutOfMemory out(at);
      status = run();
    }
    EXPECT_EQ(ExitStatus::impossible, status) << at << " of " << needed;
    EXPECT_THROW(isDone(world, status, nullptr), std::bad_alloc) << at << " of " << needed;
    EXPECT_EQ(before, allocationsAlive()) << at << " of " << needed;
  }
}

}  // namespace
}  // namespace Shortage
