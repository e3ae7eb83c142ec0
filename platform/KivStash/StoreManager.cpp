#include "KivStash/StoreManager.h"

#include <sstream>
#include <string>
#include <utility>

#include "Stash/StoreException.h"

namespace KivStash {

using Stash::DirectoryBlock;
using Stash::ImageKind;
using Stash::StoredImage;
using Stash::Word;

KIV_OBJECT_DEFINE(StoreManager)

StoreManager::Ptr storeManagerFactory(const Stash::StoreName& name) {
  return StoreManager::Ptr(new StoreManager(name));
}

StoreManager::Ptr storeManagerFactory(std::shared_ptr<const Stash::Mapping> writers) {
  return StoreManager::Ptr(new StoreManager(std::move(writers)));
}

StoreCursor::StoreCursor(StoreManager::Ptr manager) : manager_(std::move(manager)) {
  blockIs(manager_->store().storedAddress(Stash::firstDirectoryBlock));
}

// Continues the walk at the block that the writer has at `stored`. stored_ is null until
// translate() has succeeded, so an exception ends the walk instead of reading the old block again.
void StoreCursor::blockIs(const void* stored) {
  stored_ = nullptr;
  index_ = 0;
  const void* const block =
      manager_->store().translate(stored, sizeof(DirectoryBlock), alignof(DirectoryBlock));
  block_ = static_cast<const DirectoryBlock*>(block);
  stored_ = stored;
}

// Continues at the next block; returns false after the last block. Each block must start behind the
// end of the one before, otherwise a damaged store could make the walk endless. stored_ is cleared
// first, so an exception ends the walk. Offsets are compared instead of addresses, because the
// writer's base may be any number and addresses may wrap.
bool StoreCursor::blockNext() {
  const void* const next = reinterpret_cast<const void*>(Stash::sharedLoad(block_->next));
  const Word block = reinterpret_cast<Word>(std::exchange(stored_, nullptr));
  manager_->store().check();
  if (!next) return false;
  const Word base = reinterpret_cast<Word>(manager_->store().storedAddress(0));
  const Word offset = reinterpret_cast<Word>(next) - base;
  if (offset < block - base + sizeof(DirectoryBlock)) {
    throw Stash::InvalidStoreException("the store's directory leads back on itself");
  }
  blockIs(next);
  return true;
}

// Adds the elements of one list to the sum. A list that is too long for the store is not added,
// because no reader reads it. The known length of the store is compared first, without a system
// call; the store may have grown since. The count is read without validation: if the writer is just
// changing the record, the count is that of one list that was in the record.
void StoreCursor::elementsAdd(const StoredImage& image, U32 elementSize) {
  const Stash::StoreBase& store = manager_->store();
  const U64 octets = U64{Stash::sharedLoad(image.count)} * elementSize;
  if (octets > store.length() && octets > store.lengthNow()) return;
  elements_ += octets;
  if (elements_ / 2 <= store.length() || elements_ / 2 <= store.lengthNow()) return;
  stored_ = nullptr;
  throw Stash::CountException("lists share their elements: those met so far have " +
                              std::to_string(elements_) + " octets, in a store of " +
                              std::to_string(store.length()));
}

// index_ advances before anything can throw, so the next call continues behind a faulty record. The
// kind is read without validation: the reader of the image checks it again.
std::optional<StoredRef> StoreCursor::next() {
  while (stored_) {
    if (index_ == DirectoryBlock::imageCount && !blockNext()) break;
    const StoredImage& image = block_->images[index_];
    const std::size_t offset = offsetof(DirectoryBlock, images) + index_++ * sizeof(StoredImage);
    const ImageKind kind = Stash::sharedLoad(image.kind);
    if (kind == ImageKind::none) continue;
    // Computed as a number: the writer's addresses may be any and wrap, and a pointer must not.
    const auto* const stored =
        reinterpret_cast<const void*>(reinterpret_cast<Word>(stored_) + offset);
    if (!isImageKind(kind)) {
      std::ostringstream text;
      text << "image " << stored << ": unknown kind " << static_cast<U32>(kind);
      throw Stash::WrongKindException(text.str());
    }
    if (imageKindRow(kind).isList) elementsAdd(image, imageKindRow(kind).size);
    return StoredRef{kind, stored};
  }
  return std::nullopt;
}

}  // namespace KivStash
