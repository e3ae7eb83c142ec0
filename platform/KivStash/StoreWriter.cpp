#include "KivStash/StoreWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "Kiv/Exception.h"
#include "Stash/StoreException.h"

namespace KivStash {

using Stash::DirectoryBlock;
using Stash::ImageKind;
using Stash::ImageKindRow;
using Stash::StoredImage;
using Stash::StoreHeader;
using Stash::storeUnit;
using Stash::Word;

namespace {

// The maximum rounded down to whole units; raises Kiv::RangeException outside the limits.
std::size_t checkedMaximum(std::size_t maximum) {
  if (maximum < Stash::storeLengthMin || maximum > Stash::storeMaximumLimit) {
    throw Kiv::RangeException("a store of at most " + std::to_string(maximum) +
                              " octets: " + std::to_string(Stash::storeLengthMin) + " to " +
                              std::to_string(Stash::storeMaximumLimit) + " are possible");
  }
  return maximum / storeUnit * storeUnit;
}

// The row of `kind`; raises WrongKindException if the kind is unknown, or is not made of these.
const ImageKindRow& checkedRow(ImageKind kind, bool isList, ImageKind values) {
  if (kind != ImageKind::none && isImageKind(kind)) {
    const ImageKindRow& row = imageKindRow(kind);
    if (row.isList == isList && row.values == values) return row;
  }
  throw Stash::WrongKindException("kind " + std::to_string(static_cast<U32>(kind)) +
                                  " of image is not made of this");
}

void checkSize(const ImageKindRow& row, std::size_t size) {
  if (row.size == size) return;
  throw Stash::WrongKindException(Kiv::String(row.name) + " is made of " +
                                  std::to_string(row.size) + " octets, not " +
                                  std::to_string(size));
}

// Writes the mark of an unfinished store as the first octets of its file, by a system call, because
// the file has no octets that could be mapped yet.
void markUnfinished(const Stash::Descriptor& file, const Kiv::String& name) {
  const auto& mark = Stash::storeMagicUnfinished;
  ssize_t written = 0;
  do {
    written = ::pwrite(file.fd(), mark.data(), sizeof mark, 0);
  } while (written < 0 && errno == EINTR);
  if (written == sizeof mark) return;
  const int error = written < 0 ? errno : ENOSPC;
  throw Stash::StoreFullException(
      "store " + name + " cannot have its first octets: " + std::generic_category().message(error));
}

// reserve() with geometric growth; plain reserve() may allocate exactly, and then every block of
// records would copy all entries.
template <class T>
void reserveMore(std::vector<T>& elements, std::size_t size) {
  if (elements.capacity() < size) elements.reserve(std::max(size, elements.capacity() * 2));
}

// The writer's half of the sequence lock: the record's anchor is odd while this object exists. Both
// stores have release order, so a reader that sees a field of the change also sees the odd anchor.
// The anchor is kept in the writer's memory and never read back, so nobody can set it back.
class Change {
 public:
  Change(StoredImage& record, U32& anchor) noexcept : record_(record), anchor_(anchor) {
    Stash::sharedStore(record_.anchor, ++anchor_);
  }
  ~Change() { Stash::sharedStore(record_.anchor, ++anchor_); }

 private:
  StoredImage& record_;
  U32& anchor_;
};

}  // namespace

StoreWriter::StoreWriter(const Stash::StoreName& name, StoreSize size, mode_t mode)
    : name_(name),
      maximum_(checkedMaximum(size.maximum)),
      space_(Stash::firstDirectoryBlock, maximum_) {
  Stash::Descriptor file = name_.create(mode);
  try {
    markUnfinished(file, name_.text());
    mapping_ = std::make_shared<Stash::Mapping>(std::move(file), maximum_,
                                                Stash::Mapping::Access::readWrite);
    lengthIs(std::clamp(size.initial, Stash::storeLengthMin, maximum_));
    headerIs();
  } catch (...) {
    nameRelease(mapping_ ? mapping_->file() : file);
    throw;
  }
}

// New pages are zeros, so only the other fields of the header need to be written. The second half
// of the magic number is last: until then, no reader accepts the store.
void StoreWriter::headerIs() {
  StoreHeader& made = header();
  made.byteOrder = Stash::storeByteOrder;
  made.version = Stash::storeVersion;
  made.wordSize = Stash::wordSize;
  made.base = reinterpret_cast<Word>(mapping_->data());
  made.maximum = maximum_;
  directoryAdd();
  countsAre();
  Stash::sharedStore(made.magic[1], Stash::storeMagic[1]);
}

// Removes the name after a failed construction. Meanwhile another process may have removed the
// unfinished store, and yet another one may have created a store of that name, which must stay.
void StoreWriter::nameRelease(const Stash::Descriptor& file) const noexcept {
  try {
    if (name_.refersTo(file)) name_.unlink();
  } catch (...) {
    // The exception that made the construction fail is the one to report.
  }
}

StoreWriter::~StoreWriter() = default;

ImageId StoreWriter::putElements(ImageKind kind, bool sorted, std::span<const std::byte> elements,
                                 std::size_t elementSize) {
  checkSize(checkedRow(kind, true, ImageKind::none), elementSize);
  return listPut(kind, sorted, elements, {});
}

void StoreWriter::replaceElements(ImageId id, bool sorted, std::span<const std::byte> elements,
                                  std::size_t elementSize) {
  checkSize(checkedRow(heldEntry(id).kind, true, ImageKind::none), elementSize);
  listReplace(entry(id), sorted, elements, {});
}

ImageId StoreWriter::putList(ImageKind kind, bool sorted, std::span<const ImageId> values) {
  const std::vector<const void*> elements = addresses(kind, values);
  return listPut(kind, sorted, std::as_bytes(std::span(elements)), {values.begin(), values.end()});
}

void StoreWriter::replaceList(ImageId id, bool sorted, std::span<const ImageId> values) {
  const std::vector<const void*> elements = addresses(heldEntry(id).kind, values);
  listReplace(entry(id), sorted, std::as_bytes(std::span(elements)),
              {values.begin(), values.end()});
}

ImageId StoreWriter::listPut(ImageKind kind, bool sorted, std::span<const std::byte> elements,
                             std::vector<ImageId> values) {
  mapping_->check();
  const Block block = blockTake(elements);
  try {
    const ImageId id = recordTake(kind);
    listIs(entry(id), sorted, elements.size(), block, std::move(values));
    return id;
  } catch (...) {
    blockRelease(block);
    throw;
  }
}

// The new elements are complete in a block of their own before the record refers to them, and the
// old elements stay intact until the record no longer does. So the anchor is odd only for the few
// stores to the record, however long the list is.
void StoreWriter::listReplace(Entry& list, bool sorted, std::span<const std::byte> elements,
                              std::vector<ImageId> values) {
  mapping_->check();
  listIs(list, sorted, elements.size(), blockTake(elements), std::move(values));
}

// Writes the record of a new or replaced list, then frees what the old version used.
//
// The old elements and values are freed last, because a reader may still follow their old address.
// If the block is reused meanwhile, the reader's validation fails, since the list's anchor has
// changed before. New values are counted first, so a value in both versions is never freed.
void StoreWriter::listIs(Entry& list, bool sorted, std::size_t octets, const Block& block,
                         std::vector<ImageId> values) noexcept {
  const std::size_t count = octets / imageKindRow(list.kind).size;
  for (const ImageId value : values) ++entry(value).referred;
  {  // scope of the odd anchor
    const Change change(*list.record, list.anchor);
    Stash::sharedStore(list.record->kind, list.kind);
    Stash::sharedStore(list.record->detail, U32{sorted});
    Stash::sharedStore(list.record->count, static_cast<U32>(count));
    Stash::sharedStore(list.record->payload[0],
                       block.size == 0 ? Word{0} : reinterpret_cast<Word>(words(block.offset)));
  }
  blockRelease(std::exchange(list.block, block));
  list.values.swap(values);
  for (const ImageId value : values) {
    --entry(value).referred;
    drop(value);
  }
  countsAre();
}

// The elements of a list of values: the addresses of their records. Raises WrongKindException if
// `kind` is no list of values or a value has another kind, ImageNotFoundException if the caller
// does not own a value. Both calls of checkedRow only raise: their conditions cannot hold.
std::vector<const void*> StoreWriter::addresses(ImageKind kind,
                                                std::span<const ImageId> values) const {
  const ImageKind valueKind = isImageKind(kind) ? imageKindRow(kind).values : ImageKind::none;
  if (valueKind == ImageKind::none) checkedRow(kind, true, ImageKind::extendedValue);
  std::vector<const void*> elements;
  elements.reserve(values.size());
  for (const ImageId value : values) {
    const Entry& known = heldEntry(value);
    if (known.kind != valueKind) checkedRow(known.kind, false, valueKind);
    elements.push_back(known.record);
  }
  return elements;
}

// A value that exists already is only counted. A new value takes a record, and values_ is unchanged
// if there is none.
ImageId StoreWriter::putContent(ImageKind kind, U32 classification,
                                std::span<const std::byte> content) {
  checkSize(checkedRow(kind, false, ImageKind::none), content.size());
  mapping_->check();
  ValueKey key{kind, classification, {}};
  std::ranges::copy(content, key.content.begin());
  const auto [value, isNew] = values_.try_emplace(key);
  if (!isNew) {
    ++entry(value->second).held;
    return value->second;
  }
  try {
    value->second = recordTake(kind);
  } catch (...) {
    values_.erase(value);
    throw;
  }
  Entry& made = entry(value->second);
  made.value = value;
  const Change change(*made.record, made.anchor);
  Stash::sharedStore(made.record->kind, kind);
  Stash::sharedStore(made.record->detail, classification);
  Stash::sharedCopyIn(made.record->payload.data(), content.data(), content.size());
  countsAre();
  return value->second;
}

void StoreWriter::remove(ImageId id) {
  heldEntry(id);
  mapping_->check();
  --entry(id).held;
  drop(id);
  countsAre();
}

// Removes an image if neither the caller nor a list refers to it. Recurses once at most, because
// the values of a list are no lists.
void StoreWriter::drop(ImageId id) noexcept {
  Entry& left = entry(id);
  if (left.held != 0 || left.referred != 0) return;
  if (!imageKindRow(left.kind).isList) values_.erase(left.value);
  left.kind = ImageKind::none;
  --images_;
  freeRecords_.push_back(id);  // cannot fail: directoryAdd has reserved room for all ids
  {
    const Change change(*left.record, left.anchor);
    Stash::sharedStore(left.record->kind, ImageKind::none);
  }
  blockRelease(std::exchange(left.block, {}));
  for (const ImageId value : std::exchange(left.values, {})) {
    --entry(value).referred;
    drop(value);
  }
}

const StoreWriter::Entry& StoreWriter::heldEntry(ImageId id) const {
  const auto index = static_cast<std::size_t>(id);
  if (index >= entries_.size() || entries_[index].held == 0) {
    throw Stash::ImageNotFoundException("store " + name_.text() + ": image " +
                                        std::to_string(index) +
                                        " is not there, or not the caller's");
  }
  return entries_[index];
}

const void* StoreWriter::storedAddress(ImageId id) const { return heldEntry(id).record; }

// Takes a free record, which the caller owns from now on. Readers still see kind none, until the
// record is written.
ImageId StoreWriter::recordTake(ImageKind kind) {
  if (freeRecords_.empty()) directoryAdd();
  const ImageId id = freeRecords_.back();
  freeRecords_.pop_back();
  entry(id).kind = kind;
  entry(id).held = 1;
  ++images_;
  return id;
}

// Adds a directory block, behind everything in use, because the addresses of blocks must ascend.
// Its octets may have been elements of an old list, so they are cleared before the last block
// refers to the new one. The vectors are reserved before the space is taken: nothing throws later.
void StoreWriter::directoryAdd() {
  const std::size_t known = entries_.size();
  reserveMore(entries_, known + DirectoryBlock::imageCount);
  reserveMore(freeRecords_, known + DirectoryBlock::imageCount);
  const std::size_t offset =
      provided(space_.takeAtEnd(sizeof(DirectoryBlock)), sizeof(DirectoryBlock));
  for (std::size_t at = 0; at < sizeof(DirectoryBlock); at += sizeof(Word)) {
    Stash::sharedStore(*words(offset + at), Word{0});
  }
  auto* const block = reinterpret_cast<DirectoryBlock*>(words(offset));
  for (StoredImage& record : block->images) entries_.emplace_back().record = &record;
  // Backwards, so that the lowest record is taken first.
  for (std::size_t id = entries_.size(); id-- > known;) {
    freeRecords_.push_back(static_cast<ImageId>(id));
  }
  if (lastNext_) Stash::sharedStore(*lastNext_, reinterpret_cast<Word>(block));
  lastNext_ = &block->next;
}

// Copies the elements into a new block, which no record refers to yet.
StoreWriter::Block StoreWriter::blockTake(std::span<const std::byte> elements) {
  if (elements.empty()) return {};
  if (elements.size() > 0xFFFFFFFF) {
    throw Stash::CountException("a list of " + std::to_string(elements.size()) +
                                " octets is longer than a reader takes");
  }
  const std::size_t size = (elements.size() + storeUnit - 1) / storeUnit * storeUnit;
  const std::size_t offset = provided(space_.take(size), size);
  Stash::sharedCopyIn(words(offset), elements.data(), elements.size());
  return {offset, size};
}

void StoreWriter::blockRelease(const Block& block) noexcept {
  if (block.size != 0) space_.release(block.offset, block.size);
}

// Makes the file long enough for a piece just taken from space_, and returns its offset; `offset`
// is empty if there was no room. On failure the piece is released. The file at least doubles, so
// the number of system calls is logarithmic.
std::size_t StoreWriter::provided(std::optional<std::size_t> offset, std::size_t size) {
  if (!offset) {
    throw Stash::StoreFullException("store " + name_.text() + " is full: " + std::to_string(size) +
                                    " octets more do not fit in the " + std::to_string(maximum_) +
                                    " that it may grow to");
  }
  if (*offset + size > length_) {
    try {
      lengthIs(std::min(maximum_, std::max(*offset + size, 2 * length_)));
    } catch (...) {
      space_.release(*offset, size);
      throw;
    }
  }
  return *offset;
}

// Extends the file. posix_fallocate makes the system provide the memory now; with ftruncate a later
// write could find no memory left, and end the process with SIGBUS.
void StoreWriter::lengthIs(std::size_t length) {
  int error = 0;
  do {
    error = ::posix_fallocate(mapping_->file().fd(), 0, static_cast<off_t>(length));
  } while (error == EINTR);
  if (error != 0) {
    throw Stash::StoreFullException("store " + name_.text() + " cannot have " +
                                    std::to_string(length) +
                                    " octets: " + std::generic_category().message(error));
  }
  length_ = length;
  Stash::sharedStore(header().length, Word{length});
}

// Updates the counts in the header, which are for people to look at; they have no anchor.
void StoreWriter::countsAre() noexcept {
  Stash::sharedStore(header().images, images_);
  Stash::sharedStore(header().used, Word{space_.used()});
}

}  // namespace KivStash
