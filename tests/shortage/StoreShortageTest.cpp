// The writer and the readers of a store when memory runs out.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <functional>
#include <type_traits>
#include <vector>

#include "OvBgp/Store/Destash.h"
#include "OvBgp/Store/StashLists.h"
#include "tests/platform/KivStash/StoreImages.h"
#include "tests/shortage/Sweep.h"
#include "tests/shortage/World.h"

namespace Shortage {
namespace {

using KivStash::ImageId;
using KivStash::StoreManager;
using KivStash::StoreWriter;
using StoreTest::TestName;

// A world with a store that has an image of each held list. The same process reads the store.
struct StoreWorld : LivingWorld {
  StoreWorld() {
    // Makes the directory grow now, so that later operations do not change used().
    std::vector<ImageId> ids;
    for (int i = 0; i < 200; ++i) ids.push_back(stashPut(writer, *comms.list));
    for (const ImageId id : ids) writer.remove(id);
  }

  template <class List>
  ImageId id() const {
    if constexpr (std::is_same_v<List, CommList>) return standard;
    if constexpr (std::is_same_v<List, LargeCommList>) return large;
    if constexpr (std::is_same_v<List, ExtCommList>) return extended;
    if constexpr (std::is_same_v<List, ExtCommIp6List>) return ip6;
  }
  template <class List>
  Kiv::Ptr<List> destash() const {
    return List::destash(writer.storedAddress(id<List>()), manager.ptr());
  }
  std::vector<U64> facts() const;

  const TestName name;
  const TestName otherName;  // no store has this name yet
  const Kiv::String otherPath = "/" + otherName.text();
  StoreWriter writer{name.name()};
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  const ImageId standard = stashPut(writer, *comms.list);
  const ImageId large = stashPut(writer, *largeComms.list);
  const ImageId extended = stashPut(writer, *extComms.list);
  const ImageId ip6 = stashPut(writer, *ip6Comms.list);
};

// Additionally, the texts of the images as readers see them, and the writer's figures.
std::vector<U64> StoreWorld::facts() const {
  std::vector<U64> facts = LivingWorld::facts();
  const auto add = [&facts](const auto& list) {
    facts.push_back(std::hash<Kiv::String>()(list->toStrep()));
  };
  add(destash<CommList>());
  add(destash<LargeCommList>());
  add(destash<ExtCommList>());
  add(destash<ExtCommIp6List>());
  facts.push_back(writer.images());
  facts.push_back(writer.used());
  U64 met = 0;
  for (KivStash::StoreCursor cursor(manager); cursor.next();) ++met;
  facts.push_back(met);
  return facts;
}

// Removes an image at the end of a scope.
class HeldImage {
 public:
  HeldImage(StoreWriter& writer, ImageId id) : writer_(writer), id_(id) {}
  ~HeldImage() { writer_.remove(id_); }
  HeldImage(const HeldImage&) = delete;
  HeldImage& operator=(const HeldImage&) = delete;

 private:
  StoreWriter& writer_;
  const ImageId id_;
};

template <class List>
bool rebuilt(StoreWorld& world) {
  const auto list = world.destash<List>();
  return membersOf(*list).size() == HeldList<List>::shortCount && !list->isDeduped();
}

template <class List>
bool rebuiltAndInterned(StoreWorld& world) {
  const auto rebuilt = world.destash<List>();
  if constexpr (requires { rebuilt->commVectorRawPtr(); }) {
    return rebuilt->dedup(Kind<List>::table(world)) == world.held<List>().list;
  } else {
    return List::dedupDestashed(Kind<List>::table(world), Kind<List>::values(world), *rebuilt) ==
           world.held<List>().list;
  }
}

template <class List>
bool putAndReplaced(StoreWorld& world) {
  const HeldList<List>& held = world.held<List>();
  const auto more = Kind<List>::intern(world, held.longOctets);
  const U32 images = world.writer.images();
  {
    const ImageId id = stashPut(world.writer, *held.list);
    const HeldImage image(world.writer, id);
    stashReplace(world.writer, id, *more);
    const auto list = List::destash(world.writer.storedAddress(id), world.manager.ptr());
    if (membersOf(*list).size() != held.longCount) return false;
  }
  return world.writer.images() == images;
}

// Removes the store with this name at the end of a scope, without allocating.
class Unlinked {
 public:
  explicit Unlinked(const Kiv::String& path) : path_(path.c_str()) {}
  ~Unlinked() { ::shm_unlink(path_); }
  Unlinked(const Unlinked&) = delete;
  Unlinked& operator=(const Unlinked&) = delete;

 private:
  const char* const path_;
};

bool madeAndOpened(StoreWorld& world) {
  const Unlinked atEnd(world.otherPath);
  StoreWriter writer(world.otherName.name());
  stashPut(writer, *world.extComms.list);
  const auto manager = KivStash::storeManagerFactory(world.otherName.name());
  U32 met = 0;
  for (KivStash::StoreCursor cursor(manager); cursor.next();) ++met;
  return met == 1 + HeldList<ExtCommList>::shortCount;
}

class StoreShortage : public testing::TestWithParam<Operation<StoreWorld>> {};
TEST_P(StoreShortage, IsSurvived) { sweep(GetParam()); }

using StoreRow = Operation<StoreWorld>;

#define STORE_EACH(name, run)                                                           \
  StoreRow{"Standard" name, run<CommList>}, StoreRow{"Large" name, run<LargeCommList>}, \
      StoreRow{"Extended" name, run<ExtCommList>}, StoreRow {                           \
    "Ip6" name, run<ExtCommIp6List>                                                     \
  }

constexpr StoreRow storeRows[] = {
    STORE_EACH("Rebuilt", rebuilt),
    STORE_EACH("Interned", rebuiltAndInterned),
    STORE_EACH("Put", putAndReplaced),
    {"MadeAndOpened", madeAndOpened},
};
#undef STORE_EACH
INSTANTIATE_TEST_SUITE_P(Rows, StoreShortage, testing::ValuesIn(storeRows), operationName);

}  // namespace
}  // namespace Shortage
