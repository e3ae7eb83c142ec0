#include "tools/bgp-communities/Input.h"

#include <archive.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace CommTool {

namespace {

// One read(2) of the compressed file.  Large enough to make system calls rare,
// small enough to stay in the second-level cache.
constexpr std::size_t readSize = std::size_t{256} * 1024;

std::string reason(archive* stream) {
  const char* text = archive_error_string(stream);
  return text != nullptr ? text : "unreadable";
}

// Refuses directories here: libarchive would report them in its own words, and
// only at the first read.
int opened(const std::string& path) {
  const int fd = path == "-" ? ::dup(STDIN_FILENO) : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    throw CannotOpen(std::strerror(errno));
  }
  struct stat status {};
  if (::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
    ::close(fd);
    throw CannotOpen(std::strerror(EISDIR));
  }
  return fd;
}

// The named filters only.  The set of all filters would also start external
// programs, or take text for an encoding, on the word of a few magic octets.
archive* newStream() {
  archive* stream = archive_read_new();
  if (stream == nullptr) {
    throw CannotOpen("no memory");
  }
  archive_read_support_filter_gzip(stream);
  archive_read_support_filter_bzip2(stream);
  archive_read_support_filter_xz(stream);
  archive_read_support_filter_zstd(stream);
  archive_read_support_format_raw(stream);
  archive_read_support_format_empty(stream);
  return stream;
}

}  // namespace

void Input::Closer::operator()(archive* stream) const { archive_read_free(stream); }

Input::Input(const std::string& path) : stream_(newStream()), fd_(opened(path)) {
  archive_entry* entry = nullptr;
  if (archive_read_open_fd(stream_.get(), fd_, readSize) != ARCHIVE_OK) {
    endIs(reason(stream_.get()));
    return;
  }
  const int result = archive_read_next_header(stream_.get(), &entry);
  // A stream whose very first octets do not decompress passes for an empty one,
  // but leaves its error behind.
  if (result != ARCHIVE_OK) {
    const bool clean = result == ARCHIVE_EOF && archive_errno(stream_.get()) == 0;
    endIs(clean ? "" : reason(stream_.get()));
  }
}

Input::~Input() {
  stream_.reset();
  ::close(fd_);
}

Octets Input::take(std::size_t count) {
  while (block_.empty() && nextBlock()) {
  }
  if (block_.size() >= count) {
    const Octets taken = block_.first(count);
    block_ = block_.subspan(count);
    return taken;
  }
  gathered_.clear();
  do {
    const std::size_t piece = std::min(count - gathered_.size(), block_.size());
    gathered_.insert(gathered_.end(), block_.begin(), block_.begin() + std::ptrdiff_t(piece));
    block_ = block_.subspan(piece);
  } while (gathered_.size() < count && nextBlock());
  return gathered_;
}

bool Input::nextBlock() {
  if (ended_) {
    return false;
  }
  const void* data = nullptr;
  std::size_t size = 0;
  la_int64_t offset = 0;
  const int result = archive_read_data_block(stream_.get(), &data, &size, &offset);
  if (result == ARCHIVE_OK || (result == ARCHIVE_WARN && size > 0)) {
    block_ = Octets(static_cast<const U8*>(data), size);
    return true;
  }
  endIs(result == ARCHIVE_EOF ? "" : reason(stream_.get()));
  return false;
}

void Input::endIs(std::string damage) {
  ended_ = true;
  block_ = {};
  damage_ = std::move(damage);
}

}  // namespace CommTool
