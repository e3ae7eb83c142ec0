// Readers of images that another process may be changing: a sequence lock, seen from its reader.
//
// Each image has a version anchor, which is the sequence number of a sequence lock. A reader notes
// the even anchor, copies the fields, and compares the anchor again: if it is unchanged, the copy
// is consistent. The reader writes nothing, so it needs only read access to the store, takes no
// lock and never delays the writer. On a change the reader raises VersionAnchorException, and the
// caller starts again with a new reader.
//
// ReaderPtr has two specialisations: a reader of one image (for a type T with a storedKind<T>), and
// a reader of the elements of one list (for an element type), which the first one returns.
//
//   template <>
//   inline constexpr Stash::ImageKind KivStash::storedKind<MyList> =
//       Stash::ImageKind::standardList;
//
//   KivStash::ReaderPtr<MyList, KivStash::PavoAnchorTranslatorValidator> list(stored, manager);
//   const bool sorted = list.sorted();
//   const auto elements = list.elements<U32>();
//   std::vector<U32> comms(elements.count());
//   elements.copyTo(comms);
//
// Everything that a reader returns has been validated: it was in the store, all of it at one time,
// and it is not larger than the store. The content need not be sensible, because anyone may have
// written the store. A classification, for example, may be any number and must be checked.
//
// The elements of a list of values are addresses of values. Read each value with a reader of its
// own, and validate the list once more after the last value. This last validation covers all
// values, because the writer changes the list before it frees a value of the list.
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

// The kind of T's images; none if T has no images. Specialise it beside each type that can be in a
// store.
template <class T>
inline constexpr Stash::ImageKind storedKind = Stash::ImageKind::none;
// A type that has images in stores.
template <class T>
concept Storable = (storedKind<T> != Stash::ImageKind::none);
// A type of list elements or of a value's content: plain octets that can be copied.
template <class T>
concept StoredElement = !Storable<T> && std::is_trivially_copyable_v<T>;

// Finds an image, notes its version anchor, and later tells whether the image is still the same
// version. Owns a reference to the manager, so the store stays mapped. One thread.
//
// If the writer is changing the image during construction, the constructor waits. The wait is
// bounded by a number of attempts, and by the time that the manager grants to all its readers,
// because the writer may have died in the middle of the change.
class OV_EXPORT PavoAnchorTranslatorValidator {
 public:
  // `stored` is the writer's address of the image, for example StoredRef::stored. Raises
  // VersionAnchorException if the image is still being changed after the wait,
  // ImageNotFoundException if it was removed, WrongKindException if it has another kind, and the
  // exceptions of StoreBase::translate.
  PavoAnchorTranslatorValidator(const void* stored, StoreManager* manager, Stash::ImageKind kind);

  // The store that contains the image.
  const Stash::StoreBase& store() const noexcept { return manager_->store(); }
  // The record of the image, in shared memory. Read its fields with Stash::sharedLoad, and validate
  // afterwards.
  const Stash::StoredImage& image() const noexcept { return *image_; }

  // Returns if everything read so far, from the image and from its elements, is of one version.
  // Raises VersionAnchorException otherwise, and InvalidStoreException if the store's file was
  // shortened. Costs two loads.
  void validateVersionAnchor() const {
    store().check();
    if (Stash::sharedLoad(image_->anchor) != anchor_) [[unlikely]]
      failChanged();
  }

  // Raises CountException if `count` elements of `size` octets are more than the store has, or more
  // than 4 GiB. Call it before memory is allocated for the elements.
  void checkCount(U32 count, U32 size) const;
  // Raises VersionAnchorException with a text that names the image.
  [[noreturn]] void failChanged() const;

 private:
  U32 stillAnchor() const;
  [[noreturn]] void failInChange() const;
  void checkKind(Stash::ImageKind kind) const;

  const StoreManager::Ptr manager_;
  const void* const stored_;  // the writer's address of the image, for messages
  const Stash::StoredImage* const image_;
  const U32 anchor_;
};

// A reader; specialised below for images and for elements of lists. `Validator` is
// PavoAnchorTranslatorValidator.
template <class T, class Validator>
class ReaderPtr;

// Reads the elements of one list. Owns nothing: use it only while the list's reader exists. One
// thread.
template <StoredElement T, class Validator>
class ReaderPtr<T, Validator> {
 public:
  // `count` elements, which the writer has at `stored` and which belong to the image of `of`.
  // Raises CountException, and the exceptions of StoreBase::translate. The range is checked in
  // whole words, because elements are copied word by word; the writer's pieces have whole words,
  // too.
  ReaderPtr(const void* stored, U32 count, const Validator& of) : of_(of), count_(count) {
    using Stash::Word;
    of.checkCount(count, sizeof(T));
    if (count == 0) return;
    const std::size_t words = (count * sizeof(T) + sizeof(Word) - 1) / sizeof(Word);
    from_ =
        static_cast<const Word*>(of.store().translate(stored, words * sizeof(Word), alignof(Word)));
  }

  // Number of elements; copyTo needs as much room.
  U32 count() const noexcept { return count_; }

  // Copies all elements, then validates. After an exception the content of `to` is without meaning.
  // Raises VersionAnchorException if the list was changed, and also if `to` has not exactly count()
  // elements; and InvalidStoreException if the store's file was shortened.
  void copyTo(std::span<T> to) const {
    if (to.size() != count_) of_.failChanged();
    Stash::sharedCopyOut(to.data(), from_, to.size_bytes());
    validateVersionAnchor();
  }

  // As PavoAnchorTranslatorValidator::validateVersionAnchor, for the list's image.
  void validateVersionAnchor() const { of_.validateVersionAnchor(); }

 private:
  const Validator& of_;
  const U32 count_;
  const Stash::Word* from_ = nullptr;  // in this process; null without elements
};

// Reads one image. Every member function validates before it returns, so it raises
// VersionAnchorException if the image was changed since construction, and InvalidStoreException if
// the store's file was shortened. One thread. Keeps the store mapped.
template <Storable T, class Validator>
class ReaderPtr<T, Validator> {
 public:
  // The properties of T's kind of image.
  static constexpr const Stash::ImageKindRow& row = imageKindRow(storedKind<T>);

  // Finds the image that the writer has at `stored`. Raises the exceptions of Validator's
  // constructor.
  ReaderPtr(const void* stored, StoreManager* manager)
      : validator_(stored, manager, storedKind<T>) {}

  // Whether the writer declared the elements to be in ascending order without duplicates. The store
  // does not guarantee it: check it if the writer is not trusted.
  bool sorted() const requires(row.isList) { return read(validator_.image().detail) != 0; }

  // Number of elements of a list. Their size never exceeds the size of the store. Raises
  // CountException for a larger number.
  U32 count() const requires(row.isList) {
    const U32 count = read(validator_.image().count);
    validator_.checkCount(count, row.size);
    return count;
  }

  // Returns a reader of the elements; they lie within the store. For lists of values, E is
  // const void*: each element is the writer's address of a value. Raises CountException, and the
  // exceptions of StoreBase::translate.
  template <StoredElement E>
  ReaderPtr<E, Validator> elements() const requires(row.isList && sizeof(E) == row.size) {
    const U32 count = Stash::sharedLoad(validator_.image().count);
    const Stash::Word first = Stash::sharedLoad(validator_.image().payload[0]);
    validateVersionAnchor();
    return {reinterpret_cast<const void*>(first), count, validator_};
  }

  // The classification of a value, as the writer stored it. May be any number.
  U32 classification() const requires(!row.isList) { return read(validator_.image().detail); }

  // The octets of a value, copied into a C, in the writer's representation of it.
  template <StoredElement C>
  C content() const requires(!row.isList && sizeof(C) == row.size) {
    C content;
    Stash::sharedCopyOut(&content, validator_.image().payload.data(), sizeof content);
    validateVersionAnchor();
    return content;
  }

  // Raises VersionAnchorException if the image was changed since construction. For a list of
  // values: call it after the last value was read.
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
