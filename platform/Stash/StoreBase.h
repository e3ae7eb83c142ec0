// A store mapped for reading, and the way from the writer's addresses to ours.
#ifndef STASH_STOREBASE_H
#define STASH_STOREBASE_H

#include <atomic>
#include <cstddef>
#include <memory>

#include "Kiv/Export.h"
#include "Stash/Mapping.h"
#include "Stash/StoreLayout.h"
#include "Stash/StoreName.h"

namespace Stash {

// Takes no lock, and makes no system call but to look for growth when an address
// lies beyond what it knows of the file.  Any thread.
class OV_EXPORT StoreBase {
 public:
  // Maps the store of that name, whose writer may be at work or long gone.
  // Raises StoreAccessException, or InvalidStoreException if it is no store that
  // this process can read.
  explicit StoreBase(const StoreName& name);
  // Looks at the store through the mapping of its writer, in the same process.
  explicit StoreBase(std::shared_ptr<const Mapping> writers);

  // Where `size` octets that the writer has at `stored` are in this process: for as
  // long as the store is mapped, at a multiple of `alignment` (a power of two), and
  // readable.  Nothing else is known of them: anyone may be changing them, so read
  // them as Stash/StoreLayout.h does.  Raises MisalignedException or
  // OutOfBoundsException.
  const void* translate(const void* stored, std::size_t size, std::size_t alignment) const {
    const Word offset = reinterpret_cast<Word>(stored) - base_;
    if ((offset & (alignment - 1)) != 0) [[unlikely]]
      failMisaligned(stored, alignment);
    const std::size_t length = length_.load(std::memory_order_relaxed);
    if (offset > length || size > length - offset) [[unlikely]]
      findGrowth(stored, size);
    return mapping_->data() + offset;
  }

  // The address that the writer has for the octet at `offset`.
  const void* storedAddress(std::size_t offset) const noexcept {
    return reinterpret_cast<const void*>(base_ + offset);
  }

  // Octets that the store has now, as far as this process has looked.
  std::size_t length() const noexcept { return length_.load(std::memory_order_relaxed); }
  // Asks the system how far the store has grown.
  std::size_t lengthNow() const;

  // Raises InvalidStoreException if what was read until now may not be the store's
  // octets, since its file was shortened.
  void check() const { mapping_->check(); }

  // The header as it is now; checked as if the store were opened again.
  StoreHeader header() const;

 private:
  explicit StoreBase(Descriptor file);
  StoreBase(Descriptor&& file, const StoreHeader& header);

  [[noreturn]] void failMisaligned(const void* stored, std::size_t alignment) const;
  void findGrowth(const void* stored, std::size_t size) const;

  const std::shared_ptr<const Mapping> mapping_;
  const Word base_;
  // Of the file, as last asked.  Relaxed: it only keeps reads inside the file, and
  // orders nothing.
  mutable std::atomic<std::size_t> length_;
};

// Deletes the store of that name; who has it open keeps it.  Raises
// InvalidStoreException, and leaves it alone, if it is no store of any version.
OV_EXPORT void storeRemove(const StoreName& name);

}  // namespace Stash

#endif
