// The one process that makes a store and changes what is in it.
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
#include "KivStash/StoreManager.h"
#include "KivStash/StoreSpace.h"
#include "Stash/StoreLayout.h"
#include "Stash/StoreName.h"

namespace KivStash {

// An image, for the writer that put it; until it is removed.
enum class ImageId : U32 {};

// How large a store is to be, in octets; at the most, from Stash::storeLengthMin to
// Stash::storeMaximumLimit.
struct StoreSize {
  std::size_t initial = std::size_t{1} << 16;
  std::size_t maximum = std::size_t{1} << 28;
};

// Makes a store, keeps images in it, leaves it behind when it goes.
//
// Lists hold their elements, or the values that their elements stand for: values
// are kept once however often they are put, and stay for as long as the caller or a
// list holds them.
//
// Readers meanwhile see an image as it was before a change or as it is after; one
// that was reading notices and tries again.  Nothing is read back from the store,
// so it stays as it should whatever others write there.
//
// Each operation raises StoreFullException, ImageNotFoundException for an id that is
// not the caller's, WrongKindException for a kind that does not fit, or
// InvalidStoreException if the store's file was shortened; after each of these the
// images are what they were.  One thread.
class OV_EXPORT StoreWriter {
 public:
  // Raises Kiv::RangeException for a size that cannot be, StoreAccessException if the
  // name is in use or the system refuses; leaves nothing behind then.  Others may open
  // the store as `mode` says.
  explicit StoreWriter(const Stash::StoreName& name, StoreSize size = {}, mode_t mode = 0600);
  ~StoreWriter();
  StoreWriter(const StoreWriter&) = delete;
  StoreWriter& operator=(const StoreWriter&) = delete;

  // A list of plain elements.  `sorted` is for readers to believe: in order, each
  // once.
  template <class E>
  requires std::is_trivially_copyable_v<E> ImageId putList(Stash::ImageKind kind, bool sorted,
                                                           std::span<const E> elements) {
    return putElements(kind, sorted, std::as_bytes(elements), sizeof(E));
  }
  template <class E>
  requires std::is_trivially_copyable_v<E>
  void replaceList(ImageId id, bool sorted, std::span<const E> elements) {
    replaceElements(id, sorted, std::as_bytes(elements), sizeof(E));
  }

  // A list of values, which it holds from now on: the caller may remove them.
  ImageId putList(Stash::ImageKind kind, bool sorted, std::span<const ImageId> values);
  void replaceList(ImageId id, bool sorted, std::span<const ImageId> values);

  // A value: the same id for the same value, to be removed as often as put.
  template <class C>
  requires std::is_trivially_copyable_v<C> ImageId putValue(Stash::ImageKind kind,
                                                            U32 classification, const C& content) {
    return putContent(kind, classification, std::as_bytes(std::span(&content, 1)));
  }

  // Takes a list away; gives up a value, which goes with the last that holds it.
  void remove(ImageId id);

  // The image's address, as readers get it.
  const void* storedAddress(ImageId id) const;
  // Images there are, values that only lists hold included.
  U32 images() const noexcept { return images_; }
  std::size_t used() const noexcept { return space_.used(); }
  std::size_t length() const noexcept { return length_; }

  // For reading the store in this process, by the same memory.
  StoreManager::Ptr manager() const { return StoreManager::Ptr(new StoreManager(mapping_)); }

 private:
  // A piece of the store; of no size for lists without elements.
  struct Block {
    std::size_t offset = 0;
    std::size_t size = 0;
  };
  struct ValueKey {
    Stash::ImageKind kind;
    U32 classification;
    std::array<std::byte, Stash::StoredImage::payloadSize> content;

    friend auto operator<=>(const ValueKey&, const ValueKey&) = default;
  };
  using Values = std::map<ValueKey, ImageId>;

  // What the writer knows of a record.
  struct Entry {
    Stash::StoredImage* record = nullptr;
    Stash::ImageKind kind = Stash::ImageKind::none;
    U32 anchor = 0;
    U32 held = 0;      // by the caller
    U32 referred = 0;  // by elements of lists
    Block block;
    std::vector<ImageId> values;  // that the list's elements refer to
    Values::iterator value;       // of a value
  };

  Entry& entry(ImageId id) noexcept { return entries_[static_cast<U32>(id)]; }
  // Raises ImageNotFoundException unless the caller holds `id`.
  const Entry& heldEntry(ImageId id) const;

  ImageId putElements(Stash::ImageKind kind, bool sorted, std::span<const std::byte> elements,
                      std::size_t elementSize);
  void replaceElements(ImageId id, bool sorted, std::span<const std::byte> elements,
                       std::size_t elementSize);
  ImageId putContent(Stash::ImageKind kind, U32 classification, std::span<const std::byte> content);

  ImageId listPut(Stash::ImageKind kind, bool sorted, std::span<const std::byte> elements,
                  std::vector<ImageId> values);
  void listReplace(Entry& list, bool sorted, std::span<const std::byte> elements,
                   std::vector<ImageId> values);
  void listIs(Entry& list, bool sorted, std::size_t octets, const Block& block,
              std::vector<ImageId> values) noexcept;
  std::vector<const void*> addresses(Stash::ImageKind kind, std::span<const ImageId> values) const;
  void drop(ImageId id) noexcept;

  ImageId recordTake(Stash::ImageKind kind);
  void directoryAdd();
  Block blockTake(std::span<const std::byte> elements);
  std::size_t provided(std::optional<std::size_t> offset, std::size_t size);
  void blockRelease(const Block& block) noexcept;
  void lengthIs(std::size_t length);
  void countsAre() noexcept;

  // Words of the store, all changes of which are shared.
  Stash::Word* words(std::size_t offset) const noexcept {
    return reinterpret_cast<Stash::Word*>(mapping_->data() + offset);
  }
  Stash::StoreHeader& header() const noexcept {
    return *reinterpret_cast<Stash::StoreHeader*>(mapping_->data());
  }

  const Stash::StoreName name_;
  const std::size_t maximum_;
  std::shared_ptr<Stash::Mapping> mapping_;
  std::size_t length_ = 0;
  StoreSpace space_;
  Stash::Word* lastNext_ = nullptr;  // where the next directory block's address goes
  std::vector<Entry> entries_;       // by id
  std::vector<ImageId> freeRecords_;
  Values values_;
  U32 images_ = 0;
};

}  // namespace KivStash

#endif
