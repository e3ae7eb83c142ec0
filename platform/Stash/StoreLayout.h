// What a store's octets mean.  docs/store-format.md explains the whole.
//
// Everything shared is read and written through the atomic functions below, in
// words (the size of an address) or halves of that, so that no access is a data
// race, and in the order that the version anchors rely on.
#ifndef STASH_STORELAYOUT_H
#define STASH_STORELAYOUT_H

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Kiv/Types.h"

namespace Stash {

// An address, in the terms of the process that wrote it, or a length.
using Word = std::uintptr_t;
static_assert(std::atomic_ref<Word>::is_always_lock_free &&
                  std::atomic_ref<U32>::is_always_lock_free,
              "atomics must work between processes");

// What an image is of.  Numbers are part of the layout: never renumber.
enum class ImageKind : U32 {
  none = 0,  // no image: the record is free
  standardList = 1,
  largeList = 2,
  extendedValue = 3,
  extendedList = 4,
  ipv6Value = 5,
  ipv6List = 6,
};

struct ImageKindRow {
  ImageKind kind;
  std::string_view name;
  U32 size;          // octets of a value, or of one element of a list
  bool isList;       // a list's octets are in a block, a value's in the record
  ImageKind values;  // what the elements are addresses of, if of images
};

inline constexpr U32 wordSize = sizeof(Word);
inline constexpr std::array imageKinds = std::to_array<ImageKindRow>({
    {ImageKind::none, "nothing", 0, false, ImageKind::none},
    {ImageKind::standardList, "a standard list", 4, true, ImageKind::none},
    {ImageKind::largeList, "a large list", 12, true, ImageKind::none},
    {ImageKind::extendedValue, "an extended value", 8, false, ImageKind::none},
    {ImageKind::extendedList, "an extended list", wordSize, true, ImageKind::extendedValue},
    {ImageKind::ipv6Value, "an IPv6 value", 20, false, ImageKind::none},
    {ImageKind::ipv6List, "an IPv6 list", wordSize, true, ImageKind::ipv6Value},
});

constexpr bool isImageKind(ImageKind kind) noexcept {
  return static_cast<U32>(kind) < imageKinds.size();
}
// Requires isImageKind(kind).
constexpr const ImageKindRow& imageKindRow(ImageKind kind) noexcept {
  return imageKinds[static_cast<U32>(kind)];
}

// At the start of a store.  The first four fields are where they are in every
// version and for every word size; the others are words of the writer.
struct StoreHeader {
  std::array<U32, 2> magic;  // written last when a store is made
  U32 byteOrder;
  U32 version;
  U32 wordSize;
  U32 images;    // there now
  Word base;     // address of this header in the writer's process
  Word maximum;  // octets that the store may grow to
  Word length;   // octets of the file when it last grew
  Word used;     // octets in use now
};

// The same octets in every byte order.
inline constexpr auto storeMagic =
    std::bit_cast<std::array<U32, 2>>(std::to_array({'O', 'v', 'S', 't', 'a', 's', 'h', '\n'}));
inline constexpr U32 storeByteOrder = 0x01020304;
inline constexpr U32 storeVersion = 1;
// What a store may grow to at the most: readers reserve as many addresses.
inline constexpr Word storeMaximumLimit = Word{1} << (wordSize == 8 ? 40 : 30);

// The record of one image.  A record is a record for as long as the store lives:
// its octets are never used for anything else, so that its anchor can be trusted
// to count on while images come and go.
struct StoredImage {
  static constexpr std::size_t payloadSize = 24;

  U32 anchor;  // odd while the record is being changed; two more after each change
  ImageKind kind;
  U32 detail;  // of a list, whether it is sorted; of a value, its classification
  U32 count;   // elements of a list
  // A list's first word is the address of its elements; a value is here itself.
  std::array<Word, payloadSize / sizeof(Word)> payload;
};

// Where records are.  The first block follows the header; each says where the
// next is, always at a higher address, and 0 if it is the last.
struct DirectoryBlock {
  static constexpr std::size_t imageCount = 63;

  alignas(16) Word next;
  std::array<StoredImage, imageCount> images;
};

// Whatever the writer hands out starts and ends at a multiple of this.
inline constexpr std::size_t storeUnit = 16;
inline constexpr std::size_t firstDirectoryBlock =
    (sizeof(StoreHeader) + storeUnit - 1) / storeUnit * storeUnit;
static_assert(sizeof(StoredImage) == 40 && sizeof(DirectoryBlock) % storeUnit == 0 &&
              firstDirectoryBlock % storeUnit == 0);
// No store is shorter.
inline constexpr std::size_t storeLengthMin = firstDirectoryBlock + sizeof(DirectoryBlock);

// Acquire: what is read later is at least as new.  So when an anchor is the same
// after as before, nothing that was read between was of a later change.
template <class T>
T sharedLoad(const T& field) noexcept {
  return std::atomic_ref<T>(const_cast<T&>(field)).load(std::memory_order_acquire);
}

// Release: who sees it also sees all that was written before, an odd anchor above
// all.
template <class T>
void sharedStore(T& field, T value) noexcept {
  std::atomic_ref<T>(field).store(value, std::memory_order_release);
}

// Copies `size` octets out of, or into, words that are shared.  What is copied
// from may be torn; only an anchor that is still the same says that it is not.
inline void sharedCopyOut(void* to, const Word* from, std::size_t size) noexcept {
  auto* out = static_cast<std::byte*>(to);
  for (; size >= sizeof(Word); size -= sizeof(Word), out += sizeof(Word)) {
    const Word word = sharedLoad(*from++);
    std::memcpy(out, &word, sizeof word);
  }
  if (size == 0) return;
  const Word word = sharedLoad(*from);
  std::memcpy(out, &word, size);
}

inline void sharedCopyIn(Word* to, const void* from, std::size_t size) noexcept {
  const auto* in = static_cast<const std::byte*>(from);
  while (size > 0) {
    const std::size_t octets = size < sizeof(Word) ? size : sizeof(Word);
    Word word = 0;
    std::memcpy(&word, in, octets);
    sharedStore(*to++, word);
    in += octets;
    size -= octets;
  }
}

}  // namespace Stash

#endif
