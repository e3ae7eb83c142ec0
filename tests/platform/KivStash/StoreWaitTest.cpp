// How long readers wait for a writer that is in the middle of a change, or seems to be.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <fstream>

#include "tests/platform/KivStash/StoreImages.h"

// Replaces the C library's function, to count how often a reader gives up its processor, and to be
// as slow as on a busy machine.
std::atomic<unsigned> processorGivenUp{0};
std::atomic<bool> machineBusy{false};
extern "C" int sched_yield() noexcept {
  ++processorGivenUp;
  if (machineBusy) ::usleep(5000);
  return static_cast<int>(::syscall(SYS_sched_yield));
}

namespace StoreTest {
namespace {

constexpr U32 listCount = 60;

void writeStore(const TestName& name) {
  StoreWriter writer(name.name(), {0, 65536});
  for (U32 i = 0; i < listCount; ++i) {
    writer.putList(standardList, true, std::span<const U32>(std::array{i}));
  }
}

// Writes the anchor of all images into the file: odd as a dead writer would leave it, or even.
void anchorsAre(const TestName& name, U32 anchor) {
  std::fstream file(name.text(), std::ios::binary | std::ios::in | std::ios::out);
  for (U32 i = 0; i < listCount; ++i) {
    const std::size_t at = Stash::firstDirectoryBlock + offsetof(Stash::DirectoryBlock, images) +
                           i * sizeof(Stash::StoredImage) + offsetof(Stash::StoredImage, anchor);
    file.seekp(static_cast<std::streamoff>(at));
    file.write(reinterpret_cast<const char*>(&anchor), sizeof anchor);
  }
}

// Number of images that can be read; the others raise VersionAnchorException.
U32 readable(const StoreManager::Ptr& manager) {
  U32 count = 0;
  StoreCursor cursor(manager);
  while (const auto image = cursor.next()) {
    try {
      readList(*image, manager.ptr());
      ++count;
    } catch (const Stash::VersionAnchorException&) {
    }
  }
  return count;
}

// Each yield can take several time slices on a busy machine. The bound is one for a whole walk: 100
// ms in each second are 20 yields of 5 ms, fewer than there are images.
TEST(StoreWait, IsShortIfTheWriterDiedDuringAChange) {
  const TestName name(true);
  writeStore(name);
  const auto manager = KivStash::storeManagerFactory(name.name());
  EXPECT_EQ(listCount, readable(manager));
  anchorsAre(name, 5);
  const unsigned before = processorGivenUp;
  machineBusy = true;
  EXPECT_EQ(0U, readable(manager));
  machineBusy = false;
  EXPECT_LT(0U, processorGivenUp - before);
  EXPECT_GT(listCount, processorGivenUp - before);
  anchorsAre(name, 6);
  EXPECT_EQ(listCount, readable(manager));
}

}  // namespace
}  // namespace StoreTest
