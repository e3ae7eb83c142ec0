// A store as readers share it, and the walk through its images.
#ifndef KIVSTASH_STOREMANAGER_H
#define KIVSTASH_STOREMANAGER_H

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "KivStash/Detail/WaitBudget.h"
#include "KivStash/PtrInterface.h"
#include "Stash/StoreBase.h"

namespace KivStash {

// An open store, to be passed to the operations that rebuild objects (`destash`). Threads may share
// one manager if Kiv::VFPtrInterface::threadSafePointers is set; otherwise each thread opens its
// own.
//
// The object is reference-counted, and `destash` counts references to the manager that it is given.
// The last reference deletes the manager. A manager that is a local variable or a member would be
// deleted, too, so such an object cannot be declared: the destructor is protected, and only
// storeManagerFactory and StoreWriter::manager create managers.
class OV_EXPORT StoreManager : public PtrInterface {
  KIV_OBJECT(StoreManager)

 public:
  // The mapped store; valid as long as the manager.
  const Stash::StoreBase& store() const noexcept { return store_; }

  // Yields the processor to the writer, for a reader that has found an image in change. Returns
  // false, and does nothing, if the readers of this manager have waited for 100 ms in the current
  // second. The bound is one for all images, because a writer that died, or is hostile, may have
  // left any number of images in change. Any thread.
  bool yieldToWriter() noexcept { return waits_.yield(); }

 protected:
  // Called by the last reference only.
  ~StoreManager() override = default;

 private:
  friend Ptr storeManagerFactory(const Stash::StoreName& name);
  friend Ptr storeManagerFactory(std::shared_ptr<const Stash::Mapping> writers);

  explicit StoreManager(const Stash::StoreName& name) : store_(name) {}
  explicit StoreManager(std::shared_ptr<const Stash::Mapping> writers)
      : store_(std::move(writers)) {}

  const Stash::StoreBase store_;
  WaitBudget waits_;
};

// Opens the store of that name for reading. Raises the exceptions of Stash::StoreBase's
// constructor, and std::bad_alloc.
OV_EXPORT StoreManager::Ptr storeManagerFactory(const Stash::StoreName& name);
// A manager that reads through the mapping of the store's own writer, in the writer's process, and
// shares the ownership of that mapping. Raises StoreAccessException and std::bad_alloc.
OV_EXPORT StoreManager::Ptr storeManagerFactory(std::shared_ptr<const Stash::Mapping> writers);

// An image that a walk has found. The image may have been replaced or removed since.
struct StoredRef {
  // The kind that the image had when the walk met it.
  Stash::ImageKind kind;
  // The writer's address of the image: the argument of `destash` and of readers.
  const void* stored;
};

// One walk through all images of a store, lists and values alike. The walk meets every image that
// exists from its start to its end exactly once; an image that is added or removed meanwhile may
// be met or not. Takes no lock, and ends in any store, because directory blocks must ascend. One
// thread.
//
// The walk also bounds what its reader may be made to read. No two lists of a true store share
// their elements, but a hostile store may have thousands of lists with the same elements. Therefore
// the walk adds up the octets of the elements of the lists that it meets, and ends when the sum
// exceeds twice the length of the store. A sum of once the length is not enough, because a writer
// may move elements ahead of the walk. A writer that is hostile and still alive can give a list
// more elements after the walk has met it.
class OV_EXPORT StoreCursor {
 public:
  // Starts before the first image. Raises the exceptions of StoreBase::translate.
  explicit StoreCursor(StoreManager::Ptr manager);

  // Returns the next image, or nothing at the end. Raises WrongKindException for an image of an
  // unknown kind; the next call then continues behind that image. Raises InvalidStoreException and
  // the exceptions of StoreBase::translate if the directory is damaged, and CountException if lists
  // share elements; the walk has then ended, and the next call returns nothing.
  std::optional<StoredRef> next();

 private:
  // Both enter a directory block; see the source file for what an exception leaves behind.
  void blockIs(const void* stored);
  bool blockNext();
  void elementsAdd(const Stash::StoredImage& image, U32 elementSize);

  const StoreManager::Ptr manager_;
  const void* stored_ = nullptr;  // the writer's address of the block; null after the last block
  const Stash::DirectoryBlock* block_ = nullptr;
  std::size_t index_ = 0;  // of the next record in the block
  U64 elements_ = 0;       // octets of the elements of all lists met so far
};

}  // namespace KivStash

#endif
