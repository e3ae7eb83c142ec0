// Readers and a writer that work at the same time, in threads.
// tests/OvBgp/Store/DestashProcessTest.cpp tests readers and writers in several processes.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/platform/KivStash/StoreChurn.h"
#include "tests/platform/KivStash/StoreImages.h"

namespace StoreTest {
namespace {

using Clock = std::chrono::steady_clock;

// Changes lists of all kinds at full speed. All words and the sorted flag of a list are derived
// from one random number, so that a reader can tell a consistent list from a torn one.
class Churner : public ChurnerBase<Churner> {
 public:
  using ChurnerBase::ChurnerBase;

  ImageId put(U32 kind, const ImageId* old) {
    const U32 seed = next();
    const std::size_t count = next() % 50;
    const bool sorted = seed % 2 == 0;
    if (kind == 0) return plain(standardList, sorted, std::vector<U32>(count, seed), old);
    if (kind == 1) {
      return plain(largeList, sorted, std::vector<Large>(count, {seed, seed, seed}), old);
    }
    std::vector<ImageId> values(count);
    for (ImageId& value : values) {
      value = kind == 2 ? writer_.putValue(extendedValue, seed, std::array<U32, 2>{seed, seed})
                        : writer_.putValue(ipv6Value, seed, Ipv6{static_cast<U8>(seed)});
    }
    const std::span<const ImageId> elements(values);
    ImageId id{};
    if (old) {
      writer_.replaceList(id = *old, sorted, elements);
    } else {
      id = writer_.putList(kind == 2 ? extendedList : ipv6List, sorted, elements);
    }
    for (const ImageId value : values) writer_.remove(value);
    return id;
  }

 private:
  template <class E>
  ImageId plain(ImageKind kind, bool sorted, const std::vector<E>& elements, const ImageId* old) {
    if (!old) return writer_.putList(kind, sorted, std::span<const E>(elements));
    writer_.replaceList(*old, sorted, std::span<const E>(elements));
    return *old;
  }
};

// Whether all words of the list are derived from the same number. An IPv6 value has 21 words: its
// classification, then 20 octets, of which only the first is not 0.
bool isWhole(const List& list) {
  if (list.words.empty()) return true;
  const U32 seed = list.words[0];
  if (list.sorted != (seed % 2 == 0)) return false;
  for (std::size_t i = 0; i < list.words.size(); ++i) {
    U32 expected = seed;
    if (list.kind == ipv6List && i % 21 != 0) expected = i % 21 == 1 ? seed & 0xFF : 0;
    if (list.words[i] != expected) return false;
  }
  return true;
}

// What readers have met: consistent lists, torn ones, and lists that changed while they were read.
struct Count {
  U64 whole = 0;
  U64 broken = 0;
  U64 retries = 0;
};

// One walk through the store. The three exceptions mean that the image was changed, removed, or
// replaced by another kind meanwhile; every other exception fails the test.
void readOnce(const StoreManager::Ptr& manager, Count& count) {
  StoreCursor cursor(manager);
  while (const auto image = cursor.next()) {
    if (!imageKindRow(image->kind).isList) continue;
    try {
      ++(isWhole(readList(*image, manager.ptr())) ? count.whole : count.broken);
    } catch (const Stash::VersionAnchorException&) {
      ++count.retries;
    } catch (const Stash::ImageNotFoundException&) {
      ++count.retries;
    } catch (const Stash::WrongKindException&) {
      ++count.retries;
    }
  }
}

// Readers in threads of the writer's process, through the same mapping, so that a thread sanitizer
// can check the accesses.
TEST(StoreThreads, ThreadsReadWhatOneChanges) {
  const TestName name;
  StoreWriter writer(name.name(), {0, 1 << 22});
  Churner churner(writer);
  churner.step();
  std::atomic<bool> done{false};
  std::array<Count, 2> counts;
  std::vector<std::thread> readers;
  for (Count& count : counts) {
    readers.emplace_back([&count, &done, manager = writer.manager()] {
      do readOnce(manager, count);
      while (!done);
    });
  }
  const auto until = Clock::now() + std::chrono::milliseconds(700);
  while (Clock::now() < until) churner.step();
  done = true;
  for (std::thread& reader : readers) reader.join();
  for (const Count& count : counts) {
    EXPECT_EQ(0U, count.broken);
    EXPECT_GT(count.whole, 0U);
  }
}

// The sorted flag and the count of one record always change together. The change takes the writer
// only a few nanoseconds, so the test repeats it for a while.
TEST(StoreThreads, FieldsOfARecordChangeTogether) {
  const TestName name;
  StoreWriter writer(name.name());
  const std::array<U32, 2> comms = {1, 2};
  const std::span<const U32> both(comms);
  const ImageId list = writer.putList(standardList, true, both.first(1));
  std::atomic<bool> done{false};
  U64 torn = 0;
  U64 read = 0;
  std::thread reader([&, manager = writer.manager(), stored = writer.storedAddress(list)] {
    while (!done) {
      try {
        const Reader<StandardList> image(stored, manager.ptr());
        const bool sorted = image.sorted();
        if (sorted != (image.elements<U32>().count() == 1)) ++torn;
        ++read;
      } catch (const Stash::VersionAnchorException&) {
      }
    }
  });
  const auto until = Clock::now() + std::chrono::milliseconds(300);
  for (bool sorted = false; Clock::now() < until; sorted = !sorted) {
    writer.replaceList(list, sorted, both.first(sorted ? 1 : 2));
  }
  done = true;
  reader.join();
  EXPECT_EQ(0U, torn);
  EXPECT_GT(read, 0U);
}

}  // namespace
}  // namespace StoreTest
