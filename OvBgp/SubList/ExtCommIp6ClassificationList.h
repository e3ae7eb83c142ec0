// The parts of an IPv6 extended community list, one a classification.
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

// See ExtCommClassificationListBase.
class OV_EXPORT ExtCommIp6ClassificationList final
    : public ExtCommClassificationListBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6ClassificationList)

 public:
  explicit ExtCommIp6ClassificationList(ExtCommClassification classification) noexcept
      : ExtCommClassificationListBase(classification) {}

  // Appends.  Requires: interned, never null; this sub-list was not interned before.
  void commIs(const ExtCommIp6::PtrConst& comm) { commAdd(comm); }
  const ExtCommVector<ExtCommIp6>& comms() const noexcept { return commVector(); }
  // The member of that content, or null.  Requires: sorted.
  ExtCommIp6::PtrConst comm(const ExtCommIp6Content& content) const;

  bool commVectorSorted() const noexcept { return (notes() & sortedNote) != 0; }
  void commVectorSortedIs(bool sorted) noexcept { noteIs(sortedNote, sorted); }

  void zeroReferencesIs() noexcept override;

  // A copy to edit and to watch.
  Kiv::Ptr<ExtCommIp6ClassificationListSnapshot> commSnapshot() const;
};

// New, empty, with notification switched on.  Throws std::bad_alloc.
OV_EXPORT ExtCommIp6ClassificationList::Ptr extCommIp6ClassificationListFactory(
    ExtCommClassification classification);

// The sub-list's text, whatever the stream's format; nothing for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList* list);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList& list);

}  // namespace Routing::Bgp

#endif
