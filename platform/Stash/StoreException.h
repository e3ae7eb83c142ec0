// Exceptions of stores and of operations on them.
//
// Every check of what shared memory contains ends in one of these. what() names the failed check
// and its place; addresses in the text are addresses of the writer's process, since those are the
// ones that tools and other readers print, too.
#ifndef STASH_STOREEXCEPTION_H
#define STASH_STOREEXCEPTION_H

#include "Kiv/Exception.h"
#include "Kiv/Export.h"

namespace Stash {

// The common base. Catching it covers every way in which reading a damaged store can fail.
struct OV_EXPORT StoreException : Kiv::Exception {
  // Takes the text of what().
  using Exception::Exception;
};

// The system refused to open, create, map or remove a store.
struct OV_EXPORT StoreAccessException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The file is not a store, has another layout version or was written on an incompatible machine,
// or it is shorter than its header says.
struct OV_EXPORT InvalidStoreException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// An address range lies outside the store, wholly or in part.
struct OV_EXPORT OutOfBoundsException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// An address is not aligned as its type requires.
struct OV_EXPORT MisalignedException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// A list has more elements than the store could contain, or more octets than a list may have
// (4 GiB); or the lists of one walk have more elements than the store could contain, because they
// share them.
struct OV_EXPORT CountException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The image was changed while it was read, or is being changed: read it again. If the exception
// persists, the writer has died in the middle of the change, and the image is lost.
struct OV_EXPORT VersionAnchorException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The image does not exist, or was removed.
struct OV_EXPORT ImageNotFoundException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The image has another kind than the caller expects, or a kind that this version does not know.
struct OV_EXPORT WrongKindException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The image could be read consistently, but its fields are no valid value of its kind.
struct OV_EXPORT ContentException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

// The store has reached its maximum length, or the system has no memory left for it. No image has
// changed.
struct OV_EXPORT StoreFullException : StoreException {
  // Takes the text of what().
  using StoreException::StoreException;
};

}  // namespace Stash

#endif
