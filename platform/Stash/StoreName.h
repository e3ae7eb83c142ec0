// What stores are called, and the files behind the names.
#ifndef STASH_STORENAME_H
#define STASH_STORENAME_H

#include <sys/types.h>

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Stash {

// An open file; closed with the object.
class OV_EXPORT Descriptor {
 public:
  explicit Descriptor(int fd) noexcept : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor();

  int fd() const noexcept { return fd_; }

 private:
  int fd_;
};

// A text without a slash names POSIX shared memory, any other a file by its path.
// A plain value.  The operations raise StoreAccessException.
class OV_EXPORT StoreName {
 public:
  // Raises StoreAccessException if no store can have this name.
  explicit StoreName(Kiv::String text);

  const Kiv::String& text() const noexcept { return text_; }

  // For reading only.  Raises InvalidStoreException for what is no regular file.
  Descriptor open() const;
  // For reading and writing; the name must not be in use.
  Descriptor create(mode_t mode) const;
  // Who has the file open keeps it.
  void unlink() const;

 private:
  bool isPath() const noexcept { return path_.empty(); }

  Kiv::String text_;
  Kiv::String path_;  // of shared memory, as the system wants it; else empty
};

}  // namespace Stash

#endif
