// The list of IPv6 address specific extended communities that a path carries
// (RFC 5701).
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

// See ExtCommListBase.
class OV_EXPORT ExtCommIp6List final : public ExtCommListBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6List)

 public:
  ExtCommIp6List() noexcept = default;

  const ExtCommVector<ExtCommIp6>& comms() const noexcept { return commVector(); }
  // The member of that content, or null.  Require: sorted.
  ExtCommIp6::PtrConst comm(const ExtCommIp6Content& content) const;
  ExtCommIp6::PtrConst lookupExtComm(const ExtCommIp6Content& content) const {
    return comm(content);
  }
  bool commVectorSorted() const noexcept { return commVectorSorted_; }

  // The members' policy texts, with one blank between.
  Kiv::String commsStringForm() const;

  // The path attribute, header included, members in list order: all, or those that
  // are transitive; nothing at all if there are none.  Before the list is interned,
  // the latter are none, and the former require that it is sorted.
  // Requires: fitsAttribute(includeNonTransitive), which lists of wire origin fulfil
  // by themselves.
  Kiv::String serialize(bool includeNonTransitive) const;
  bool fitsAttribute(bool includeNonTransitive) const;

  // A copy to edit and to watch.
  Kiv::Ptr<ExtCommIp6ListSnapshot> commSnapshot() const;

  // The list that the writer of a store has at `stored`, rebuilt for reading; to
  // intern it, dedupDestashed.  OvBgp/Store/Destash.h.
  static Ptr destash(const void* stored, KivStash::StoreManager* storeManager);

 private:
  template <class>
  friend class ExtCommListBase;

  U32 serializableCommunities(bool includeNonTransitive) const;

  // What the grouping tells (see ExtCommList); this list notes little of it.
  void commVectorSortedIs() noexcept { commVectorSorted_ = true; }
  void groupingStarts() noexcept {}
  void commGrouped(const ExtCommIp6&, bool) noexcept {}
  void partFinished(const ExtCommIp6ClassificationList&) noexcept {}

  bool commVectorSorted_ = false;
};

// A new, empty list with notification switched on.  Throws std::bad_alloc.
OV_EXPORT ExtCommIp6List::Ptr extCommIp6ListFactory();

// The list's text, whatever the stream's format; "NULL" for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6List* list);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6List& list);

}  // namespace Routing::Bgp

#endif
