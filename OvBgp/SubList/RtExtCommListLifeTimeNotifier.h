// Stands for one set of route targets that is in use.
#ifndef OVBGP_SUBLIST_RTEXTCOMMLISTLIFETIMENOTIFIER_H
#define OVBGP_SUBLIST_RTEXTCOMMLISTLIFETIMENOTIFIER_H

#include <iosfwd>

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

class RtExtCommClassificationList;

// Holds one reference to a sub-list of route targets, which in turn holds its
// notifier while both are announced. That reference does not keep the sub-list in
// its table. Whoever keeps a notifier past its departure keeps the sub-list alive,
// un-interned: everything here still answers. Immutable; any thread may read.
class OV_EXPORT RtExtCommListLifeTimeNotifier final : public Kiv::PtrInterface {
  KIV_OBJECT(RtExtCommListLifeTimeNotifier)

 public:
  // Requires: `rtExtCommList` is a RtExtCommClassificationList.
  explicit RtExtCommListLifeTimeNotifier(const Dorn::DedupHandle::Ptr& rtExtCommList);
  ~RtExtCommListLifeTimeNotifier() override;

  // Borrowed: read it, and take no reference, as it may be about to leave its table.
  const RtExtCommClassificationList* rtExtCommListRawPtr() const noexcept;
  // Whether the sub-list has a member of that value.
  bool comm(const U64& value) const;
  // The sub-list's text.
  Kiv::String toStrep() const;

 private:
  const Dorn::DedupHandle::Ptr rtExtCommList_;
};

// Writes the sub-list's text; "NULL" for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out,
                                   const RtExtCommListLifeTimeNotifier* notifier);

}  // namespace Routing::Bgp

#endif
