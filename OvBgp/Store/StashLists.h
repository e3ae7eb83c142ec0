// Writing lists to a shared-memory store. Other processes rebuild them by `destash`
// (OvBgp/Store/Destash.h).
//
// The functions exist for CommList, LargeCommList, ExtCommList and ExtCommIp6List. A list need
// not be interned. The store copies the list, so the list may be released afterwards. Threads:
// only the thread that uses the writer.
#ifndef OVBGP_STORE_STASHLISTS_H
#define OVBGP_STORE_STASHLISTS_H

#include "Kiv/Export.h"
#include "KivStash/StoreWriter.h"

namespace Routing::Bgp {

// Puts an image of `list` into the store and returns its id. The image has the list's members and
// its sorted flag. For extended lists, the members are images of values, of which the store keeps
// one per value. Throws the exceptions of KivStash::StoreWriter, and std::bad_alloc; the store's
// images are then as they were.
template <class List>
KivStash::ImageId stashPut(KivStash::StoreWriter& writer, const List& list);

// Replaces the contents of the image `id`, which must be of a list of the same class, by those
// of `list`. Readers see the old contents or the new ones. Throws as stashPut.
template <class List>
void stashReplace(KivStash::StoreWriter& writer, KivStash::ImageId id, const List& list);

}  // namespace Routing::Bgp

#endif
