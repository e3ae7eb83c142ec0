#include "KivStash/ReaderPtr.h"

#include <sstream>

#include "Stash/StoreException.h"

namespace KivStash {

using Stash::ImageKind;
using Stash::StoredImage;

PavoAnchorTranslatorValidator::PavoAnchorTranslatorValidator(const void* stored,
                                                             StoreManager* manager, ImageKind kind)
    : manager_(manager),
      stored_(stored),
      image_(static_cast<const StoredImage*>(
          store().translate(stored, sizeof(StoredImage), alignof(StoredImage)))),
      anchor_(stillAnchor()) {
  checkKind(kind);
}

// Returns the anchor once it is even, i.e. when the writer is not changing the image.
//
// A change takes some nanoseconds, so the first load nearly always suffices. An anchor stays odd
// for longer only if the writer was descheduled or died in the middle of a change. Hence 100 quick
// attempts, then a few that yield the processor before, as long as the manager grants time for it.
U32 PavoAnchorTranslatorValidator::stillAnchor() const {
  constexpr int quickLooks = 100;
  constexpr int yields = 16;
  for (int look = 0; look < quickLooks + yields; ++look) {
    if (look >= quickLooks && !manager_->yieldToWriter()) break;
    const U32 anchor = Stash::sharedLoad(image_->anchor);
    if (anchor % 2 == 0) return anchor;
  }
  failInChange();
}

void PavoAnchorTranslatorValidator::failInChange() const {
  std::ostringstream text;
  text << "version anchor: image " << stored_
       << " is being changed, or its writer died while changing it";
  throw Stash::VersionAnchorException(text.str());
}

// The kind is validated before it is judged: a kind read during a change must end in
// VersionAnchorException, which asks the caller to try again, not in WrongKindException.
void PavoAnchorTranslatorValidator::checkKind(ImageKind kind) const {
  const ImageKind isKind = Stash::sharedLoad(image_->kind);
  validateVersionAnchor();
  if (isKind == kind) return;
  std::ostringstream text;
  text << "image " << stored_ << ": ";
  if (isKind == ImageKind::none) {
    text << "removed";
    throw Stash::ImageNotFoundException(text.str());
  }
  if (isImageKind(isKind)) {
    text << imageKindRow(isKind).name;
  } else {
    text << "kind " << static_cast<U32>(isKind);
  }
  text << ", not " << imageKindRow(kind).name;
  throw Stash::WrongKindException(text.str());
}

void PavoAnchorTranslatorValidator::failChanged() const {
  std::ostringstream text;
  text << "version anchor: image " << stored_ << " was changed while it was read";
  throw Stash::VersionAnchorException(text.str());
}

// The known length is compared first, without a system call; the store may have grown since.
void PavoAnchorTranslatorValidator::checkCount(U32 count, U32 size) const {
  const U64 octets = U64{count} * size;
  if (octets <= 0xFFFFFFFF && (octets <= store().length() || octets <= store().lengthNow())) return;
  std::ostringstream text;
  text << "image " << stored_ << ": " << count << " elements of " << size
       << " octets cannot be in a store of " << store().length();
  throw Stash::CountException(text.str());
}

}  // namespace KivStash
