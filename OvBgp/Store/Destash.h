// Rebuilding values and lists from their images in a shared-memory store. Each type that can
// be stored has a static function `destash`:
//
//   CommList::Ptr list = CommList::destash(stored, storeManager.ptr());
//   CommList::PtrConst interned = list->dedup(table.ptr());
//
// `stored` is the image's address in the writing process, as KivStash::StoreCursor finds it.
// The writer may change the image while it is read.
//
// Errors. A store is shared memory, and anyone may have written its contents. Whatever they are,
// `destash` either returns an object whose contents were in the image at one moment, or throws a
// Stash::StoreException, which is one of those that KivStash::ReaderPtr lists, or ContentException
// if a value has an unknown classification. VersionAnchorException means that the writer changed
// the image meanwhile; the caller should try again, a few times. After an exception nothing of the
// new object is left. A count from the store is checked against the store's size before memory is
// allocated for it. Running out of memory throws std::bad_alloc.
//
// The following is not checked:
//
// - Plain lists and IPv6 lists keep their stored order and sorted flag. `dedup` of a plain list
//   does not sort it if the flag is set. If the writer is not trusted, check that the members
//   ascend before calling `dedup`.
// - An extended list is sorted and grouped again. An IPv6 list is neither, and has no sub-lists.
//   The values of both, and the sub-lists of an extended list, have the state `rebuilt` and can
//   never be interned, so both kinds of list are for reading only. Do not call their `dedup`.
//   ExtCommList::dedupDestashed and ExtCommIp6List::dedupDestashed make an interned list with the
//   same contents.
// - The members and sub-lists of a rebuilt extended list were never interned, and the attributes
//   that `dedup` computes are missing. Therefore `fitsAttribute` is false for every selection but
//   `all`, such as `transitive`, and `serialize` returns an empty string for it.
//   `classificationList(k)` stops the process; read `classificationListVector()` instead. Rebuilt
//   and interned link bandwidths must not be in one list, because comparing them stops the process.
//   ExtCommList::dedupDestashed makes an interned list, to which none of this applies.
// - A value is an object of the base class, ExtComm or ExtCommIp6, with its stored
//   classification. The class and classification that the rule tree would choose may differ.
//
// Threads: any, if threads do not share the store manager, or if thread-safe pointers are on.
// Trace level OvBgp/8 prints each object that is rebuilt.
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

// The kind of image of standard community lists.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::CommList> =
    Stash::ImageKind::standardList;
// The kind of image of large community lists.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::LargeCommList> =
    Stash::ImageKind::largeList;
// The kind of image of extended communities.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtComm> =
    Stash::ImageKind::extendedValue;
// The kind of image of extended community lists.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommList> =
    Stash::ImageKind::extendedList;
// The kind of image of IPv6 address specific extended communities.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommIp6> =
    Stash::ImageKind::ipv6Value;
// The kind of image of IPv6 address specific extended community lists.
template <>
inline constexpr Stash::ImageKind storedKind<Routing::Bgp::ExtCommIp6List> =
    Stash::ImageKind::ipv6List;

}  // namespace KivStash

#endif
