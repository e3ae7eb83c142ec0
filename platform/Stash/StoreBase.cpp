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

// As much as there is of a header; the rest is zeros.
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
  std::size_t octets = 0;
};

void require(bool holds, const Kiv::String& otherwise) {
  if (!holds) throw InvalidStoreException("not a store that can be read: " + otherwise);
}

Kiv::String found(const char* what, U64 isHere, U64 expected) {
  return Kiv::String(what) + " is " + std::to_string(isHere) + ", not " + std::to_string(expected);
}

// In this order, since each field tells how to read those after it.
void checkHeader(const RawHeader& raw, U64 fileLength) {
  const StoreHeader& header = raw.header;
  require(raw.octets >= offsetof(StoreHeader, images) && header.magic == storeMagic,
          "it does not start like one");
  require(header.byteOrder == storeByteOrder, "it was written in another byte order");
  require(header.version == storeVersion,
          found("its layout version", header.version, storeVersion));
  require(header.wordSize == wordSize,
          found("its writer's word size", U64{header.wordSize} * 8, U64{wordSize} * 8));
  require(raw.octets == sizeof header, "it ends within its header");
  require(header.maximum <= storeMaximumLimit && header.length <= header.maximum,
          "it says that it may grow to " + std::to_string(header.maximum) + " octets and has " +
              std::to_string(header.length));
  require(header.length >= storeLengthMin, found("its length", header.length, storeLengthMin));
  require(fileLength >= header.length,
          "its file is cut short: " + found("its length", fileLength, header.length));
}

// The header before the file's length: the writer makes the file longer first.
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

StoreBase::StoreBase(std::shared_ptr<const Mapping> writers)
    : mapping_(std::move(writers)),
      base_(reinterpret_cast<Word>(mapping_->data())),
      length_(mapping_->fileLength()) {}

StoreHeader StoreBase::header() const { return readHeader(mapping_->file()); }

std::size_t StoreBase::lengthNow() const {
  const std::size_t length = mapping_->fileLength();
  length_.store(length, std::memory_order_relaxed);
  return length;
}

void StoreBase::failMisaligned(const void* stored, std::size_t alignment) const {
  std::ostringstream text;
  text << "address " << stored << ": not a multiple of " << alignment << " octets from "
       << storedAddress(0) << ", where the store starts";
  throw MisalignedException(text.str());
}

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
  // A store whose maker died early starts with zeros.
  const decltype(storeMagic) unfinished = {};
  require(raw.header.magic == storeMagic || raw.header.magic == unfinished,
          "it does not start like one");
  name.unlink();
}

}  // namespace Stash
