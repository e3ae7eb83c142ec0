// How long readers wait for a writer that is in the middle of a change, or seems to be.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <fstream>

#include "tests/platform/KivStash/StoreImages.h"

// Replaces the C library's function, to count how often a reader gives up its processor.
std::atomic<unsigned> processorGivenUp{0};
extern "C" int sched_yield() noexcept {
  ++processorGivenUp;
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

// Each yield can take several time slices on a busy machine, so a store full of odd anchors must
// not cost many of them per image.
TEST(StoreWait, IsShortIfTheWriterDiedDuringAChange) {
  const TestName name(true);
  writeStore(name);
  const auto manager = KivStash::storeManagerFactory(name.name());
  EXPECT_EQ(listCount, readable(manager));
  anchorsAre(name, 5);
  const unsigned before = processorGivenUp;
  EXPECT_EQ(0U, readable(manager));
  EXPECT_LT(0U, processorGivenUp - before);
  EXPECT_GT(3 * listCount, processorGivenUp - before);
  anchorsAre(name, 6);
  EXPECT_EQ(listCount, readable(manager));
}

TEST(StoreWait, IsWorthItAgainOnceTheWriterIsSeen) {
  const TestName name(true);
  writeStore(name);
  const auto manager = KivStash::storeManagerFactory(name.name());
  for (int i = 0; i < 100; ++i) manager->waitEnds(false);
  EXPECT_FALSE(manager->worthWaiting());
  manager->waitEnds(true);
  EXPECT_TRUE(manager->worthWaiting());
}

}  // namespace
}  // namespace StoreTest
