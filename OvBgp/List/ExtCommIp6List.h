// The list of IPv6 address specific extended communities of a route (RFC 5701).
#ifndef OVBGP_LIST_EXTCOMMIP6LIST_H
#define OVBGP_LIST_EXTCOMMIP6LIST_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/List/ExtCommListBase.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

namespace KivStash {
class StoreManager;
}

namespace Routing::Bgp {

class ExtCommIp6ListSnapshot;

extern template class OV_EXPORT ExtCommListBase<ExtCommIp6Family>;

// A list of extended communities of twenty octets. ExtCommListBase says how a list is built,
// interned and shared, and what its sub-lists are for. Unlike in other lists, `comms()` is not
// the number of members but the array of them; totalCommunities() is their number.
class OV_EXPORT ExtCommIp6List final : public ExtCommListBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6List)

 public:
  // An empty list. Users call extCommIp6ListFactory() instead.
  ExtCommIp6List() noexcept = default;

  // All members in list order; the same as commVector().
  const ExtCommVector<ExtCommIp6>& comms() const noexcept { return commVector(); }
  // The member with this content, or null; a binary search. Requires: sorted.
  ExtCommIp6::PtrConst comm(const ExtCommIp6Content& content) const;
  // Returns what comm() returns. Lists of eight octets have this name for it.
  ExtCommIp6::PtrConst lookupExtComm(const ExtCommIp6Content& content) const {
    return comm(content);
  }
  // Whether the members ascend strictly.
  bool commVectorSorted() const noexcept { return commVectorSorted_; }

  // The members' policy texts with classification, in list order, separated by one blank.
  Kiv::String commsStringForm() const;

  // The IPV6 ADDRESS SPECIFIC EXTENDED COMMUNITY path attribute in wire format: flags, type,
  // length, then members in list order. It contains all members, or, if not
  // `includeNonTransitive`, the transitive ones. An empty string if there are none.
  //
  // Requires: fitsAttribute(includeNonTransitive); a list that was made of a received attribute
  // always fits. Without `includeNonTransitive`, the list must be interned, because the transitive
  // members are counted then. With it, the list must be sorted.
  Kiv::String serialize(bool includeNonTransitive) const;
  // Whether these members fit in one path attribute. Without `includeNonTransitive`, false for a
  // list that was never interned, because its transitive members are not counted yet. With it,
  // the list must be sorted.
  bool fitsAttribute(bool includeNonTransitive) const;

  // A copy of members and sub-lists that belongs to the caller, who may edit and observe it.
  Kiv::Ptr<ExtCommIp6ListSnapshot> commSnapshot() const;

  // Rebuilds a list from its image at address `stored` of a shared-memory store, for reading
  // only. It is sorted if the stored list was. It was never interned and has no sub-lists, so
  // classificationList() stops the process, and only all members can be written as an
  // attribute. dedupDestashed makes an interned list of it. OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  template <class>
  friend class ExtCommListBase;

  // The number of members that serialize writes.
  U32 serializableCommunities(bool includeNonTransitive) const;

  // Hooks that ExtCommListBase calls while it groups the members (see ExtCommList). This list
  // records only that it is sorted.
  void commVectorSortedIs() noexcept { commVectorSorted_ = true; }
  void groupingStarts() noexcept {}
  void commGrouped(const ExtCommIp6&, bool) noexcept {}
  void partFinished(const ExtCommIp6ClassificationList&) noexcept {}

  bool commVectorSorted_ = false;
};

// A new, empty list, not interned, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6List::Ptr extCommIp6ListFactory();

// Writes toStrep() of `list`, or "NULL" for a null pointer. The output is unformatted: width,
// fill and base of the stream are ignored.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6List* list);
// Writes toStrep() of `list`, unformatted.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6List& list);

}  // namespace Routing::Bgp

#endif
