// The images that tests of stores use, and functions that read them back.
//
// Empty tag types stand for the library's lists and values, since the platform knows none of them.
#ifndef TESTS_PLATFORM_KIVSTASH_STOREIMAGES_H
#define TESTS_PLATFORM_KIVSTASH_STOREIMAGES_H

#include <unistd.h>

#include <array>
#include <atomic>
#include <compare>
#include <string>
#include <vector>

#include "Kiv/Types.h"
#include "KivStash/ReaderPtr.h"
#include "KivStash/StoreManager.h"
#include "KivStash/StoreWriter.h"
#include "Stash/StoreException.h"

namespace StoreTest {

struct StandardList {};
struct LargeList {};
struct ExtendedValue {};
struct ExtendedList {};
struct Ipv6Value {};
struct Ipv6List {};

using Large = std::array<U32, 3>;
using Ipv6 = std::array<U8, 20>;

}  // namespace StoreTest

namespace KivStash {

template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::StandardList> =
    Stash::ImageKind::standardList;
template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::LargeList> = Stash::ImageKind::largeList;
template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::ExtendedValue> =
    Stash::ImageKind::extendedValue;
template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::ExtendedList> =
    Stash::ImageKind::extendedList;
template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::Ipv6Value> = Stash::ImageKind::ipv6Value;
template <>
inline constexpr Stash::ImageKind storedKind<StoreTest::Ipv6List> = Stash::ImageKind::ipv6List;

}  // namespace KivStash

namespace StoreTest {

using KivStash::ImageId;
using KivStash::StoreCursor;
using KivStash::StoreManager;
using KivStash::StoreSize;
using KivStash::StoreWriter;
using Stash::ImageKind;
using enum Stash::ImageKind;

template <class T>
using Reader = KivStash::ReaderPtr<T, KivStash::PavoAnchorTranslatorValidator>;

// A store name that is unique among processes and tests: shared memory, or a file in the folder for
// temporary files. The destructor removes the store, or whatever a test has put under the name.
class TestName {
 public:
  explicit TestName(bool file = false) : text_(fresh(file)) {}
  ~TestName() {
    try {
      Stash::storeRemove(name());
    } catch (const Stash::StoreException&) {
      if (text_.find('/') != text_.npos) ::unlink(text_.c_str());
    }
  }
  TestName(const TestName&) = delete;
  TestName& operator=(const TestName&) = delete;

  Stash::StoreName name() const { return Stash::StoreName(text_); }
  const std::string& text() const { return text_; }

 private:
  static std::string fresh(bool file) {
    static std::atomic<int> count;
    return (file ? std::string(P_tmpdir) + "/" : "") + "ovstash-test-" +
           std::to_string(::getpid()) + "-" + std::to_string(++count);
  }

  const std::string text_;
};

// A list as read back, flattened to numbers so that lists of all kinds can be compared.
struct List {
  ImageKind kind = none;
  bool sorted = false;
  std::vector<U32> words;  // of all elements; a value's classification before its content

  friend auto operator<=>(const List&, const List&) = default;
};

inline void append(std::vector<U32>& words, U32 comm) { words.push_back(comm); }
inline void append(std::vector<U32>& words, const Large& comm) {
  words.insert(words.end(), comm.begin(), comm.end());
}

// Reads a list whose elements are plain octets.
template <class T, class Element>
List readPlain(const void* stored, StoreManager* manager) {
  const Reader<T> reader(stored, manager);
  List list{KivStash::storedKind<T>, reader.sorted(), {}};
  const auto elements = reader.template elements<Element>();
  std::vector<Element> read(elements.count());
  elements.copyTo(read);
  for (const Element& element : read) append(list.words, element);
  return list;
}

// Reads a list of values: each value by a reader of its own, and the list validated once more at
// the end, as KivStash/ReaderPtr.h demands.
template <class T, class Value, class Content>
List readValues(const void* stored, StoreManager* manager) {
  const Reader<T> reader(stored, manager);
  List list{KivStash::storedKind<T>, reader.sorted(), {}};
  const auto elements = reader.template elements<const void*>();
  std::vector<const void*> addresses(elements.count());
  elements.copyTo(addresses);
  for (const void* const address : addresses) {
    const Reader<Value> value(address, manager);
    list.words.push_back(value.classification());
    const auto content = value.template content<Content>();
    for (const auto part : content) list.words.push_back(part);
  }
  reader.validateVersionAnchor();
  return list;
}

// Reads a list of any kind; an image of a value gives a list without words.
inline List readList(const KivStash::StoredRef& image, StoreManager* manager) {
  switch (image.kind) {
    case standardList:
      return readPlain<StandardList, U32>(image.stored, manager);
    case largeList:
      return readPlain<LargeList, Large>(image.stored, manager);
    case extendedList:
      return readValues<ExtendedList, ExtendedValue, std::array<U32, 2>>(image.stored, manager);
    case ipv6List:
      return readValues<Ipv6List, Ipv6Value, Ipv6>(image.stored, manager);
    default:
      return {image.kind, false, {}};
  }
}

}  // namespace StoreTest

#endif
