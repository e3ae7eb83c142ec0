// Rebuilding from a store: which objects result, and that no contents of a store can harm a
// reader.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "Kiv/Trace.h"
#include "tests/OvBgp/Store/DestashKit.h"

namespace Routing::Bgp {
namespace {

constexpr U32 noExport = 0xFFFFFF01;

template <class List>
auto membersOf(const List& list) {
  return std::vector(list.commVectorRawPtr()->begin(), list.commVectorRawPtr()->end());
}

template <class List>
auto contentsOf(const List& list) {
  std::vector<decltype(list.commVector()[0]->getContent())> contents;
  for (const auto& comm : list.commVector()) contents.push_back(comm->getContent());
  return contents;
}

class Destash : public testing::Test {
 protected:
  template <class T>
  typename T::Ptr destash(ImageId id) const {
    return T::destash(writer_.storedAddress(id), manager_.ptr());
  }
  void TearDown() override { EXPECT_EQ(bytesBefore_, bytesAllocated()); }

  const TestName name_;
  StoreWriter writer_{name_.name()};
  const StoreManager::Ptr manager_ = KivStash::storeManagerFactory(name_.name());
  const U64 bytesBefore_ = bytesAllocated();
};

template <class List, class Element>
void expectPlain(StoreWriter& writer, StoreManager& manager, const std::vector<Element>& comms) {
  for (const bool sorted : {false, true}) {
    const ImageId id = putPlain<List>(writer, sorted, comms);
    const typename List::Ptr list = List::destash(writer.storedAddress(id), &manager);
    EXPECT_EQ(comms, membersOf(*list));
    EXPECT_EQ(sorted, list->commVectorSorted());
    EXPECT_EQ(comms.size(), list->commVectorRawPtr()->capacity());
    EXPECT_FALSE(list->everDeduped());
    EXPECT_TRUE(list->hasNotificationActive());
  }
}

TEST_F(Destash, GivesPlainListsAsTheyWereStored) {
  using Large = Acl::CommunityValue;
  expectPlain<CommList, U32>(writer_, *manager_, {});
  expectPlain<CommList, U32>(writer_, *manager_, {7});
  expectPlain<CommList, U32>(writer_, *manager_, std::vector<U32>(10001, 5));
  expectPlain<LargeCommList, Large>(writer_, *manager_, {});
  expectPlain<LargeCommList, Large>(writer_, *manager_, {{1, 2, 3}});
  expectPlain<LargeCommList, Large>(writer_, *manager_, {{3, 2, 1}, {1, 2, 3}, {3, 2, 1}});
}

TEST_F(Destash, ListsAreInternedLikeAnyOther) {
  const auto table = commListDedupTableFactory();
  const CommList::Ptr built = commListFactory();
  for (const U32 comm : {9U, noExport, 4U}) built->commIs(comm);
  const CommList::PtrConst original = built->dedup(table.ptr());
  const ImageId sorted = stashPut(writer_, *original);
  const ImageId unsorted = putPlain<CommList, U32>(writer_, false, {noExport, 9, 4, 9});
  EXPECT_EQ(original, destash<CommList>(sorted)->dedup(table.ptr()));
  EXPECT_EQ(original, destash<CommList>(unsorted)->dedup(table.ptr()));
}

TEST_F(Destash, WellKnownCommunitiesAreKnownOnceInterned) {
  const auto table = commListDedupTableFactory();
  const CommList::Ptr list = destash<CommList>(putPlain<CommList, U32>(writer_, true, {noExport}));
  EXPECT_DEATH(list->noExport(), "dedupHandleStateNeverDeduped");
  EXPECT_TRUE(list->dedup(table.ptr())->noExport());
  EXPECT_FALSE(list->noAdvertise());
}

// A wrong sorted flag is not noticed. Destash.h tells readers to check lists of writers that
// they do not trust.
TEST_F(Destash, TheSortedFlagIsBelieved) {
  const auto table = commListDedupTableFactory();
  const auto stored = putPlain<CommList, U32>(writer_, true, {3, 1, 2, 2});
  EXPECT_EQ((std::vector<U32>{3, 1, 2, 2}),
            membersOf(*destash<CommList>(stored)->dedup(table.ptr())));
}

TEST_F(Destash, ValuesArePlainAndNeverInterned) {
  const ExtCommContent linkBandwidth(0x4004'0000'7f80'0000);
  const ImageId id =
      writer_.putValue(Stash::ImageKind::extendedValue,
                       static_cast<U32>(extCommClassificationLinkBandwidth), linkBandwidth);
  {
    const ExtComm::Ptr comm = destash<ExtComm>(id);
    EXPECT_EQ(linkBandwidth, comm->getContent());
    EXPECT_EQ(extCommClassificationLinkBandwidth, comm->classification());
    EXPECT_EQ(&ExtComm::kivType(), &comm->fwkType());
    EXPECT_EQ(Dorn::DedupHandleState::rebuilt, comm->dedupState());
    EXPECT_TRUE(comm->hasNotificationActive());
    EXPECT_TRUE(comm->isValid());
    EXPECT_FALSE(comm->isLinkBandwidthWithUnspecifiedAsNumber());
    EXPECT_TRUE(comm->pktSubtype().isUnspecified());
  }
  const ExtCommIp6Content address(0x40, 2, Ovnet::Ip6Addr({0x20, 1}), 0xABCD);
  const ImageId ip6 = writer_.putValue(Stash::ImageKind::ipv6Value, 1, address);
  const ExtCommIp6::Ptr comm = ExtCommIp6::destash(writer_.storedAddress(ip6), manager_);
  EXPECT_EQ(address, comm->getContent());
  EXPECT_EQ(extCommClassificationRouteTarget, comm->classification());
  EXPECT_EQ(Dorn::DedupHandleState::rebuilt, comm->dedupState());
}

TEST_F(Destash, ExtendedListsAreSortedAndGroupedForReading) {
  const ExtCommContent target(0x0002'fde8'0000'0001);
  const ExtCommContent other(0x0002'fde8'0000'0002);
  const ExtCommContent color(0x030b'0000'0000'0009);
  for (const bool sorted : {false, true}) {
    const ImageId id = putValues<ExtCommList>(writer_, sorted, {1, 8, 1}, {other, color, target});
    const ExtCommList::Ptr list = destash<ExtCommList>(id);
    EXPECT_EQ((std::vector{target, other, color}), contentsOf(*list));
    EXPECT_TRUE(list->commVectorSorted());
    ASSERT_EQ(9U, list->classificationListVector().size());
    const auto& targets = list->classificationListVector()[1];
    EXPECT_EQ((std::vector{target, other}), contentsOf(*targets));
    EXPECT_EQ(Dorn::DedupHandleState::rebuilt, targets->dedupState());
    EXPECT_EQ(std::vector{color}, contentsOf(*list->classificationListVector()[8]));
    EXPECT_EQ(nullptr, list->classificationListVector()[2].ptr());
    EXPECT_FALSE(list->everDeduped());
  }
  EXPECT_TRUE(destash<ExtCommList>(putValues<ExtCommList>(writer_, true, {1}, {}))->empty());
}

// Numbers that a user's own rules give.
TEST_F(Destash, ClassificationsWithoutANameAreKept) {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  const auto table = extCommListDedupTableFactory();
  for (const ExtCommClassification own : {ExtCommClassification{11}, ExtCommClassification{63}}) {
    const std::array comms{Kiv::staticPtrCast<const ExtComm>(
        values->dedup(extCommFactory(own, ExtCommContent(0x4377'0000'0000'0001))))};
    const auto list = ExtCommList::dedupComms(table.ptr(), comms);
    const auto rebuilt = destash<ExtCommList>(stashPut(writer_, *list));
    EXPECT_EQ(own, rebuilt->commVector()[0]->classification());
    EXPECT_EQ(list->toStrep(), rebuilt->toStrep());
  }
}

TEST_F(Destash, Ipv6ListsAreAsTheyWereStored) {
  const ExtCommIp6Content low(0, 2, Ovnet::Ip6Addr({1}), 1);
  const ExtCommIp6Content high(0, 2, Ovnet::Ip6Addr({2}), 0);
  for (const bool sorted : {false, true}) {
    const ImageId id = putValues<ExtCommIp6List>(writer_, sorted, {1, 2}, {high, low, high});
    const ExtCommIp6List::Ptr list = destash<ExtCommIp6List>(id);
    EXPECT_EQ((std::vector{high, low, high}), contentsOf(*list));
    EXPECT_EQ(sorted, list->commVectorSorted());
    EXPECT_TRUE(list->classificationListVector().empty());
    EXPECT_FALSE(list->everDeduped());
    const ImageId empty = putValues<ExtCommIp6List>(writer_, sorted, {1}, {});
    EXPECT_EQ(sorted, destash<ExtCommIp6List>(empty)->commVectorSorted());
  }
}

// dedupDestashed finds the original list, although the stored classifications, the order and the
// repeats are wrong.
TEST_F(Destash, InterningARebuiltListGivesTheOriginal) {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  const auto table = extCommListDedupTableFactory();
  const ExtCommContent target(0x0002'fde8'0000'0001);
  const ExtCommContent bandwidth(0x4004'fde8'3f80'0000);
  const auto original = ExtCommList::dedupComms(
      table.ptr(), std::vector{ExtComm::dedupContent(values.ptr(), target),
                               ExtComm::dedupContent(values.ptr(), bandwidth)});
  const ImageId foreign =
      putValues<ExtCommList>(writer_, true, {9, 0}, {bandwidth, target, bandwidth});
  for (const ImageId id : {stashPut(writer_, *original), foreign}) {
    EXPECT_EQ(original,
              ExtCommList::dedupDestashed(table.ptr(), values.ptr(), *destash<ExtCommList>(id)));
  }
  const auto ip6Values = extCommIp6DedupTableFactory(parser->extCommParser());
  const auto ip6Table = extCommIp6ListDedupTableFactory();
  const ExtCommIp6Content address(0, 2, Ovnet::Ip6Addr({1}), 1);
  const auto ip6 = ExtCommIp6List::dedupComms(
      ip6Table.ptr(), std::vector{ExtCommIp6::dedupContent(ip6Values.ptr(), address)});
  const ImageId twice = putValues<ExtCommIp6List>(writer_, true, {9, 0}, {address, address});
  for (const ImageId id : {stashPut(writer_, *ip6), twice}) {
    EXPECT_EQ(ip6, ExtCommIp6List::dedupDestashed(ip6Table.ptr(), ip6Values.ptr(),
                                                  *destash<ExtCommIp6List>(id)));
  }
}

TEST_F(Destash, ReplacedImagesAreOfTheOtherList) {
  const CommList::Ptr first = commListFactory();
  first->commIs(1);
  const CommList::Ptr second = commListFactory();
  second->commIs(2);
  const ImageId id = stashPut(writer_, *first);
  stashReplace(writer_, id, *second);
  EXPECT_EQ(std::vector{2U}, membersOf(*destash<CommList>(id)));
  writer_.remove(id);
  EXPECT_THROW(destash<CommList>(id), Stash::ImageNotFoundException);
}

TEST_F(Destash, TracesWhatIsRebuilt) {
  std::vector<std::string> lines;
  const auto traced = [&](const std::function<void()>& act) {
    lines.clear();
    Kiv::traceSinkIs([&lines](std::string_view line) { lines.emplace_back(line); });
    Kiv::traceLevelsIs("OvBgp/8");
    act();
    Kiv::traceLevelsIs("");
    Kiv::traceSinkIs({});
  };
  const auto endsWith = [](const std::string& line, std::string_view end) {
    return line.size() >= end.size() && line.substr(line.size() - end.size()) == end;
  };
  const ImageId list = putPlain<CommList, U32>(writer_, true, {0x10002, noExport});
  traced([&] { destash<CommList>(list); });
  ASSERT_EQ(2U, lines.size());
  EXPECT_TRUE(endsWith(lines[0], " Destashing Routing::Bgp::CommList")) << lines[0];
  EXPECT_TRUE(endsWith(lines[1], "   destashed: 1:2 no-export")) << lines[1];
  const ImageId empty = putPlain<LargeCommList, Acl::CommunityValue>(writer_, true, {});
  traced([&] { destash<LargeCommList>(empty); });
  ASSERT_EQ(1U, lines.size());
  EXPECT_TRUE(endsWith(lines[0], "Destashing Routing::Bgp::LargeCommList")) << lines[0];
  const ImageId values = putValues<ExtCommIp6List>(writer_, true, {0}, {ExtCommIp6Content()});
  traced([&] { destash<ExtCommIp6List>(values); });
  ASSERT_EQ(4U, lines.size());
  EXPECT_TRUE(endsWith(lines[0], "Destashing Routing::Bgp::ExtCommIp6List")) << lines[0];
  EXPECT_TRUE(endsWith(lines[1], "Destashing Routing::Bgp::ExtCommIp6")) << lines[1];
  EXPECT_NE(lines[3].npos, lines[3].find("  destashed: [ <")) << lines[3];
  traced([] {});
  destash<CommList>(list);
  EXPECT_TRUE(lines.empty());
}

// The tests from here on use a store with one image of each type and change one field of it.

using Stash::StoredImage;
using Octets = std::vector<char>;

constexpr std::size_t recordAt(std::size_t index) {
  return Stash::firstDirectoryBlock + offsetof(Stash::DirectoryBlock, images) +
         index * sizeof(StoredImage);
}

enum Image : std::size_t { standard, large, extendedValue, extended, ipv6Value, ipv6, images };

Octets soundStore() {
  const TestName name(true);
  {
    StoreWriter writer(name.name(), {0, 8192});
    putPlain<CommList, U32>(writer, true, {1, 2, 3});
    putPlain<LargeCommList, Acl::CommunityValue>(writer, true, {{1, 2, 3}});
    putValues<ExtCommList>(writer, true, {1}, {ExtCommContent(6)});
    putValues<ExtCommIp6List>(writer, true, {1}, {ExtCommIp6Content()});
  }
  std::ifstream file(name.text(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

template <class T>
std::string errorOf(const void* stored, StoreManager* manager) {
  try {
    const auto object = T::destash(stored, manager);
    return object->toStrep().empty() ? "empty" : "";
  } catch (const Stash::StoreException& error) {
    return error.what();
  }
}

using ErrorOf = std::string (*)(const void*, StoreManager*);
constexpr ErrorOf errorsOf[images] = {errorOf<CommList>,   errorOf<LargeCommList>,
                                      errorOf<ExtComm>,    errorOf<ExtCommList>,
                                      errorOf<ExtCommIp6>, errorOf<ExtCommIp6List>};

// The text of the exception that destash of type `of` throws for the image at offset `at`;
// empty if it throws none.
std::string errorOfCorrupted(const Octets& octets, Image of, std::size_t at) {
  const TestName name(true);
  std::ofstream(name.text(), std::ios::binary)
      .write(octets.data(), static_cast<std::streamsize>(octets.size()));
  const StoreManager::Ptr manager = KivStash::storeManagerFactory(name.name());
  return errorsOf[of](manager->store().storedAddress(at), manager.ptr());
}

template <class T>
void put(Octets& octets, std::size_t at, T value) {
  std::memcpy(octets.data() + at, &value, sizeof value);
}

TEST(HostileDestash, EndsInAnExceptionThatSaysWhy) {
  struct Row {
    const char* what;
    Image image;                      // the image that is damaged
    std::size_t field;                // the offset in its record
    Stash::Word value;                // the new word, or half a word
    const char* error;                // in the exception about the image
    const char* listError = nullptr;  // in that about the list that has it
  };
  constexpr std::size_t kind = offsetof(StoredImage, kind);
  constexpr std::size_t detail = offsetof(StoredImage, detail);
  constexpr std::size_t count = offsetof(StoredImage, count);
  constexpr std::size_t payload = offsetof(StoredImage, payload);
  const Row rows[] = {
      {"too many", standard, count, 100000, "cannot be in a store"},
      {"far too many", large, count, 0xFFFFFFFF, "cannot be in a store"},
      {"too many values", extended, count, 0x20000000, "cannot be in a store"},
      {"more than follow", ipv6, count, 2000, "cannot be in a store"},
      {"elements nowhere", standard, payload, 16, "outside the store"},
      {"values nowhere", extended, payload, 0, "outside the store"},
      {"elements askew", ipv6, payload + 0, 1, "not a multiple"},
      {"classification", extendedValue, detail, 10, "classification 10 ", "classification 10 "},
      {"large classification", ipv6Value, detail, 64, "classification 64 ", "classification 64 "},
      {"huge classification", ipv6Value, detail, 0xFFFFFFFF, "classification 4294967295 ",
       "classification 4294967295 "},
      {"another kind", extendedValue, kind, 1, "a standard list, not", "a standard list, not"},
      {"no kind", ipv6Value, kind, 99, "kind 99", "kind 99"},
      {"nothing", extendedValue, kind, 0, "removed", "removed"},
      {"in change", ipv6Value, 0, 7, "is being changed", "is being changed"},
      {"in change", standard, 0, 7, "is being changed"},
  };
  const U64 bytesBefore = bytesAllocated();
  const Octets sound = soundStore();
  for (const Row& row : rows) {
    Octets octets = sound;
    if (row.field == payload) {
      put(octets, recordAt(row.image) + row.field, row.value);
    } else {
      put(octets, recordAt(row.image) + row.field, static_cast<U32>(row.value));
    }
    const std::string error = errorOfCorrupted(octets, row.image, recordAt(row.image));
    EXPECT_NE(error.npos, error.find(row.error)) << row.what << ": " << error;
    if (!row.listError) continue;
    const auto list = static_cast<Image>(row.image + 1);
    const std::string listError = errorOfCorrupted(octets, list, recordAt(list));
    EXPECT_NE(error.npos, listError.find(row.listError)) << row.what << ": " << listError;
  }
  EXPECT_EQ(bytesBefore, bytesAllocated()) << "what was partly built is still there";
}

TEST(HostileDestash, EachTypeIsMadeOfItsOwnImagesOnly) {
  const Octets sound = soundStore();
  for (std::size_t of = 0; of < images; ++of) {
    for (std::size_t at = 0; at < images; ++at) {
      const std::string error = errorOfCorrupted(sound, static_cast<Image>(of), recordAt(at));
      EXPECT_EQ(of == at, error.empty()) << of << ' ' << at << ": " << error;
      EXPECT_TRUE(of == at || error.find(", not a") != error.npos) << error;
    }
    for (const std::size_t at : {std::size_t{0}, recordAt(60), sound.size(), ~std::size_t{15}}) {
      EXPECT_NE("", errorOfCorrupted(sound, static_cast<Image>(of), at)) << of << ' ' << at;
    }
  }
}

// A list's image has addresses of values, and nothing keeps it from naming one value many times.
// The limit is the room for addresses.
TEST(HostileDestash, AListMayHoldOneValueThousandsOfTimes) {
  const TestName name;
  StoreWriter writer(name.name());
  const std::vector<ExtCommContent> same(20000, ExtCommContent(5));
  const ImageId id = putValues<ExtCommList>(writer, true, {0}, same);
  const auto manager = writer.manager();
  EXPECT_EQ(1U, ExtCommList::destash(writer.storedAddress(id), manager.ptr())->comms());
}

}  // namespace
}  // namespace Routing::Bgp
