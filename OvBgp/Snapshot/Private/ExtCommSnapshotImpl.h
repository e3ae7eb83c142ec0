// How extended lists and sub-lists are copied.  Private to the library.
#ifndef OVBGP_SNAPSHOT_PRIVATE_EXTCOMMSNAPSHOTIMPL_H
#define OVBGP_SNAPSHOT_PRIVATE_EXTCOMMSNAPSHOTIMPL_H

namespace Routing::Bgp {

// The members of a list or of a sub-list.
template <class List, class Snapshot>
void commsCopy(const List& list, Snapshot& snapshot) {
  for (const auto& comm : list.commVector()) snapshot.commIs(comm);
}

// The sub-lists that there are.
template <class List, class Snapshot>
void classificationListsCopy(const List& list, Snapshot& snapshot) {
  for (const auto& part : list.classificationListVector()) {
    if (part) snapshot.classificationListIs(part);
  }
}

}  // namespace Routing::Bgp

#endif
