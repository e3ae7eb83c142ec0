// The sub-lists of an IPv6 extended community list, one for each classification.
#ifndef OVBGP_SUBLIST_EXTCOMMIP6CLASSIFICATIONLIST_H
#define OVBGP_SUBLIST_EXTCOMMIP6CLASSIFICATIONLIST_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/ExtCommClassificationListBase.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

class ExtCommIp6ClassificationListSnapshot;

extern template class OV_EXPORT ExtCommClassificationListBase<ExtCommIp6Family>;

// A sub-list of IPv6 communities; ExtCommClassificationListBase describes its life. It has no
// notifiers and prunes nothing, so one class serves all classifications.
class OV_EXPORT ExtCommIp6ClassificationList final
    : public ExtCommClassificationListBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6ClassificationList)

 public:
  // An empty sub-list. Users call the factory instead.
  explicit ExtCommIp6ClassificationList(ExtCommClassification classification) noexcept
      : ExtCommClassificationListBase(classification) {}

  // Appends `comm`. Stops the process if this sub-list is interned or was, and if `comm` is null or
  // was never interned. The interface gives the name, although xIs sets elsewhere.
  void commIs(const ExtCommIp6::PtrConst& comm) { commAdd(comm); }
  // The members. For communities of eight octets the function of this name returns their number.
  const ExtCommVector<ExtCommIp6>& comms() const noexcept { return commVector(); }
  // The member with this content, or null. Stops the process unless the sub-list is sorted.
  ExtCommIp6::PtrConst comm(const ExtCommIp6Content& content) const;

  // Whether the members are sorted and without duplicates.
  bool commVectorSorted() const noexcept { return (notes() & sortedNote) != 0; }
  // Sets what commVectorSorted returns. Sorts nothing; the caller knows the order.
  void commVectorSortedIs(bool sorted) noexcept { noteIs(sortedNote, sorted); }

  // Called for the last reference. Frees the object together with its members' array if both are in
  // one allocation.
  void zeroReferencesIs() noexcept override;

  // A copy that can be edited and observed, see OvBgp/Snapshot/. Throws std::bad_alloc.
  Kiv::Ptr<ExtCommIp6ClassificationListSnapshot> commSnapshot() const;
};

// A new, empty sub-list with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6ClassificationList::Ptr extCommIp6ClassificationListFactory(
    ExtCommClassification classification);

// Writes the sub-list's text; nothing for null. The stream's format has no effect.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList* list);
// Writes the sub-list's text. The stream's format has no effect.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList& list);

}  // namespace Routing::Bgp

#endif
