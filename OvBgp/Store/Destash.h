// What of this library can be in a shared-memory store, and as which image.
//
// `destash` of each type rebuilds an object from what the writer of a store has at
// an address, while that writer may be changing it:
//
//   CommList::Ptr list = CommList::destash(stored, storeManager.ptr());
//   CommList::PtrConst interned = list->dedup(table.ptr());
//
// A store is shared memory that anyone may have written.  Whatever it holds, destash
// returns an object of what was there, all at one time, or raises a
// Stash::StoreException: those of KivStash::ReaderPtr, or ContentException for a
// classification that is none.  VersionAnchorException says that the writer was
// faster, so try again, a few times; what was built by then is gone.  Nothing is
// allocated by a count before that is known to fit the store.  Any thread, if
// threads do not share the manager or pointers are thread-safe.
//
// What was written is believed as far as it does no harm:
//
// - Plain lists and those of IPv6 have the order and the sorted flag that they were
//   stored with.  `dedup` of a plain list does not sort it if the flag is set, so a
//   list of a store that is not trusted should be seen to ascend before.
// - An extended list is sorted and grouped anew.  Its values and its sub-lists are in
//   the state `rebuilt` and never enter a table, so the list is for reading: do not
//   `dedup` it, but make an interned one of the same values by
//   ExtCommList::dedupDestashed.  The same for IPv6.
// - A value is a plain ExtComm or ExtCommIp6 with the classification that it was
//   stored with, not of the typed class that the rule tree would choose.
//
// OvBgp/8 traces what is rebuilt.
#ifndef OVBGP_STORE_DESTASH_H
#define OVBGP_STORE_DESTASH_H

#include "KivStash/ReaderPtr.h"
#include "Stash/StoreLayout.h"

namespace Routing::Bgp {

class CommList;
class ExtComm;
class ExtCommIp6;
class ExtCommIp6List;
class ExtCommList;
class LargeCommList;

}  // namespace Routing::Bgp

namespace KivStash {

template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::CommList> =
    Stash::ImageKind::standardList;
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::LargeCommList> =
    Stash::ImageKind::largeList;
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtComm> =
    Stash::ImageKind::extendedValue;
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommList> =
    Stash::ImageKind::extendedList;
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommIp6> =
    Stash::ImageKind::ipv6Value;
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommIp6List> =
    Stash::ImageKind::ipv6List;

}  // namespace KivStash

#endif
