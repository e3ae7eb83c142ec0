// Copies extended lists and sub-lists into snapshots. Private to the library.
#ifndef OVBGP_SNAPSHOT_PRIVATE_EXTCOMMSNAPSHOTIMPL_H
#define OVBGP_SNAPSHOT_PRIVATE_EXTCOMMSNAPSHOTIMPL_H

namespace Routing::Bgp {

// Copies `list` into the empty `snapshot`, given by a counted pointer, and returns it. A list
// has sub-lists, which are copied first, as pointers to the same objects; a sub-list has
// members only.
template <class List, class SnapshotPtr>
SnapshotPtr copyOf(const List& list, SnapshotPtr snapshot) {
  if constexpr (requires { list.classificationListVector(); }) {
    for (const auto& subList : list.classificationListVector()) {
      if (subList) snapshot->classificationListIs(subList);
    }
  }
  for (const auto& comm : list.commVector()) snapshot->commIs(comm);
  return snapshot;
}

}  // namespace Routing::Bgp

#endif
