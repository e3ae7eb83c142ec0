// The layout of a store. docs/store-format.md explains the protocol around it.
//
//   offset 0                 64 (48 with 32-bit words)
//   | StoreHeader | padding | DirectoryBlock | elements | free | DirectoryBlock | elements ...
//                             |                ^             ^
//                             | next ----------|-------------'   (0 in the last block)
//                             | images[0] : StoredImage
//                             |    anchor  kind  detail  count    4 x U32
//                             |    payload[0] -'                  list: address of its elements
//                             | images[1] : StoredImage
//                             |    payload                        value: the octets themselves
//                             | ... images[62]
//
// An image is one record (StoredImage) in a directory block, plus, for a list, its elements in one
// piece elsewhere in the store. The elements of a list of values are the addresses of the records
// of these values. All addresses are addresses of the writer's process; Stash::StoreBase translates
// them. Every piece starts and ends at a multiple of storeUnit octets. All numbers are in the
// writer's byte order.
//
// The version anchor of a record is a sequence lock: odd while the writer changes the record,
// increased by two after each change. A reader that finds the same even anchor before and after
// reading has read one consistent version.
//
// All shared octets are accessed through the atomic functions at the end of this file, in words
// (the size of an address) or half-words, so no access is a data race and all accesses have the
// order that the version anchors rely on.
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

// The unit of shared memory: a length in octets, or an address of the writer's process.
using Word = std::uintptr_t;
static_assert(std::atomic_ref<Word>::is_always_lock_free &&
                  std::atomic_ref<U32>::is_always_lock_free,
              "atomics must work between processes");

// What an image represents. The numbers are part of the layout: never renumber.
enum class ImageKind : U32 {
  // No image: the record is free.
  none = 0,
  // A list of standard communities (RFC 1997).
  standardList = 1,
  // A list of large communities (RFC 8092).
  largeList = 2,
  // One extended community (RFC 4360).
  extendedValue = 3,
  // A list of images of kind extendedValue.
  extendedList = 4,
  // One IPv6-address-specific extended community (RFC 5701).
  ipv6Value = 5,
  // A list of images of kind ipv6Value.
  ipv6List = 6,
};

// One row of `imageKinds`: the properties of a kind.
struct ImageKindRow {
  // The kind that the row describes.
  ImageKind kind;
  // For messages, with its article: "a standard list".
  std::string_view name;
  // Octets of a value, or of one element of a list.
  U32 size;
  // Whether the octets are in a piece of their own, as for lists, or in the record itself.
  bool isList;
  // The kind of the images that the elements refer to; none if the elements are plain octets.
  ImageKind values;
};

// Octets of an address in this process; a reader needs the same word size as the writer.
inline constexpr U32 wordSize = sizeof(Word);
// All kinds, indexed by their number.
inline constexpr std::array imageKinds = std::to_array<ImageKindRow>({
    {ImageKind::none, "nothing", 0, false, ImageKind::none},
    {ImageKind::standardList, "a standard list", 4, true, ImageKind::none},
    {ImageKind::largeList, "a large list", 12, true, ImageKind::none},
    {ImageKind::extendedValue, "an extended value", 8, false, ImageKind::none},
    {ImageKind::extendedList, "an extended list", wordSize, true, ImageKind::extendedValue},
    {ImageKind::ipv6Value, "an IPv6 value", 20, false, ImageKind::none},
    {ImageKind::ipv6List, "an IPv6 list", wordSize, true, ImageKind::ipv6Value},
});

// Whether `kind`, which may be any number found in a store, has a row in imageKinds.
constexpr bool isImageKind(ImageKind kind) noexcept {
  return static_cast<U32>(kind) < imageKinds.size();
}
// The row of a kind. Requires isImageKind(kind).
constexpr const ImageKindRow& imageKindRow(ImageKind kind) noexcept {
  return imageKinds[static_cast<U32>(kind)];
}

// The first octets of a store. The fields up to `wordSize` have the same place and size in every
// layout version; the fields behind it are words of the writer. A reader checks in this order.
struct StoreHeader {
  // storeMagicUnfinished from the creation of the file until everything else is written, then
  // storeMagic.
  std::array<U32, 2> magic;
  // storeByteOrder, in the writer's byte order.
  U32 byteOrder;
  // storeVersion of the writer.
  U32 version;
  // Octets of the writer's addresses, 4 or 8.
  U32 wordSize;
  // Current number of images. For people to look at; no reader relies on it.
  U32 images;
  // Address of this header in the writer's process; the origin of all stored addresses.
  Word base;
  // Octets that the store may grow to. Readers reserve as much address space.
  Word maximum;
  // Octets of the file after it last grew.
  Word length;
  // Octets in use. For people to look at; no reader relies on it.
  Word used;
};

// The magic number "OvStash\n". As octets, so it is the same in every byte order.
inline constexpr auto storeMagic =
    std::bit_cast<std::array<U32, 2>>(std::to_array({'O', 'v', 'S', 't', 'a', 's', 'h', '\n'}));
// The magic number of a store whose writer has not finished creating it, "OvStash?". The writer
// writes it before anything else. If the writer dies early, the mark tells the rest of a store from
// a foreign file. It differs from storeMagic in the second half only, so one store of a half-word
// finishes the store.
inline constexpr auto storeMagicUnfinished =
    std::bit_cast<std::array<U32, 2>>(std::to_array({'O', 'v', 'S', 't', 'a', 's', 'h', '?'}));
static_assert(storeMagic[0] == storeMagicUnfinished[0]);
// Reads as another number on a machine of another byte order.
inline constexpr U32 storeByteOrder = 0x01020304;
// Version of this layout. Increase it with every change of meaning; older versions are not read.
inline constexpr U32 storeVersion = 1;
// Upper bound of StoreHeader::maximum in octets (1 TiB, or 1 GiB with 32-bit words), so a hostile
// header cannot make a reader reserve all its address space.
inline constexpr Word storeMaximumLimit = Word{1} << (wordSize == 8 ? 40 : 30);

// The record of one image. Once its directory block exists, a record stays a record as long as the
// store lives: its octets are never reused for anything else. Therefore its anchor only ever
// increases, whichever images the record describes one after the other, and a reader can trust it.
struct StoredImage {
  // Octets of `payload`: the largest value (20 octets), rounded up to whole words.
  static constexpr std::size_t payloadSize = 24;

  // The version anchor: odd while the record is being changed, increased by two per change.
  U32 anchor;
  // What the image represents; none if the record is free.
  ImageKind kind;
  // For a list: 1 if it is sorted without duplicates, else 0. For a value: its classification.
  U32 detail;
  // Number of elements of a list; without meaning for a value.
  U32 count;
  // For a list: the address of its elements in the first word. For a value: its octets.
  std::array<Word, payloadSize / sizeof(Word)> payload;
};

// An array of records. The first block follows the header, the others are chained in ascending
// order of address, so that a walk ends in any store. Blocks are never given back.
struct DirectoryBlock {
  // Records per block. A block of 2,528 octets then wastes nothing to alignment with 64-bit words.
  static constexpr std::size_t imageCount = 63;

  // Address of the next block, or 0 in the last one.
  alignas(16) Word next;
  // The records, used or free.
  std::array<StoredImage, imageCount> images;
};

// Alignment, and unit of size, of all pieces that the writer allocates in the store.
inline constexpr std::size_t storeUnit = 16;
// Offset of the first directory block: behind the header, aligned.
inline constexpr std::size_t firstDirectoryBlock =
    (sizeof(StoreHeader) + storeUnit - 1) / storeUnit * storeUnit;
static_assert(sizeof(StoredImage) == 40 && sizeof(DirectoryBlock) % storeUnit == 0 &&
              firstDirectoryBlock % storeUnit == 0);
// Octets of the shortest store: the header and one directory block.
inline constexpr std::size_t storeLengthMin = firstDirectoryBlock + sizeof(DirectoryBlock);

// Loads one shared field with acquire order, so later loads are at least as new. It follows that if
// an anchor is the same after reading as before, no field read in between is of a later change.
template <class T>
T sharedLoad(const T& field) noexcept {
  return std::atomic_ref<T>(const_cast<T&>(field)).load(std::memory_order_acquire);
}

// Stores one shared field with release order: a reader that sees the value also sees everything
// written before, in particular the odd anchor.
template <class T>
void sharedStore(T& field, T value) noexcept {
  std::atomic_ref<T>(field).store(value, std::memory_order_release);
}

// Copies `size` octets out of shared words, word by word. `from` must have whole words for `size`
// octets. The copy may be torn; only a version anchor that is unchanged afterwards proves that it
// is not.
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

// Copies `size` octets into shared words, word by word. Octets behind them in the last word become
// zeros.
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
