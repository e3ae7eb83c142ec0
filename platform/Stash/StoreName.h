// Names of stores, and the files that the names refer to.
#ifndef STASH_STORENAME_H
#define STASH_STORENAME_H

#include <sys/types.h>

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Stash {

// Owns an open file descriptor and closes it. Movable, not copyable.
class OV_EXPORT Descriptor {
 public:
  // Takes over `fd`; a negative number means that no file is open.
  explicit Descriptor(int fd) noexcept : fd_(fd) {}
  // Leaves `other` without a file.
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  // Not assignable, so a descriptor refers to one file for all its life.
  Descriptor& operator=(Descriptor&&) = delete;
  // Closes the file, if one is open.
  ~Descriptor();

  // The system's number of the file, negative if none is open. Still owned by the object.
  int fd() const noexcept { return fd_; }

 private:
  int fd_;
};

// The name of a store: a text without a slash names POSIX shared memory (shm_open), any other text
// is the path of a file. A plain value. Every operation raises StoreAccessException if the system
// refuses.
class OV_EXPORT StoreName {
 public:
  // Raises StoreAccessException if the text is empty or contains a NUL character.
  explicit StoreName(Kiv::String text);

  // The name as it was given.
  const Kiv::String& text() const noexcept { return text_; }

  // Opens the existing file for reading only, without waiting. Raises InvalidStoreException if the
  // name refers to anything but a regular file.
  Descriptor open() const;
  // Creates the file, for reading and writing, with the permissions `mode` (reduced by the umask).
  // The name must not be in use.
  Descriptor create(mode_t mode) const;
  // Whether the name refers to `file` now. False also if the name refers to nothing, or to a file
  // that this process may not read.
  bool refersTo(const Descriptor& file) const;
  // Removes the name. Processes that have the file open keep it until they close it.
  void unlink() const;

 private:
  // Whether the name is the path of a file rather than the name of shared memory.
  bool isPath() const noexcept { return path_.empty(); }

  Kiv::String text_;
  Kiv::String path_;  // "/" + text_ for shm_open; empty if text_ is the path of a file
};

}  // namespace Stash

#endif
