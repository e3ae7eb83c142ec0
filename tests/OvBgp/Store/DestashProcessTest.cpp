// Two processes rebuild lists that a third process changes at full speed, and a writer is
// killed. Each test runs for OVBGP_STRESS_SECONDS seconds, by default two.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iostream>
#include <random>
#include <thread>

#include "tests/OvBgp/Store/DestashKit.h"
#include "tests/platform/KivStash/StoreChurn.h"
#include "tests/stress/Stress.h"

namespace Routing::Bgp {
namespace {

using Clock = std::chrono::steady_clock;
using Stash::ImageKind;

// Everything in a list follows from one number, its seed. So a reader can check that all parts
// of a list are from one moment.
constexpr std::size_t countOf(U32 seed) { return seed % 40; }
constexpr bool sortedOf(U32 seed) { return seed % 2 == 0; }
constexpr U32 classificationOf(U32 seed) {
  return seed % static_cast<U32>(extCommClassificationOneBeyondLast);
}

void member(U32 seed, U32 i, U32& to) { to = seed << 8 | i; }
void member(U32 seed, U32 i, Acl::CommunityValue& to) { to = {seed, i, ~seed}; }
void member(U32 seed, U32 i, ExtCommContent& to) { to = ExtCommContent(U64{seed} << 16 | i); }
void member(U32 seed, U32 i, ExtCommIp6Content& to) {
  to = {1, 2, Ovnet::Ip6Addr({static_cast<U8>(seed >> 16), static_cast<U8>(seed >> 8), 3}),
        static_cast<U16>(seed << 8 | i)};
}
U32 seedOf(U32 first) { return first >> 8; }
U32 seedOf(const Acl::CommunityValue& first) { return first.globalAdmin(); }
U32 seedOf(const ExtCommContent& first) { return static_cast<U32>(first.value() >> 16); }
U32 seedOf(const ExtCommIp6Content& first) {
  const auto& octets = first.addr().octets();
  return U32{octets[0]} << 16 | U32{octets[1]} << 8 | first.localAdmin() >> 8;
}

template <class Member>
std::vector<Member> membersOf(U32 seed) {
  std::vector<Member> members(countOf(seed));
  for (U32 i = 0; i < members.size(); ++i) member(seed, i, members[i]);
  return members;
}

// The writer: puts, replaces and removes lists of every kind.
class Churner : public StoreTest::ChurnerBase<Churner> {
 public:
  using ChurnerBase::ChurnerBase;

  ImageId put(U32 kind, const ImageId* old) {
    const U32 seed = next() & 0xFFFFFF;
    switch (kind) {
      case 0:
        return plain<U32>(ImageKind::standardList, seed, old);
      case 1:
        return plain<Acl::CommunityValue>(ImageKind::largeList, seed, old);
      case 2:
        return values<ExtCommContent>(ImageKind::extendedList, ImageKind::extendedValue, seed, old);
      default:
        return values<ExtCommIp6Content>(ImageKind::ipv6List, ImageKind::ipv6Value, seed, old);
    }
  }

 private:
  template <class Element>
  ImageId put(ImageKind kind, U32 seed, std::span<const Element> elements, const ImageId* old) {
    if (!old) return writer_.putList(kind, sortedOf(seed), elements);
    writer_.replaceList(*old, sortedOf(seed), elements);
    return *old;
  }
  template <class Element>
  ImageId plain(ImageKind kind, U32 seed, const ImageId* old) {
    return put(kind, seed, std::span<const Element>(membersOf<Element>(seed)), old);
  }
  template <class Content>
  ImageId values(ImageKind kind, ImageKind valueKind, U32 seed, const ImageId* old) {
    std::vector<ImageId> values;
    for (const Content& content : membersOf<Content>(seed)) {
      values.push_back(writer_.putValue(valueKind, classificationOf(seed), content));
    }
    const ImageId id = put(kind, seed, std::span<const ImageId>(values), old);
    for (const ImageId value : values) writer_.remove(value);
    return id;
  }
};

// Whether members and sorted flag are all from the seed of the first member.
template <class Member>
bool isWhole(std::span<const Member> members, const bool* sorted) {
  if (members.empty()) return true;
  const U32 seed = seedOf(members[0]);
  return (!sorted || *sorted == sortedOf(seed)) &&
         std::ranges::equal(members, membersOf<Member>(seed));
}

template <class List>
bool plainIsWhole(const List& list) {
  const auto& members = *list.commVectorRawPtr();
  const bool sorted = list.commVectorSorted();
  return isWhole(std::span(members.data(), members.size()), &sorted);
}

template <class List>
bool valuesAreWhole(const List& list, const bool* sorted) {
  using Content = typename List::Content;
  std::vector<Content> contents;
  for (const auto& comm : list.commVector()) contents.push_back(comm->getContent());
  if (!isWhole(std::span<const Content>(contents), sorted)) return false;
  return std::all_of(list.commVector().begin(), list.commVector().end(), [&](const auto& comm) {
    return static_cast<U32>(comm->classification()) == classificationOf(seedOf(contents[0]));
  });
}

bool isWhole(const CommList& list) { return plainIsWhole(list); }
bool isWhole(const LargeCommList& list) { return plainIsWhole(list); }
bool isWhole(const ExtCommList& list) {
  if (list.empty()) return list.classificationListVector().empty();
  const auto& parts = list.classificationListVector();
  const U32 index = static_cast<U32>(list.commVector()[0]->classification());
  return valuesAreWhole(list, nullptr) && parts.size() == index + 1 &&
         parts[index]->commVector().size() == list.comms();
}
bool isWhole(const ExtCommIp6List& list) {
  const bool sorted = list.commVectorSorted();
  return valuesAreWhole(list, &sorted);
}
template <class Value>
bool isWhole(const Value& comm) {
  return static_cast<U32>(comm.classification()) == classificationOf(seedOf(comm.getContent()));
}

// The outcomes of a reader.
struct Count {
  U64 whole = 0;
  U64 broken = 0;
  U64 retries = 0;
  U64 gone = 0;        // removed or replaced by another kind
  U64 givenUp = 0;     // changed at each of many tries
  U64 unexpected = 0;  // any other exception
  U64 leaked = 0;      // octets

  U64 bad() const { return broken + unexpected + leaked; }
};

template <class T>
void readOne(const void* stored, StoreManager* manager, Count& count) {
  for (int tries = 0; tries < 100; ++tries) {
    try {
      ++(isWhole(*T::destash(stored, manager)) ? count.whole : count.broken);
      return;
    } catch (const Stash::VersionAnchorException&) {
      ++count.retries;
    }
  }
  ++count.givenUp;
}

void readOne(const KivStash::StoredRef& image, StoreManager* manager, Count& count) {
  switch (image.kind) {
    case ImageKind::standardList:
      return readOne<CommList>(image.stored, manager, count);
    case ImageKind::largeList:
      return readOne<LargeCommList>(image.stored, manager, count);
    case ImageKind::extendedValue:
      return readOne<ExtComm>(image.stored, manager, count);
    case ImageKind::extendedList:
      return readOne<ExtCommList>(image.stored, manager, count);
    case ImageKind::ipv6Value:
      return readOne<ExtCommIp6>(image.stored, manager, count);
    case ImageKind::ipv6List:
      return readOne<ExtCommIp6List>(image.stored, manager, count);
    case ImageKind::none:
      break;
  }
  ++count.unexpected;
}

// Rebuilds every image of the store once.
void readAll(const StoreManager::Ptr& manager, Count& count) {
  KivStash::StoreCursor cursor(manager);
  while (const auto image = cursor.next()) {
    try {
      readOne(*image, manager.ptr(), count);
    } catch (const Stash::ImageNotFoundException&) {
      ++count.gone;
    } catch (const Stash::WrongKindException&) {
      ++count.gone;
    } catch (const Stash::StoreException& error) {
      if (++count.unexpected == 1) ADD_FAILURE() << error.what();
    }
  }
}

Count readFor(const StoreManager::Ptr& manager, std::chrono::milliseconds time) {
  Count count;
  const U64 bytesBefore = bytesAllocated();
  const auto until = Clock::now() + time;
  while (Clock::now() < until) readAll(manager, count);
  count.leaked = bytesAllocated() - bytesBefore;
  return count;
}

struct Child {
  pid_t pid = -1;
  int out = -1;
};

// Runs `work(descriptor)` in a new process. The descriptor is the writing end of a pipe.
template <class Work>
Child start(const Work& work) {
  int ends[2];
  if (::pipe(ends) != 0) return {};
  const pid_t pid = ::fork();
  if (pid != 0) {
    ::close(ends[1]);
    return {pid, ends[0]};
  }
  work(ends[1]);
  ::_exit(0);
}

template <class T>
bool receive(const Child& child, T& value) {
  const bool got = ::read(child.out, &value, sizeof value) == sizeof value;
  ::close(child.out);
  return got;
}

// Starts the writer. Returns when the store exists and has an image.
Child startWriter(const TestName& name) {
  const Child writer = start([&name](int out) {
    StoreWriter store(name.name(), {0, 1 << 22});
    Churner churner(store);
    churner.step();
    if (::write(out, "x", 1) != 1) return;
    for (;;) churner.step();
  });
  char mark = 0;
  EXPECT_TRUE(receive(writer, mark));
  return writer;
}

void end(const Child& child, int signal) {
  int status = 0;
  if (signal != 0) ::kill(child.pid, signal);
  EXPECT_EQ(child.pid, ::waitpid(child.pid, &status, 0));
  EXPECT_EQ(signal, WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
}

void expectGood(const char* who, const Count& count) {
  EXPECT_EQ(0U, count.broken) << who;
  EXPECT_EQ(0U, count.unexpected) << who;
  EXPECT_EQ(0U, count.leaked) << who;
  EXPECT_GT(count.whole, 1000U) << who;
  std::cout << who << ": " << count.whole << " whole, " << count.retries << " retries, "
            << count.gone << " gone, " << count.givenUp << " given up\n";
}

TEST(DestashProcess, TwoReadersGetWholeListsOfAThirdProcess) {
  const TestName name;
  const Child writer = startWriter(name);
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  const Child reader = start([&](int out) {
    const Count count = readFor(KivStash::storeManagerFactory(name.name()), Stress::time());
    if (::write(out, &count, sizeof count) != sizeof count) ::_exit(1);
  });
  expectGood("reader 1", readFor(manager, Stress::time()));
  Count other;
  EXPECT_TRUE(receive(reader, other));
  expectGood("reader 2", other);
  end(reader, 0);
  end(writer, SIGKILL);
}

// If a writer is killed while it changes an image, reading that image throws. All other images
// can be read.
TEST(DestashProcess, AWriterKilledAtAnyTimeHarmsOneImageAtMost) {
  std::mt19937 random(1);
  U64 givenUp = 0;
  for (int round = 0; round < 40; ++round) {
    const TestName name;
    const Child writer = startWriter(name);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
    end(writer, SIGKILL);
    Count count;
    readAll(KivStash::storeManagerFactory(name.name()), count);
    EXPECT_EQ(0U, count.bad());
    EXPECT_LE(count.givenUp, 1U);
    givenUp += count.givenUp;
  }
  std::cout << givenUp << " of 40 writers died in mid-change\n";
}

}  // namespace
}  // namespace Routing::Bgp
