// A file mapped into memory, safe to read whatever happens to the file.
//
// Implementation detail of Stash::StoreBase and KivStash::StoreWriter; include those headers.
//
// Reading a mapped page beyond the end of the file, after somebody has shortened it, raises
// SIGBUS. That signal ends a process without a handler, and no check beforehand can rule it out.
// Therefore the first mapping installs a SIGBUS handler for the whole process. For a fault inside
// one of our mappings, the handler maps zeroed anonymous memory from the faulting page to the end
// of the mapping, marks the mapping as lost, and lets the read continue. It passes every other
// fault on to the handler that was installed before.
//
// Limits: a host that installs its own SIGBUS handler later, and does not pass faults on, loses
// this protection. The handler is never uninstalled, so the library must not be unloaded with
// dlclose once a store was mapped.
#ifndef STASH_DETAIL_MAPPING_H
#define STASH_DETAIL_MAPPING_H

#include <atomic>
#include <cstddef>

#include "Kiv/Export.h"
#include "Stash/StoreName.h"

namespace Stash {

// A shared mapping of one file, with the address space for the largest length of the file. When
// the file grows, the new octets appear in place and no address changes. Any thread may read.
class OV_EXPORT Mapping {
 public:
  // Protection of the pages: readers map for reading only, the writer for both.
  enum class Access { read, readWrite };

  // Takes over `file` and reserves `length` octets of address space, which may exceed the length
  // of the file. Raises StoreAccessException if the system refuses; the caller keeps `file` then.
  Mapping(Descriptor&& file, std::size_t length, Access access);
  // Unmaps the file and closes it.
  ~Mapping();
  // Not copyable, because the signal handler knows each mapping by its address.
  Mapping(const Mapping&) = delete;
  // Not assignable, for the same reason.
  Mapping& operator=(const Mapping&) = delete;

  // The first octet of the file; a multiple of the page size.
  std::byte* data() const noexcept { return data_; }
  // Octets of address space, not of the file.
  std::size_t length() const noexcept { return length_; }
  // The mapped file, owned by the mapping.
  const Descriptor& file() const noexcept { return file_; }
  // The current length of the file, at most length(). One fstat call; raises StoreAccessException
  // if that fails.
  std::size_t fileLength() const;

  // True once a read has met a page that the file no longer has. Octets read before this call may
  // then be zeros that nobody wrote.
  bool lost() const noexcept { return lost_.load(std::memory_order_acquire); }
  // Raises InvalidStoreException if lost(). Call it after reading and before using the octets.
  void check() const {
    if (lost()) [[unlikely]]
      failLost();
  }

 private:
  friend class MappingGuard;

  [[noreturn]] static void failLost();

  // Declared, and so initialised, before file_: a failure must leave the caller's file alone.
  std::byte* const data_;
  const std::size_t length_;
  const Descriptor file_;
  std::atomic<bool> lost_{false};
  // Links of MappingGuard's list, protected by its lock.
  Mapping* next_ = nullptr;
  Mapping** link_ = nullptr;
};

}  // namespace Stash

#endif
