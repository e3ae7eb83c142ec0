#include "Stash/StoreBase.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>
#include <system_error>
#include <utility>

#include "Stash/StoreException.h"

namespace Stash {
namespace {

// The header as far as the file reaches, with zeros behind it. It is read with pread rather than
// through the mapping, because the mapping's size is only known from the header.
struct RawHeader {
  explicit RawHeader(const Descriptor& file) {
    ssize_t got = 0;
    do {
      got = ::pread(file.fd(), &header, sizeof header, 0);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
      throw StoreAccessException("cannot read a store's header: " +
                                 std::generic_category().message(errno));
    }
    octets = static_cast<std::size_t>(got);
  }

  StoreHeader header = {};
  std::size_t octets = 0;  // that the file has of the header
};

void requireMagic(bool holds) {
  if (!holds) throw InvalidStoreException("not a store: bad magic number");
}

bool isUnfinished(const StoreHeader& header) { return header.magic == storeMagicUnfinished; }

void require(bool holds, const Kiv::String& otherwise) {
  if (!holds) throw InvalidStoreException("cannot read the store: " + otherwise);
}

// "length is 100, not 2592"
Kiv::String found(const char* what, U64 isHere, U64 expected) {
  return Kiv::String(what) + " is " + std::to_string(isHere) + ", not " + std::to_string(expected);
}

// Checks in this order, because each field tells how to read those behind it: without the magic
// there is no byte order, without the byte order no version, and the fields behind the word size
// are words of the writer.
void checkHeader(const RawHeader& raw, U64 fileLength) {
  const StoreHeader& header = raw.header;
  require(!isUnfinished(header), "its writer is still creating it, or died meanwhile");
  requireMagic(raw.octets >= offsetof(StoreHeader, images) && header.magic == storeMagic);
  require(header.byteOrder == storeByteOrder, "written in another byte order");
  require(header.version == storeVersion, found("layout version", header.version, storeVersion));
  require(header.wordSize == wordSize,
          found("word size", U64{header.wordSize} * 8, U64{wordSize} * 8));
  require(raw.octets == sizeof header, "the file ends within its header");
  require(header.maximum <= storeMaximumLimit && header.length <= header.maximum,
          "invalid lengths: maximum length " + std::to_string(header.maximum) + ", length " +
              std::to_string(header.length));
  require(header.length >= storeLengthMin, found("length", header.length, storeLengthMin));
  require(fileLength >= header.length,
          "the file is truncated: " + found("length", fileLength, header.length));
}

// Reads the header first and the length of the file second. The writer extends the file before it
// raises the length in the header, so in this order a growing store is never found truncated.
StoreHeader readHeader(const Descriptor& file) {
  const RawHeader raw(file);
  struct stat status;
  if (::fstat(file.fd(), &status) != 0) {
    throw StoreAccessException("cannot examine a store: " + std::generic_category().message(errno));
  }
  checkHeader(raw, static_cast<U64>(status.st_size));
  return raw.header;
}

}  // namespace

StoreBase::StoreBase(const StoreName& name) : StoreBase(name.open()) {}

StoreBase::StoreBase(Descriptor file) : StoreBase(std::move(file), readHeader(file)) {}

StoreBase::StoreBase(Descriptor&& file, const StoreHeader& header)
    : mapping_(
          std::make_shared<const Mapping>(std::move(file), header.maximum, Mapping::Access::read)),
      base_(header.base),
      length_(mapping_->fileLength()) {}

// In the writer's own process, stored addresses are addresses of this process: base_ is where the
// mapping is, and translate() changes nothing.
StoreBase::StoreBase(std::shared_ptr<const Mapping> writers)
    : mapping_(std::move(writers)),
      base_(reinterpret_cast<Word>(mapping_->data())),
      length_(mapping_->fileLength()) {}

bool StoreBase::isNamed(const StoreName& name) const { return name.refersTo(mapping_->file()); }

StoreHeader StoreBase::header() const { return readHeader(mapping_->file()); }

std::size_t StoreBase::lengthNow() const {
  const std::size_t length = mapping_->fileLength();
  length_.store(length, std::memory_order_relaxed);
  return length;
}

// Out of line and not inlined, so that translate() stays short; the text names the writer's
// addresses, which are the ones that other messages and tools show.
void StoreBase::failMisaligned(const void* stored, std::size_t alignment) const {
  std::ostringstream text;
  text << "address " << stored << ": not a multiple of " << alignment << " octets from "
       << storedAddress(0) << ", where the store starts";
  throw MisalignedException(text.str());
}

// Slow path of translate(): the range lies beyond the known length. Returns if the store has grown
// enough meanwhile, and otherwise raises OutOfBoundsException.
void StoreBase::findGrowth(const void* stored, std::size_t size) const {
  const Word offset = reinterpret_cast<Word>(stored) - base_;
  if (offset <= mapping_->length() && size <= mapping_->length() - offset) {
    const std::size_t length = lengthNow();
    if (offset <= length && size <= length - offset) return;
  }
  std::ostringstream text;
  text << "address " << stored << ", " << size << " octets: outside the store, which has "
       << length() << " at " << storedAddress(0);
  throw OutOfBoundsException(text.str());
}

void storeRemove(const StoreName& name) {
  const RawHeader raw(name.open());
  requireMagic(raw.header.magic == storeMagic || isUnfinished(raw.header));
  name.unlink();
}

}  // namespace Stash
