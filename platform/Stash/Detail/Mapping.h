// A file mapped into memory, safe to read whatever happens to the file.
//
// Reading a mapped page that the file no longer reaches (somebody shortened it)
// raises SIGBUS, which ends a process that has not provided for it; no check
// beforehand can rule it out.  So the first mapping installs a handler of SIGBUS
// for the process.  It puts empty memory where a mapping has lost its file, marks
// the mapping as lost, and lets the read go on; every other fault goes to the
// handler that was installed before.  A host that installs a handler later and
// does not pass faults on gives this protection up.
#ifndef STASH_MAPPING_H
#define STASH_MAPPING_H

#include <atomic>
#include <cstddef>

#include "Kiv/Export.h"
#include "Stash/StoreName.h"

namespace Stash {

// Reserves `length` octets of address space, which may be more than the file has:
// what the file grows by appears in place.  Any thread may read.
class OV_EXPORT Mapping {
 public:
  enum class Access { read, readWrite };

  // Raises StoreAccessException.
  Mapping(Descriptor file, std::size_t length, Access access);
  ~Mapping();
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  std::byte* data() const noexcept { return data_; }
  std::size_t length() const noexcept { return length_; }
  const Descriptor& file() const noexcept { return file_; }
  // The file's length now, by asking the system.
  std::size_t fileLength() const;

  // Whether a part of the file was missing when it was read.  If so, what was read
  // before the call may be zeros that nobody wrote.
  bool lost() const noexcept { return lost_.load(std::memory_order_acquire); }
  // Raises InvalidStoreException if lost.
  void check() const {
    if (lost()) [[unlikely]]
      failLost();
  }

 private:
  friend class MappingGuard;

  [[noreturn]] static void failLost();

  const Descriptor file_;
  const std::size_t length_;
  std::byte* data_ = nullptr;
  std::atomic<bool> lost_{false};
  // In the guard's list, under its lock.
  Mapping* next_ = nullptr;
  Mapping** link_ = nullptr;
};

}  // namespace Stash

#endif
