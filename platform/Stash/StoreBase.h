// A store mapped for reading, and the translation of the writer's addresses to ours.
#ifndef STASH_STOREBASE_H
#define STASH_STOREBASE_H

#include <atomic>
#include <cstddef>
#include <memory>

#include "Kiv/Export.h"
#include "Stash/Detail/Mapping.h"
#include "Stash/StoreLayout.h"
#include "Stash/StoreName.h"

namespace Stash {

// One store, as a reader sees it. A store contains addresses of the writer's process; translate()
// turns such an address into one of this process, after checking it against the length of the
// store. Nothing that the store contains is trusted.
//
// Takes no lock. The only system call while reading is an fstat, made when an address lies beyond
// the known length of the file, because the store may have grown. Any thread may call any member.
class OV_EXPORT StoreBase {
 public:
  // Maps the store of that name, whether its writer is running or has ended. Raises
  // StoreAccessException if the system refuses, and InvalidStoreException if the file is not a
  // store that this process can read, or if its writer has not finished creating it.
  explicit StoreBase(const StoreName& name);
  // Reads through the mapping of the store's own writer, in the writer's process, and shares the
  // ownership of that mapping.
  explicit StoreBase(std::shared_ptr<const Mapping> writers);

  // Returns where this process has the `size` octets that the writer has at `stored`. The result is
  // aligned to `alignment`, a power of two up to the page size, and readable as long as this
  // object lives. The content is not validated and may change at any time: read it with the
  // functions of Stash/StoreLayout.h only. Raises MisalignedException or OutOfBoundsException.
  const void* translate(const void* stored, std::size_t size, std::size_t alignment) const {
    // An address below the store's begin wraps to a large offset, and is rejected as too large.
    const Word offset = reinterpret_cast<Word>(stored) - base_;
    if ((offset & (alignment - 1)) != 0) [[unlikely]]
      failMisaligned(stored, alignment);
    const std::size_t length = length_.load(std::memory_order_relaxed);
    if (offset > length || size > length - offset) [[unlikely]]
      findGrowth(stored, size);
    return mapping_->data() + offset;
  }

  // The writer's address of the octet at `offset`, the inverse of translate(). Unchecked: for
  // messages, and for addresses that are translated later.
  const void* storedAddress(std::size_t offset) const noexcept {
    return reinterpret_cast<const void*>(base_ + offset);
  }

  // Octets of the store, as last obtained from the system. The store may be longer by now.
  std::size_t length() const noexcept { return length_.load(std::memory_order_relaxed); }
  // Obtains the current length from the system with one fstat call, and remembers it.
  std::size_t lengthNow() const;

  // Raises InvalidStoreException if the file was shortened under this mapping. Octets read before
  // the call may then be zeros that nobody wrote.
  void check() const { mapping_->check(); }

  // Whether `name` still refers to the mapped file. False once the store was removed, also if
  // another store has its name now. A few system calls.
  bool isNamed(const StoreName& name) const;

  // Reads the header again from the file, with all checks of the constructor and their exceptions.
  StoreHeader header() const;

 private:
  explicit StoreBase(Descriptor file);
  StoreBase(Descriptor&& file, const StoreHeader& header);

  [[noreturn]] void failMisaligned(const void* stored, std::size_t alignment) const;
  void findGrowth(const void* stored, std::size_t size) const;

  const std::shared_ptr<const Mapping> mapping_;
  const Word base_;  // the writer's address of the first octet
  // The length of the file as last obtained. Relaxed accesses suffice: the value only keeps reads
  // inside the file, and orders no other memory access.
  mutable std::atomic<std::size_t> length_;
};

// Removes the name of a store. Processes that have the store open keep it. Raises
// StoreAccessException if the system refuses. Raises InvalidStoreException, and removes nothing, if
// the file does not begin with storeMagic or storeMagicUnfinished. An empty file and a file of
// zeros are therefore never removed, but the rest that a writer leaves when it dies early is. The
// layout version does not matter.
//
// The check and the removal are two steps. A file that another process puts under the name between
// them is removed unchecked.
OV_EXPORT void storeRemove(const StoreName& name);

}  // namespace Stash

#endif
