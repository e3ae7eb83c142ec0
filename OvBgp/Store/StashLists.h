// Keeping lists in a shared-memory store, from which `destash` (OvBgp/Store/Destash.h)
// rebuilds them in other processes.
#ifndef OVBGP_STORE_STASHLISTS_H
#define OVBGP_STORE_STASHLISTS_H

#include "Kiv/Export.h"
#include "KivStash/StoreWriter.h"

namespace Routing::Bgp {

// Puts a new image of `list` into the store, with its sorted flag and, for extended
// ones, with its values; the store has each value once.  List is CommList,
// LargeCommList, ExtCommList or ExtCommIp6List.  Raises what KivStash::StoreWriter
// raises, which leaves the images as they were.
template <class List>
KivStash::ImageId stashPut(KivStash::StoreWriter& writer, const List& list);
// Makes `list` what the image `id`, of a list of the same class, is of.
template <class List>
void stashReplace(KivStash::StoreWriter& writer, KivStash::ImageId id, const List& list);

}  // namespace Routing::Bgp

#endif
