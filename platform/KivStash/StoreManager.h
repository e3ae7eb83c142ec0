// A store as readers share it, and the walk through its images.
#ifndef KIVSTASH_STOREMANAGER_H
#define KIVSTASH_STOREMANAGER_H

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "KivStash/PtrInterface.h"
#include "Stash/StoreBase.h"

namespace KivStash {

// An open store, to be passed to the operations that rebuild objects (`destash`). The object is
// reference-counted. Threads may share one manager if Kiv::VFPtrInterface::threadSafePointers is
// set; otherwise each thread opens its own.
class OV_EXPORT StoreManager : public PtrInterface {
  KIV_OBJECT(StoreManager)

 public:
  // Opens the store for reading. Raises the exceptions of Stash::StoreBase's constructor.
  explicit StoreManager(const Stash::StoreName& name) : store_(name) {}
  // Reads through the mapping of the writer, in the writer's process.
  explicit StoreManager(std::shared_ptr<const Stash::Mapping> writers)
      : store_(std::move(writers)) {}

  // The mapped store; valid as long as the manager.
  const Stash::StoreBase& store() const noexcept { return store_; }

  // Whether a reader that finds an image in change should wait long for the writer. False after
  // four waits in a row ended without a finished change, until a reader sees the writer finish one:
  // a writer that died, or is hostile, may have left any number of anchors odd, and each wait costs
  // several time slices on a busy machine. Any thread.
  bool worthWaiting() const noexcept {
    return waitsInVain_.load(std::memory_order_relaxed) < waitsInVainMax;
  }
  // Records the end of a wait; `writerSeen` if the writer finished its change. Any thread. Lost
  // updates between threads do no harm, because the count is only a heuristic.
  void waitEnds(bool writerSeen) noexcept {
    if (writerSeen) {
      waitsInVain_.store(0, std::memory_order_relaxed);
    } else if (worthWaiting()) {
      waitsInVain_.fetch_add(1, std::memory_order_relaxed);
    }
  }

 private:
  // One wait in vain may be bad luck on a busy machine; four in a row hardly are.
  static constexpr U32 waitsInVainMax = 4;

  const Stash::StoreBase store_;
  std::atomic<U32> waitsInVain_{0};  // consecutive waits without a finished change
};

// Opens the store of that name for reading. Raises the exceptions of Stash::StoreBase's
// constructor, and std::bad_alloc.
OV_EXPORT StoreManager::Ptr storeManagerFactory(const Stash::StoreName& name);

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
class OV_EXPORT StoreCursor {
 public:
  // Starts before the first image. Raises the exceptions of StoreBase::translate.
  explicit StoreCursor(StoreManager::Ptr manager);

  // Returns the next image, or nothing at the end. Raises WrongKindException for an image of an
  // unknown kind; the next call then continues behind that image. Raises InvalidStoreException and
  // the exceptions of StoreBase::translate if the directory is damaged; the walk has then ended,
  // and the next call returns nothing.
  std::optional<StoredRef> next();

 private:
  // Both enter a directory block; see the source file for what an exception leaves behind.
  void blockIs(const void* stored);
  bool blockNext();

  const StoreManager::Ptr manager_;
  const void* stored_ = nullptr;  // the writer's address of the block; null after the last block
  const Stash::DirectoryBlock* block_ = nullptr;
  std::size_t index_ = 0;  // of the next record in the block
};

}  // namespace KivStash

#endif
