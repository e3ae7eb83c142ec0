// A store as its readers share it, and the way through its images.
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

// What operations that rebuild objects are given.  Counted like any object, so
// threads may share one if pointers are thread-safe; or each opens its own.
class OV_EXPORT StoreManager : public PtrInterface {
  KIV_OBJECT(StoreManager)

 public:
  // As the constructors of Stash::StoreBase.
  explicit StoreManager(const Stash::StoreName& name) : store_(name) {}
  explicit StoreManager(std::shared_ptr<const Stash::Mapping> writers)
      : store_(std::move(writers)) {}

  const Stash::StoreBase& store() const noexcept { return store_; }

  // Whether a reader that meets an image in change should wait for its writer for
  // long: not once some have done so in vain, until one sees the writer finish a
  // change.  A writer that died may have left any number of images odd.  Any thread.
  bool worthWaiting() const noexcept {
    return waitsInVain_.load(std::memory_order_relaxed) < waitsInVainMax;
  }
  void waitEnds(bool writerSeen) noexcept {
    if (writerSeen) {
      waitsInVain_.store(0, std::memory_order_relaxed);
    } else if (worthWaiting()) {
      waitsInVain_.fetch_add(1, std::memory_order_relaxed);
    }
  }

 private:
  static constexpr U32 waitsInVainMax = 4;

  const Stash::StoreBase store_;
  std::atomic<U32> waitsInVain_{0};  // one after the other
};

// Opens the store of that name for reading.
OV_EXPORT StoreManager::Ptr storeManagerFactory(const Stash::StoreName& name);

// An image, as a walk found it: by now it may be another, or none.
struct StoredRef {
  Stash::ImageKind kind;
  const void* stored;  // for destash, in the writer's terms
};

// One walk through the images of a store, lists and values alike.  Every image that
// is there all the while is met once; one that comes or goes meanwhile may be.
// Takes no lock and always ends.  One thread.
class OV_EXPORT StoreCursor {
 public:
  explicit StoreCursor(StoreManager::Ptr manager);

  // The next image, or nothing at the end.  Whatever it raises, the walk can go on
  // behind the fault: WrongKindException for an image of no known kind; or end:
  // InvalidStoreException and those of StoreBase::translate.
  std::optional<StoredRef> next();

 private:
  void blockIs(const void* stored);
  bool blockNext();

  const StoreManager::Ptr manager_;
  const void* stored_ = nullptr;  // of the block; null after the last
  const Stash::DirectoryBlock* block_ = nullptr;
  std::size_t index_ = 0;  // of the next record in the block
};

}  // namespace KivStash

#endif
