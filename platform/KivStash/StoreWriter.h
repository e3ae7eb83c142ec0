// The writer of a store: the one process that creates the store and changes its content.
#ifndef KIVSTASH_STOREWRITER_H
#define KIVSTASH_STOREWRITER_H

#include <sys/types.h>

#include <array>
#include <compare>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "KivStash/Detail/StoreSpace.h"
#include "KivStash/StoreManager.h"
#include "Stash/StoreLayout.h"
#include "Stash/StoreName.h"

namespace KivStash {

// Identifies an image to the writer that put it, until the image is removed. The number may be used
// for another image afterwards.
enum class ImageId : U32 {};

// The lengths of a store in octets. Both are limited to Stash::storeLengthMin at least and
// Stash::storeMaximumLimit at most.
struct StoreSize {
  // The first length of the file; adjusted to the limits and to `maximum`. The file grows by
  // doubling.
  std::size_t initial = std::size_t{1} << 16;
  // The length that the file may grow to. Writer and readers reserve as much address space.
  std::size_t maximum = std::size_t{1} << 28;
};

// Creates a store, keeps images in it, and leaves the store behind when it is destroyed.
//
// A value is stored once, however often it is put. The writer counts how many times the caller has
// put it and how many list elements refer to it, and frees the value when both counts are zero.
//
// Readers may work at the same time: they see an image either as it was before a change or as it is
// after the change. A reader that was reading during a change notices it by the version anchor
// (KivStash/ReaderPtr.h) and tries again. The writer never reads the shared octets back, so its own
// state stays correct whatever another process writes to the store.
//
// Each operation raises StoreFullException if there is no room, ImageNotFoundException for an id
// that the caller does not own, WrongKindException for an unsuitable kind, InvalidStoreException if
// the store's file was shortened, and std::bad_alloc. After each of these, the images are as they
// were before. One thread.
class OV_EXPORT StoreWriter {
 public:
  // Creates the store, with permissions `mode` for other users. Raises Kiv::RangeException for a
  // maximum outside the limits, StoreAccessException if the name is in use or the system refuses,
  // and StoreFullException if the system has no memory for the initial length. The name is removed
  // again on failure, unless it refers to another file by then. A writer that is killed in the
  // constructor leaves an unfinished store, which readers refuse and Stash::storeRemove removes.
  // Killed between the creation of the file and its first octets, it leaves an empty file, which
  // storeRemove refuses.
  explicit StoreWriter(const Stash::StoreName& name, StoreSize size = {}, mode_t mode = 0600);
  // Unmaps the store. The store itself stays: remove it with Stash::storeRemove.
  ~StoreWriter();
  // Not copyable, because a store has one writer.
  StoreWriter(const StoreWriter&) = delete;
  // Not assignable, for the same reason.
  StoreWriter& operator=(const StoreWriter&) = delete;

  // Puts a list of plain elements, which are copied, and returns its id. `sorted` declares that the
  // elements are in ascending order without duplicates; the writer does not check it.
  template <class E>
  requires std::is_trivially_copyable_v<E> ImageId putList(Stash::ImageKind kind, bool sorted,
                                                           std::span<const E> elements) {
    return putElements(kind, sorted, std::as_bytes(elements), sizeof(E));
  }
  // Replaces the elements of a list of plain elements. The image keeps its id and its address.
  template <class E>
  requires std::is_trivially_copyable_v<E>
  void replaceList(ImageId id, bool sorted, std::span<const E> elements) {
    replaceElements(id, sorted, std::as_bytes(elements), sizeof(E));
  }

  // Puts a list of values and returns its id. The list counts a reference to each of its values, so
  // the caller may remove the values afterwards.
  ImageId putList(Stash::ImageKind kind, bool sorted, std::span<const ImageId> values);
  // Replaces the values of a list. Values that were only in the old list are freed.
  void replaceList(ImageId id, bool sorted, std::span<const ImageId> values);

  // Puts a value and returns its id. The same value of the same classification has the same id, and
  // must be removed as often as it was put.
  template <class C>
  requires std::is_trivially_copyable_v<C> ImageId putValue(Stash::ImageKind kind,
                                                            U32 classification, const C& content) {
    return putContent(kind, classification, std::as_bytes(std::span(&content, 1)));
  }

  // Removes a list; or gives back one put of a value, which is freed once no list refers to it,
  // too.
  void remove(ImageId id);

  // The image's address, as readers need it. Requires that the caller owns the image.
  const void* storedAddress(ImageId id) const;
  // Number of images, with the values that only lists refer to.
  U32 images() const noexcept { return images_; }
  // Octets of the store in use.
  std::size_t used() const noexcept { return space_.used(); }
  // Octets of the store's file.
  std::size_t length() const noexcept { return length_; }

  // Returns a new manager for reading the store in this process. It shares the writer's mapping and
  // may outlive the writer.
  StoreManager::Ptr manager() const { return storeManagerFactory(mapping_); }

 private:
  // A piece of the store with the elements of a list; size 0 for a list without elements.
  struct Block {
    std::size_t offset = 0;
    std::size_t size = 0;
  };
  // Identity of a value. Octets behind a shorter content are zeros.
  struct ValueKey {
    Stash::ImageKind kind;
    U32 classification;
    std::array<std::byte, Stash::StoredImage::payloadSize> content;

    friend auto operator<=>(const ValueKey&, const ValueKey&) = default;
  };
  // Finds the image of a value that was put before.
  using Values = std::map<ValueKey, ImageId>;

  // The writer's own state of one record. An image exists while `held` or `referred` is not 0.
  struct Entry {
    Stash::StoredImage* record = nullptr;
    Stash::ImageKind kind = Stash::ImageKind::none;
    U32 anchor = 0;    // the value in the record, which is never read back
    U32 held = 0;      // puts by the caller that are not removed yet
    U32 referred = 0;  // elements of lists that refer to this value
    Block block;
    std::vector<ImageId> values;  // of a list of values: one for each element
    Values::iterator value;       // of a value
  };

  // The end of construction, and of a construction that fails.
  void headerIs();
  void nameRelease(const Stash::Descriptor& file) const noexcept;

  // Unchecked: requires an id that this writer has given out.
  Entry& entry(ImageId id) noexcept { return entries_[static_cast<U32>(id)]; }
  // Raises ImageNotFoundException unless the caller owns `id`.
  const Entry& heldEntry(ImageId id) const;

  // The public operations without their templates: they check kind and element size.
  ImageId putElements(Stash::ImageKind kind, bool sorted, std::span<const std::byte> elements,
                      std::size_t elementSize);
  void replaceElements(ImageId id, bool sorted, std::span<const std::byte> elements,
                       std::size_t elementSize);
  ImageId putContent(Stash::ImageKind kind, U32 classification, std::span<const std::byte> content);

  // The common parts for lists of both sorts. `values` is empty for plain elements. listIs writes
  // the record; drop frees an image that nobody owns or refers to any more.
  ImageId listPut(Stash::ImageKind kind, bool sorted, std::span<const std::byte> elements,
                  std::vector<ImageId> values);
  void listReplace(Entry& list, bool sorted, std::span<const std::byte> elements,
                   std::vector<ImageId> values);
  void listIs(Entry& list, bool sorted, std::size_t octets, const Block& block,
              std::vector<ImageId> values) noexcept;
  std::vector<const void*> addresses(Stash::ImageKind kind, std::span<const ImageId> values) const;
  void drop(ImageId id) noexcept;

  // Space in the store: records, directory blocks, and blocks of elements. Those that take space
  // raise StoreFullException and have then taken nothing.
  ImageId recordTake(Stash::ImageKind kind);
  void directoryAdd();
  Block blockTake(std::span<const std::byte> elements);
  std::size_t provided(std::optional<std::size_t> offset, std::size_t size);
  void blockRelease(const Block& block) noexcept;
  void lengthIs(std::size_t length);
  void countsAre() noexcept;

  // The words of the store at `offset`. Write them with Stash::sharedStore or sharedCopyIn only.
  Stash::Word* words(std::size_t offset) const noexcept {
    return reinterpret_cast<Stash::Word*>(mapping_->data() + offset);
  }
  // The header in the store; for writing, as words().
  Stash::StoreHeader& header() const noexcept {
    return *reinterpret_cast<Stash::StoreHeader*>(mapping_->data());
  }

  const Stash::StoreName name_;  // for removal after a failed construction, and for messages
  const std::size_t maximum_;
  std::shared_ptr<Stash::Mapping> mapping_;
  std::size_t length_ = 0;            // of the file
  StoreSpace space_;                  // which octets up to maximum_ are free
  Stash::Word* lastNext_ = nullptr;   // the `next` word of the last directory block
  std::vector<Entry> entries_;        // indexed by id
  std::vector<ImageId> freeRecords_;  // has capacity for all ids, so freeing cannot fail
  Values values_;                     // all values in the store
  U32 images_ = 0;                    // entries with a kind
};

}  // namespace KivStash

#endif
