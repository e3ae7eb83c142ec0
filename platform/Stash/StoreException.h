// What can be wrong with a store, or with what was asked of it.
//
// Every check on what shared memory says ends here, and what() says which check
// failed and where, in addresses of the writer's process.
#ifndef STASH_STOREEXCEPTION_H
#define STASH_STOREEXCEPTION_H

#include "Kiv/Exception.h"
#include "Kiv/Export.h"

namespace Stash {

struct OV_EXPORT StoreException : Kiv::Exception {
  using Exception::Exception;
};

// The system refused to open, create, map or remove a store.
struct OV_EXPORT StoreAccessException : StoreException {
  using StoreException::StoreException;
};

// No store, one of another layout or machine, or one whose file was cut short.
struct OV_EXPORT InvalidStoreException : StoreException {
  using StoreException::StoreException;
};

// An address that lies outside the store, wholly or in part.
struct OV_EXPORT OutOfBoundsException : StoreException {
  using StoreException::StoreException;
};

struct OV_EXPORT MisalignedException : StoreException {
  using StoreException::StoreException;
};

// More elements than the store could hold, or than a list may have.
struct OV_EXPORT CountException : StoreException {
  using StoreException::StoreException;
};

// The image was changed while it was read, or is being changed: try again.  If
// it stays so, the writer has died in the middle of a change.
struct OV_EXPORT VersionAnchorException : StoreException {
  using StoreException::StoreException;
};

// There is no image, or no longer.
struct OV_EXPORT ImageNotFoundException : StoreException {
  using StoreException::StoreException;
};

// The image is not of the kind that was asked for, or of none that is known.
struct OV_EXPORT WrongKindException : StoreException {
  using StoreException::StoreException;
};

// What an image says is no value of its kind, though it is all there.
struct OV_EXPORT ContentException : StoreException {
  using StoreException::StoreException;
};

// No room for more in what the store may grow to, or the system has none; the
// images are what they were.
struct OV_EXPORT StoreFullException : StoreException {
  using StoreException::StoreException;
};

}  // namespace Stash

#endif
