// A store used as intended: what is put can be read back, and the writer's errors change nothing.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "Kiv/Exception.h"
#include "tests/platform/KivStash/StoreImages.h"

// The type of the example in KivStash/ReaderPtr.h.
struct MyList {};
template <>
inline constexpr Stash::ImageKind KivStash::storedKind<MyList> = Stash::ImageKind::standardList;

namespace StoreTest {
namespace {

using Comms = std::vector<U32>;
using ExtendedContent = std::array<U32, 2>;

ImageId putStandard(StoreWriter& writer, const Comms& comms, bool sorted = true) {
  return writer.putList(standardList, sorted, std::span<const U32>(comms));
}

// All lists of the store. A multiset, because the order of a walk is not specified.
std::multiset<List> lists(const StoreManager::Ptr& manager) {
  std::multiset<List> found;
  StoreCursor cursor(manager);
  while (const auto image = cursor.next()) {
    if (imageKindRow(image->kind).isList) found.insert(readList(*image, manager.ptr()));
  }
  return found;
}

TEST(Store, GivesBackImagesOfEveryKind) {
  for (const bool file : {false, true}) {
    const TestName name(file);
    {
      StoreWriter writer(name.name());
      putStandard(writer, {7, 0xFFFFFF01, 9}, false);
      putStandard(writer, {});
      writer.putList(largeList, true, std::span<const Large>(std::array<Large, 1>{{{1, 2, 3}}}));
      const std::array values = {writer.putValue(extendedValue, 1, ExtendedContent{10, 11}),
                                 writer.putValue(extendedValue, 2, ExtendedContent{10, 11})};
      writer.putList(extendedList, true, std::span<const ImageId>(values));
      const std::array ipv6 = {writer.putValue(ipv6Value, 3, Ipv6{4, 5})};
      writer.putList(ipv6List, false, std::span<const ImageId>(ipv6));
      EXPECT_EQ(8U, writer.images());
    }
    List ipv6{ipv6List, false, {3, 4, 5}};
    ipv6.words.resize(1 + 20);
    const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
    EXPECT_EQ((std::multiset<List>{{standardList, false, {7, 0xFFFFFF01, 9}},
                                   {standardList, true, {}},
                                   {largeList, true, {1, 2, 3}},
                                   {extendedList, true, {1, 10, 11, 2, 10, 11}},
                                   ipv6}),
              lists(manager));
    EXPECT_EQ(8U, manager->store().header().images);
  }
}

// Counted objects: the last reference deletes a manager, so none may be a local variable.
static_assert(!std::is_destructible_v<StoreManager>);

TEST(Store, HasOneNameAtATime) {
  const TestName name;
  EXPECT_THROW(KivStash::storeManagerFactory(name.name()), Stash::StoreAccessException);
  EXPECT_THROW(Stash::storeRemove(name.name()), Stash::StoreAccessException);
  {
    StoreWriter writer(name.name());
    putStandard(writer, {1});
    EXPECT_THROW(StoreWriter{name.name()}, Stash::StoreAccessException);
  }
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  Stash::storeRemove(name.name());
  EXPECT_THROW(KivStash::storeManagerFactory(name.name()), Stash::StoreAccessException);
  EXPECT_EQ(1U, lists(manager).size());

  for (const char* text : {"", "..", "no/such/folder/x"}) {
    EXPECT_THROW(StoreWriter{Stash::StoreName(text)}, Stash::StoreAccessException) << text;
  }
  for (const std::size_t maximum : {std::size_t{0}, std::size_t{2000}, ~std::size_t{0}}) {
    EXPECT_THROW(StoreWriter(name.name(), {0, maximum}), Kiv::RangeException);
  }
  EXPECT_THROW(KivStash::storeManagerFactory(name.name()), Stash::StoreAccessException);
}

// Replacements by longer and by empty lists, and the use of an image that was removed.
TEST(Store, ReplacesAndRemoves) {
  const TestName name;
  StoreWriter writer(name.name());
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  const ImageId first = putStandard(writer, {1, 2});
  const ImageId second = putStandard(writer, {3});
  const void* const stored = writer.storedAddress(second);
  writer.replaceList(first, true, std::span<const U32>(Comms(1000, 4)));
  EXPECT_EQ((std::multiset<List>{{standardList, true, Comms(1000, 4)}, {standardList, true, {3}}}),
            lists(manager));
  writer.replaceList(first, false, std::span<const U32>());
  writer.remove(second);
  EXPECT_EQ((std::multiset<List>{{standardList, false, {}}}), lists(manager));
  EXPECT_THROW(Reader<StandardList>(stored, manager.ptr()), Stash::ImageNotFoundException);
  EXPECT_THROW(writer.remove(second), Stash::ImageNotFoundException);
  EXPECT_THROW(writer.replaceList(second, true, std::span<const U32>()),
               Stash::ImageNotFoundException);
  writer.remove(first);
  EXPECT_EQ(0U, writer.images());
  EXPECT_TRUE(lists(manager).empty());
}

// The lines of the example in KivStash/ReaderPtr.h.
TEST(Store, IsReadAsTheHeaderShows) {
  const TestName name;
  StoreWriter writer(name.name());
  const StoreManager::Ptr opened = writer.manager();
  StoreManager* const manager = opened.ptr();
  const void* const stored = writer.storedAddress(putStandard(writer, {5, 6}));

  KivStash::ReaderPtr<MyList, KivStash::PavoAnchorTranslatorValidator> list(stored, manager);
  const bool sorted = list.sorted();
  const auto elements = list.elements<U32>();
  std::vector<U32> comms(elements.count());
  elements.copyTo(comms);

  EXPECT_TRUE(sorted);
  EXPECT_EQ((Comms{5, 6}), comms);
}

TEST(Store, NoticesThatAnImageChangedBetweenReads) {
  const TestName name;
  StoreWriter writer(name.name());
  const StoreManager::Ptr manager = writer.manager();
  const ImageId list = putStandard(writer, {1, 2});
  const Reader<StandardList> reader(writer.storedAddress(list), manager.ptr());
  EXPECT_EQ(2U, reader.count());
  const auto elements = reader.elements<U32>();
  writer.replaceList(list, true, std::span<const U32>(Comms{3, 4}));
  Comms comms(2);
  EXPECT_THROW(elements.copyTo(comms), Stash::VersionAnchorException);
  EXPECT_THROW(reader.count(), Stash::VersionAnchorException);
  EXPECT_THROW(reader.sorted(), Stash::VersionAnchorException);
  EXPECT_THROW(reader.validateVersionAnchor(), Stash::VersionAnchorException);

  const Reader<StandardList> again(writer.storedAddress(list), manager.ptr());
  EXPECT_THROW(again.elements<U32>().copyTo(std::span(comms).first(1)),
               Stash::VersionAnchorException);
  again.elements<U32>().copyTo(comms);
  EXPECT_EQ((Comms{3, 4}), comms);
}

TEST(Store, SharesValuesAndKeepsThemWhileReferenced) {
  const TestName name;
  StoreWriter writer(name.name());
  const StoreManager::Ptr manager = writer.manager();
  const ImageId value = writer.putValue(extendedValue, 1, ExtendedContent{1, 2});
  EXPECT_EQ(value, writer.putValue(extendedValue, 1, ExtendedContent{1, 2}));
  writer.remove(value);
  const std::array twice = {value, value};
  const ImageId list = writer.putList(extendedList, true, std::span<const ImageId>(twice));
  const ImageId other =
      writer.putList(extendedList, true, std::span<const ImageId>(twice).first(1));
  writer.remove(value);
  EXPECT_THROW(writer.remove(value), Stash::ImageNotFoundException);
  EXPECT_THROW(writer.putList(extendedList, true, std::span<const ImageId>(twice)),
               Stash::ImageNotFoundException);
  EXPECT_EQ(3U, writer.images());
  EXPECT_EQ((std::multiset<List>{{extendedList, true, {1, 1, 2, 1, 1, 2}},
                                 {extendedList, true, {1, 1, 2}}}),
            lists(manager));
  writer.remove(list);
  writer.replaceList(other, false, std::span<const ImageId>());
  EXPECT_EQ(1U, writer.images());
}

TEST(Store, RefusesWhatDoesNotFitTheKind) {
  const TestName name;
  StoreWriter writer(name.name());
  const StoreManager::Ptr manager = writer.manager();
  const ImageId list = putStandard(writer, {1});
  const std::array values = {writer.putValue(extendedValue, 1, ExtendedContent{})};
  const std::span<const ImageId> ids(values);
  using Wrong = Stash::WrongKindException;
  EXPECT_THROW(writer.putList(largeList, true, std::span<const U32>()), Wrong);
  EXPECT_THROW(writer.putList(extendedValue, true, std::span<const U64>()), Wrong);
  EXPECT_THROW(writer.putList(none, true, std::span<const U32>()), Wrong);
  EXPECT_THROW(writer.putList(ImageKind{99}, true, std::span<const U32>()), Wrong);
  EXPECT_THROW(writer.putList(ipv6List, true, ids), Wrong);
  EXPECT_THROW(writer.putList(standardList, true, ids), Wrong);
  EXPECT_THROW(writer.replaceList(list, true, ids), Wrong);
  EXPECT_THROW(writer.replaceList(values[0], true, ids), Wrong);
  EXPECT_THROW(writer.putValue(standardList, 1, U32{}), Wrong);
  EXPECT_THROW(writer.putValue(ipv6Value, 1, ExtendedContent{}), Wrong);
  EXPECT_EQ(2U, writer.images());

  EXPECT_THROW(Reader<LargeList>(writer.storedAddress(list), manager.ptr()), Wrong);
  EXPECT_THROW(Reader<StandardList>(writer.storedAddress(values[0]), manager.ptr()), Wrong);
}

TEST(Store, GrowsUnderItsReaders) {
  const TestName name;
  StoreWriter writer(name.name(), {0, 1 << 22});
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  const std::size_t before = manager->store().length();
  std::multiset<List> expected;
  for (U32 i = 0; i < 1000; ++i) {
    const Comms comms(i, i);
    putStandard(writer, comms);
    expected.insert({standardList, true, comms});
  }
  EXPECT_EQ(expected, lists(manager));
  EXPECT_GT(manager->store().length(), 100 * before);
  EXPECT_EQ(writer.length(), manager->store().lengthNow());
}

TEST(Store, SaysThatItIsFullAndStaysAsItWas) {
  const TestName name;
  StoreWriter writer(name.name(), {0, 16384});
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  const ImageId kept = putStandard(writer, {1, 2, 3});
  std::vector<ImageId> filling;
  const auto fill = [&](std::size_t count) {
    const U32 images = writer.images();
    try {
      for (;;) filling.push_back(putStandard(writer, Comms(count, 5)));
    } catch (const Stash::StoreFullException&) {
      EXPECT_EQ(filling.size() + 1, writer.images());
      EXPECT_GE(writer.images(), images);
    }
  };
  for (const U32 count : {1000U, 100U, 4U, 0U}) fill(count);
  const std::multiset<List> full = lists(manager);
  EXPECT_EQ(writer.images(), full.size());
  const std::size_t used = writer.used();
  EXPECT_LE(used, 16384U);
  EXPECT_THROW(putStandard(writer, Comms(1000)), Stash::StoreFullException);
  EXPECT_THROW(writer.replaceList(kept, true, std::span<const U32>(Comms(1000))),
               Stash::StoreFullException);
  for (U32 i = 0; i < 70; ++i) {  // values need no blocks, only records
    try {
      filling.push_back(writer.putValue(extendedValue, i, ExtendedContent{}));
    } catch (const Stash::StoreFullException&) {
    }
  }
  EXPECT_EQ(used, writer.used());
  EXPECT_EQ(full, lists(manager));
  EXPECT_EQ(1U, full.count({standardList, true, {1, 2, 3}}));

  for (const ImageId id : filling) writer.remove(id);
  EXPECT_EQ((std::multiset<List>{{standardList, true, {1, 2, 3}}}), lists(manager));
  putStandard(writer, Comms(1000, 6));
}

// Random operations compared with a plain model. The comparison fails if two images share octets;
// the end of the test fails if released space is not found again.
TEST(Store, KeepsManyImagesApart) {
  const TestName name;
  StoreWriter writer(name.name(), {0, 1 << 20});
  const StoreManager::Ptr manager = writer.manager();
  std::map<ImageId, List> model;
  std::mt19937 random(42);
  const auto pick = [&] {
    return std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
  };
  for (U32 round = 0; round < 20000; ++round) {
    const List list{standardList, round % 2 == 0, Comms(random() % 40, round)};
    const std::span<const U32> comms(list.words);
    const auto choice = model.empty() ? 0 : random() % (model.size() > 300 ? 4 : 3);
    if (choice == 0) {
      model.emplace(writer.putList(standardList, list.sorted, comms), list);
    } else if (choice == 1) {
      const auto replaced = pick();
      writer.replaceList(replaced->first, list.sorted, comms);
      replaced->second = list;
    } else {
      const auto removed = pick();
      writer.remove(removed->first);
      model.erase(removed);
    }
    if (round % 1000 != 999) continue;
    std::multiset<List> expected;
    for (const auto& [id, image] : model) expected.insert(image);
    ASSERT_EQ(expected, lists(manager)) << round;
  }
  while (!model.empty()) {
    writer.remove(model.begin()->first);
    model.erase(model.begin());
  }
  // The free space is one piece again, except for the directory blocks.
  EXPECT_LT(writer.used(), 30000U);
  EXPECT_NO_THROW(putStandard(writer, Comms((std::size_t{1} << 18) - 30000 / 4)));
}

}  // namespace
}  // namespace StoreTest
