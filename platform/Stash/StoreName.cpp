#include "Stash/StoreName.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Stash/StoreException.h"

namespace Stash {
namespace {

// Call directly after the failed system call, because the message is that of errno.
[[noreturn]] void failed(const char* what, const Kiv::String& name) {
  throw StoreAccessException(Kiv::String("cannot ") + what + " store " + name + ": " +
                             std::generic_category().message(errno));
}

struct stat statusOf(const Descriptor& file, const Kiv::String& name) {
  struct stat status;
  if (::fstat(file.fd(), &status) != 0) failed("examine", name);
  return status;
}

}  // namespace

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

StoreName::StoreName(Kiv::String text) : text_(std::move(text)) {
  if (text_.empty() || text_.find('\0') != text_.npos) {
    throw StoreAccessException("the name of a store is empty or has a null character");
  }
  // shm_open wants a leading slash and no other.
  if (text_.find('/') == text_.npos) path_ = "/" + text_;
}

// O_NONBLOCK: opening a named pipe without a writer would otherwise block for ever. The file type
// is checked on the open descriptor, so nobody can replace the file between check and use.
Descriptor StoreName::open() const {
  Descriptor file(isPath() ? ::open(text_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)
                           : ::shm_open(path_.c_str(), O_RDONLY, 0));
  if (file.fd() < 0) failed("open", text_);
  if (!S_ISREG(statusOf(file, text_).st_mode)) {
    throw InvalidStoreException(text_ + " is not a store: not a regular file");
  }
  return file;
}

// O_EXCL, so that a second writer cannot take over a store that is in use. shm_open sets
// FD_CLOEXEC itself.
Descriptor StoreName::create(mode_t mode) const {
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL;
  Descriptor file(isPath() ? ::open(text_.c_str(), flags | O_CLOEXEC, mode)
                           : ::shm_open(path_.c_str(), flags, mode));
  if (file.fd() < 0) failed("create", text_);
  return file;
}

// Both files are open during the comparison, so the system cannot reuse the inode number of either.
bool StoreName::refersTo(const Descriptor& file) const {
  try {
    const Descriptor named = open();
    const struct stat ours = statusOf(file, text_);
    const struct stat its = statusOf(named, text_);
    return ours.st_dev == its.st_dev && ours.st_ino == its.st_ino;
  } catch (const StoreException&) {
    return false;
  }
}

void StoreName::unlink() const {
  const int result = isPath() ? ::unlink(text_.c_str()) : ::shm_unlink(path_.c_str());
  if (result != 0) failed("remove", text_);
}

}  // namespace Stash
