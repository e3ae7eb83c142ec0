// Reading images that another process may be changing.
//
//   template <>
//   inline constexpr Stash::ImageKind KivStash::storedKind<CommList> = standardList;
//
//   KivStash::ReaderPtr<CommList, KivStash::PavoAnchorTranslatorValidator> list(stored, manager);
//   const bool sorted = list.sorted();
//   const auto elements = list.elements<U32>();
//   std::vector<U32> comms(elements.count());
//   elements.copyTo(comms);
//
// Whatever a reader returns has been validated: it was in the store, all at one
// time, and it is no larger than the store.  It need not make sense beyond that:
// anyone may have written the store, so a classification, say, must be checked to
// be one.  A list whose elements are addresses of values is rebuilt by reading each
// value with a reader of its own, and validating the list once more after the last:
// a value can only have been replaced if the list was changed before.
#ifndef KIVSTASH_READERPTR_H
#define KIVSTASH_READERPTR_H

#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "KivStash/StoreManager.h"
#include "Stash/StoreLayout.h"

namespace KivStash {

// The kind of T's images.  Specialised beside each type that can be in a store.
template <class T>
inline constexpr Stash::ImageKind storedKind = Stash::ImageKind::none;
template <class T>
concept Storable = (storedKind<T> != Stash::ImageKind::none);
// What lists are made of: plain octets.
template <class T>
concept StoredElement = !Storable<T> && std::is_trivially_copyable_v<T>;

// Finds an image, notes its version, and says whether that is still the one.
//
// Made while the writer is changing the image, it waits for a short time (bounded
// by a number of looks, so that a writer that died is not waited for).
class OV_EXPORT PavoAnchorTranslatorValidator {
 public:
  // Raises VersionAnchorException if the image stays in change, ImageNotFoundException
  // if it is gone, WrongKindException if it is another's, and what
  // StoreBase::translate raises.
  PavoAnchorTranslatorValidator(const void* stored, StoreManager* manager, Stash::ImageKind kind);

  const Stash::StoreBase& store() const noexcept { return manager_->store(); }
  const Stash::StoredImage& image() const noexcept { return *image_; }

  // Raises VersionAnchorException unless all that was read from the image, and from
  // its elements, belongs together; InvalidStoreException if the store is gone.
  void validateVersionAnchor() const {
    store().check();
    if (Stash::sharedLoad(image_->anchor) != anchor_) [[unlikely]]
      failChanged();
  }

  // Raises CountException if the store could not hold `count` elements of `size`
  // octets, or no list can.
  void checkCount(U32 count, U32 size) const;
  // Raises VersionAnchorException.
  [[noreturn]] void failChanged() const;

 private:
  U32 stillAnchor() const;
  void checkKind(Stash::ImageKind kind) const;

  const StoreManager::Ptr manager_;
  const void* const stored_;
  const Stash::StoredImage* const image_;
  const U32 anchor_;
};

template <class T, class Validator>
class ReaderPtr;

// The elements of one list.  Holds no reference: use it while the list's reader
// lives.
template <StoredElement T, class Validator>
class ReaderPtr<T, Validator> {
 public:
  // `count` elements that the writer has at `stored`, and that belong to the image of
  // `of`.  Raises CountException and what StoreBase::translate raises.
  ReaderPtr(const void* stored, U32 count, const Validator& of) : of_(of), count_(count) {
    using Stash::Word;
    of.checkCount(count, sizeof(T));
    if (count == 0) return;
    const std::size_t words = (count * sizeof(T) + sizeof(Word) - 1) / sizeof(Word);
    from_ =
        static_cast<const Word*>(of.store().translate(stored, words * sizeof(Word), alignof(Word)));
  }

  U32 count() const noexcept { return count_; }

  // Copies all elements in one block, then validates; what is in `to` after an
  // exception means nothing.  Raises VersionAnchorException, also if `to` is not
  // for count() elements.
  void copyTo(std::span<T> to) const {
    if (to.size() != count_) of_.failChanged();
    Stash::sharedCopyOut(to.data(), from_, to.size_bytes());
    validateVersionAnchor();
  }

  void validateVersionAnchor() const { of_.validateVersionAnchor(); }

 private:
  const Validator& of_;
  const U32 count_;
  const Stash::Word* from_ = nullptr;
};

// One image.  One thread; keeps the store mapped.
template <Storable T, class Validator>
class ReaderPtr<T, Validator> {
 public:
  static constexpr const Stash::ImageKindRow& row = imageKindRow(storedKind<T>);

  // As the validator's constructor.
  ReaderPtr(const void* stored, StoreManager* manager)
      : validator_(stored, manager, storedKind<T>) {}

  // Whether the writer says that the elements are in order, each once.
  bool sorted() const requires(row.isList) { return read(validator_.image().detail) != 0; }

  // Elements; what they take is no more than the store has.  Raises CountException.
  U32 count() const requires(row.isList) {
    const U32 count = read(validator_.image().count);
    validator_.checkCount(count, row.size);
    return count;
  }

  // Checked to lie within the store; for lists of values, E is const void*.
  template <StoredElement E>
  ReaderPtr<E, Validator> elements() const requires(row.isList && sizeof(E) == row.size) {
    const U32 count = Stash::sharedLoad(validator_.image().count);
    const Stash::Word first = Stash::sharedLoad(validator_.image().payload[0]);
    validateVersionAnchor();
    return {reinterpret_cast<const void*>(first), count, validator_};
  }

  // As written; any number.
  U32 classification() const requires(!row.isList) { return read(validator_.image().detail); }

  template <StoredElement C>
  C content() const requires(!row.isList && sizeof(C) == row.size) {
    C content;
    Stash::sharedCopyOut(&content, validator_.image().payload.data(), sizeof content);
    validateVersionAnchor();
    return content;
  }

  void validateVersionAnchor() const { validator_.validateVersionAnchor(); }

 private:
  U32 read(const U32& field) const {
    const U32 value = Stash::sharedLoad(field);
    validateVersionAnchor();
    return value;
  }

  const Validator validator_;
};

}  // namespace KivStash

#endif
