// Stores that are damaged, hostile, or no stores at all: reading ends in data or in an exception,
// and the process survives.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

#include "tests/platform/KivStash/StoreImages.h"

// Replaces the C library's function, which the writer calls in the middle of its constructor. The
// hook's result is the function's; without a hook the file is extended.
std::function<int()> fallocateHook;
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its names are reserved
extern "C" int posix_fallocate(int fd, off_t offset, off_t size) {
  if (fallocateHook) return std::exchange(fallocateHook, nullptr)();
  struct stat status;
  if (::fstat(fd, &status) != 0) return errno;
  return status.st_size >= offset + size || ::ftruncate(fd, offset + size) == 0 ? 0 : errno;
}

namespace StoreTest {
namespace {

using Octets = std::vector<char>;
using Stash::DirectoryBlock;
using Stash::StoredImage;
using Stash::StoreHeader;
using Stash::Word;

constexpr std::size_t firstImage = Stash::firstDirectoryBlock + offsetof(DirectoryBlock, images);

// The octets of a store with two plain lists, two values and a list of these values, in records 0
// to
// 4. Read from the file, so that a test can damage them.
Octets smallStore() {
  const TestName name(true);
  {
    StoreWriter writer(name.name(), {0, 8192});
    const std::array<U32, 5> comms = {1, 2, 3, 4, 5};
    writer.putList(standardList, true, std::span<const U32>(comms));
    writer.putList(largeList, true, std::span<const Large>(std::array<Large, 1>{{{1, 2, 3}}}));
    const std::array values = {writer.putValue(extendedValue, 1, std::array<U32, 2>{6, 7}),
                               writer.putValue(extendedValue, 2, std::array<U32, 2>{8, 9})};
    writer.putList(extendedList, true, std::span<const ImageId>(values));
  }
  std::ifstream file(name.text(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write(const TestName& name, const Octets& octets) {
  std::ofstream(name.text(), std::ios::binary)
      .write(octets.data(), static_cast<std::streamsize>(octets.size()));
}

template <class T>
void put(Octets& octets, std::size_t at, T value) {
  std::memcpy(octets.data() + at, &value, sizeof value);
}

template <class T>
T get(const Octets& octets, std::size_t at) {
  T value;
  std::memcpy(&value, octets.data() + at, sizeof value);
  return value;
}

struct Outcome {
  std::vector<List> lists;
  std::string error;  // the text of the last exception, empty if there was none
};

// Reads every image that can be read, and goes on behind damaged ones.
Outcome readAll(const Stash::StoreName& name) {
  Outcome outcome;
  try {
    const StoreManager::Ptr manager = KivStash::storeManagerFactory(name);
    StoreCursor cursor(manager);
    for (bool more = true; more;) {
      try {
        const auto image = cursor.next();
        more = image.has_value();
        if (more) outcome.lists.push_back(readList(*image, manager.ptr()));
      } catch (const Stash::StoreException& error) {
        outcome.error = error.what();
      }
    }
  } catch (const Stash::StoreException& error) {
    outcome.error = error.what();
  }
  return outcome;
}

struct Corruption {
  const char* what;
  std::function<void(Octets&)> corrupt;
  const char* error;  // must be a part of what() of the exception; empty if there must be none
  std::size_t lists;  // number of images that are read nevertheless
};

constexpr std::size_t recordAt(std::size_t index) {
  return firstImage + index * sizeof(StoredImage);
}
constexpr std::size_t elementsAt(std::size_t index) {
  return recordAt(index) + offsetof(StoredImage, payload);
}

template <class T>
auto set(std::size_t at, T value) {
  return [at, value](Octets& octets) { put(octets, at, value); };
}

// Sets the word at `at` to the writer's address of the octet at `offset`.
auto setStored(std::size_t at, Word offset) {
  return [at, offset](Octets& octets) {
    put(octets, at, get<Word>(octets, offsetof(StoreHeader, base)) + offset);
  };
}

TEST(HostileStore, IsRefusedByNamingTheCheck) {
  const Corruption table[] = {
      {"nothing", [](Octets&) {}, "", 5},
      {"no octets", [](Octets& octets) { octets.clear(); }, "not a store: bad magic number", 0},
      {"few octets", [](Octets& octets) { octets.resize(11); }, "not a store: bad magic number", 0},
      {"half a header", [](Octets& octets) { octets.resize(30); }, "ends within its header", 0},
      {"cut", [](Octets& octets) { octets.pop_back(); }, "truncated", 0},
      {"magic", set(0, 'x'), "not a store: bad magic number", 0},
      {"byte order", set(offsetof(StoreHeader, byteOrder), U32{0x04030201}), "another byte order",
       0},
      {"version", set(offsetof(StoreHeader, version), U32{2}), "layout version is 2, not 1", 0},
      {"word size", set(offsetof(StoreHeader, wordSize), U32{12 - Stash::wordSize}),
       Stash::wordSize == 8 ? "word size is 32, not 64" : "word size is 64, not 32", 0},
      {"maximum", set(offsetof(StoreHeader, maximum), Word{2000}), "maximum length 2000", 0},
      {"huge maximum", set(offsetof(StoreHeader, maximum), ~Word{0}), "maximum length", 0},
      {"length", set(offsetof(StoreHeader, length), Word{100}), "length is 100", 0},
      {"huge length", set(offsetof(StoreHeader, length), Word{8000}), "truncated", 0},
      {"base", set(offsetof(StoreHeader, base), Word{16}), "outside the store", 2},
      {"base at the end of all addresses", set(offsetof(StoreHeader, base), Word{0} - 256),
       "outside the store", 2},
      {"directory on itself", setStored(Stash::firstDirectoryBlock, Stash::firstDirectoryBlock),
       "leads back", 5},
      {"directory in itself", setStored(Stash::firstDirectoryBlock, firstImage + 8), "leads back",
       5},
      {"directory far", setStored(Stash::firstDirectoryBlock, 1 << 20), "outside the store", 5},
      {"directory askew", setStored(Stash::firstDirectoryBlock, 4001), "not a multiple", 5},
      {"unknown kind", set(recordAt(0) + offsetof(StoredImage, kind), U32{77}), "unknown kind 77",
       4},
      {"odd anchor", set(recordAt(0), U32{5}), "is being changed", 4},
      {"count", set(recordAt(0) + offsetof(StoredImage, count), U32{4000}), "cannot be in a store",
       4},
      {"huge count", set(recordAt(1) + offsetof(StoredImage, count), ~U32{0}),
       "cannot be in a store", 4},
      {"count past the end",
       [](Octets& octets) {
         put(octets, recordAt(0) + offsetof(StoredImage, count),
             static_cast<U32>(octets.size() / sizeof(U32)));
       },
       "outside the store", 4},
      {"no elements", set(elementsAt(0), Word{0}), "outside the store", 4},
      {"elements before", setStored(elementsAt(0), ~Word{15}), "outside the store", 4},
      {"elements behind", setStored(elementsAt(0), 8192), "outside the store", 4},
      {"elements askew", setStored(elementsAt(0), 1001), "not a multiple", 4},
      {"other content", setStored(elementsAt(2), 0), "", 5},
      {"list of lists", setStored(elementsAt(4), elementsAt(0)), "is being changed", 4},
      {"value removed", set(recordAt(2) + offsetof(StoredImage, kind), U32{0}), "removed", 3},
      {"value of another kind", set(recordAt(2) + offsetof(StoredImage, kind), U32{5}),
       "an IPv6 value, not an extended value", 4},
  };
  const Octets sound = smallStore();
  for (const Corruption& row : table) {
    const TestName name(true);
    Octets octets = sound;
    row.corrupt(octets);
    write(name, octets);
    const Outcome outcome = readAll(name.name());
    EXPECT_NE(outcome.error.npos, outcome.error.find(row.error)) << row.what << outcome.error;
    EXPECT_EQ(*row.error == 0, outcome.error.empty()) << row.what << ": " << outcome.error;
    EXPECT_EQ(row.lists, outcome.lists.size()) << row.what << ": " << outcome.error;
  }
}

TEST(HostileStore, MayHaveAnyBitFlipped) {
  const Octets sound = smallStore();
  std::size_t failures = 0;
  // Every bit of the octets in use, and one bit of each octet behind them, to keep the test short.
  const std::size_t used = recordAt(6) * 8;
  for (std::size_t bit = 0; bit < sound.size() * 8; bit += bit < used ? 1 : 9) {
    const TestName name;
    Octets octets = sound;
    octets[bit / 8] = static_cast<char>(octets[bit / 8] ^ 1 << bit % 8);
    const Stash::Descriptor file = name.name().create(0600);
    ASSERT_EQ(static_cast<ssize_t>(octets.size()),
              ::pwrite(file.fd(), octets.data(), octets.size(), 0));
    const Outcome outcome = readAll(name.name());
    failures += outcome.error.empty() ? 0 : 1;
    ASSERT_LE(outcome.lists.size(), DirectoryBlock::imageCount * 2);
    ::shm_unlink(("/" + name.text()).c_str());
  }
  EXPECT_GT(failures, 300U);
}

TEST(HostileStore, IsNoFolderAndNoPipe) {
  EXPECT_THROW(KivStash::storeManagerFactory(Stash::StoreName(P_tmpdir "/")),
               Stash::InvalidStoreException);
  const TestName name(true);
  ASSERT_EQ(0, ::mkfifo(name.text().c_str(), 0600));
  EXPECT_THROW(KivStash::storeManagerFactory(name.name()), Stash::InvalidStoreException);
  EXPECT_THROW(Stash::storeRemove(name.name()), Stash::StoreException);
}

Octets contents(const TestName& name) {
  std::ifstream file(name.text(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The zeros are the beginning of a file system's image, among others.
TEST(HostileStore, IsNotOpenedOrRemovedIfItIsSomethingElse) {
  Octets zerosThenText(8, 0);
  zerosThenText.push_back('x');
  for (const Octets& octets : {Octets(100, 'x'), Octets(), Octets(4096, 0), zerosThenText}) {
    const TestName name(true);
    write(name, octets);
    EXPECT_THROW(Stash::storeRemove(name.name()), Stash::InvalidStoreException);
    EXPECT_THROW(KivStash::storeManagerFactory(name.name()), Stash::InvalidStoreException);
    EXPECT_THROW(StoreWriter{name.name()}, Stash::StoreAccessException);
    EXPECT_TRUE(std::ifstream(name.text()).good());
    EXPECT_EQ(octets, contents(name));
  }
}

TEST(HostileStore, CanBeRemovedIfItsWriterDiedEarly) {
  for (const bool file : {false, true}) {
    const TestName name(file);
    const pid_t writer = ::fork();
    if (writer == 0) {
      fallocateHook = []() -> int { ::_exit(0); };
      const StoreWriter dies(name.name());
      ::_exit(1);
    }
    int status = -1;
    ASSERT_EQ(writer, ::waitpid(writer, &status, 0));
    ASSERT_EQ(0, status);
    const std::string error = readAll(name.name()).error;
    EXPECT_NE(error.npos, error.find("its writer is still creating it")) << error;
    EXPECT_NO_THROW(Stash::storeRemove(name.name()));
    EXPECT_THROW(name.name().open(), Stash::StoreAccessException);
  }
}

// While a writer is creating its store, the unfinished store is removed and another writer takes
// the name. Then the first writer fails.
TEST(HostileStore, KeepsItsNameIfAnEarlierWriterFails) {
  const TestName name;
  std::optional<StoreWriter> other;
  fallocateHook = [&] {
    Stash::storeRemove(name.name());
    other.emplace(name.name());
    return ENOSPC;
  };
  EXPECT_THROW(StoreWriter{name.name()}, Stash::StoreFullException);
  EXPECT_NO_THROW(KivStash::storeManagerFactory(name.name()));
  const TestName alone;
  fallocateHook = [] { return ENOSPC; };
  EXPECT_THROW(StoreWriter{alone.name()}, Stash::StoreFullException);
  EXPECT_THROW(alone.name().open(), Stash::StoreAccessException);
}

// Every list of the store gets the elements of the first one, which fill a third of the store.
// Without a bound a reader would copy them for each list.
TEST(HostileStore, IsReadUpToTwiceItsLengthIfListsShareElements) {
  constexpr std::size_t lists = 60;
  const TestName name(true);
  {
    StoreWriter writer(name.name(), {0, 8192});
    writer.putList(standardList, true, std::span<const U32>(std::vector<U32>(700, 7)));
    for (U32 i = 1; i < lists; ++i) {
      writer.putList(standardList, true, std::span<const U32>(std::array{i}));
    }
  }
  const Outcome sound = readAll(name.name());
  EXPECT_EQ("", sound.error);
  EXPECT_EQ(lists, sound.lists.size());
  Octets octets = contents(name);
  for (std::size_t i = 1; i < lists; ++i) {
    std::memcpy(&octets[recordAt(i)], &octets[recordAt(0)], sizeof(StoredImage));
  }
  write(name, octets);
  const Outcome outcome = readAll(name.name());
  EXPECT_NE(outcome.error.npos, outcome.error.find("lists share their elements")) << outcome.error;
  EXPECT_EQ(octets.size() * 2 / (700 * sizeof(U32)), outcome.lists.size());
}

// The file is shortened while it is mapped, first in part and then completely. The writer notices
// it, too, at the latest in the second operation.
TEST(HostileStore, MayLoseItsFileUnderReadersAndWriter) {
  for (const bool file : {false, true}) {
    const TestName name(file);
    StoreWriter writer(name.name());
    const ImageId list =
        writer.putList(standardList, true, std::span<const U32>(std::vector<U32>(5000, 7)));
    const void* const stored = writer.storedAddress(list);
    const StoreManager::Ptr whole = KivStash::storeManagerFactory(name.name());
    const StoreManager::Ptr half = KivStash::storeManagerFactory(name.name());
    const Reader<StandardList> reader(stored, half.ptr());
    const auto elements = reader.elements<U32>();
    std::vector<U32> comms(5000);
    elements.copyTo(comms);

    const std::string path = file ? name.text() : "/dev/shm/" + name.text();
    ASSERT_EQ(0, ::truncate(path.c_str(), 8192));
    EXPECT_THROW(elements.copyTo(comms), Stash::InvalidStoreException);
    EXPECT_THROW(reader.sorted(), Stash::InvalidStoreException);
    ASSERT_EQ(0, ::truncate(path.c_str(), 0));
    EXPECT_THROW(Reader<StandardList>(stored, whole.ptr()), Stash::InvalidStoreException);
    StoreCursor cursor(whole);
    EXPECT_THROW(while (cursor.next()){}, Stash::InvalidStoreException);
    EXPECT_THROW(
        for (int i = 0; i < 2; ++i) writer.replaceList(list, true, std::span<const U32>(comms)),
        Stash::InvalidStoreException);
    ::unlink(path.c_str());
  }
}

// A SIGBUS handler that was installed before the first store still gets the signals that are not
// caused by a store.
TEST(HostileStoreDeathTest, PassesOtherFaultsOn) {
  // Each child starts anew, so that it has no store and no handler of ours yet.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto raiseAfter = [](const struct sigaction& before) {
    ::sigaction(SIGBUS, &before, nullptr);
    const TestName name;
    const StoreWriter writer(name.name());
    Stash::storeRemove(name.name());
    ::raise(SIGBUS);
    std::_Exit(0);
  };
  struct sigaction before = {};
  before.sa_handler = SIG_IGN;
  EXPECT_EXIT(raiseAfter(before), testing::ExitedWithCode(0), "");
  before.sa_handler = [](int) { std::_Exit(1); };
  EXPECT_EXIT(raiseAfter(before), testing::ExitedWithCode(1), "");
  before.sa_flags = SA_SIGINFO;
  before.sa_sigaction = [](int, siginfo_t* info, void*) { std::_Exit(info->si_code <= 0 ? 2 : 3); };
  EXPECT_EXIT(raiseAfter(before), testing::ExitedWithCode(2), "");
}

// Without an earlier handler, SIGBUS outside of stores still ends the process: raised by a process,
// and as a fault in another mapping.
TEST(HostileStoreDeathTest, LeavesOtherFaultsAlone) {
  const TestName name;
  const StoreWriter writer(name.name());
  Stash::storeRemove(name.name());  // because a child that dies runs no destructors
  EXPECT_DEATH(::raise(SIGBUS), "");
  EXPECT_DEATH(
      {
        const Stash::Descriptor file = TestName().name().create(0600);
        volatile char* const page =
            static_cast<volatile char*>(::mmap(nullptr, 1, PROT_READ, MAP_SHARED, file.fd(), 0));
        std::exit(*page);
      },
      "");
}

}  // namespace
}  // namespace StoreTest
