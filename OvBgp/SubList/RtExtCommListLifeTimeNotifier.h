// The notifier of one set of route targets that is in use.
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

// Represents one interned sub-list of route targets in NotifyingRtExtCommListCollection.
//
// Ownership: the notifier holds one reference to the sub-list, and the sub-list one to the
// notifier, while the sub-list is in its table. The notifier's reference does not keep the sub-list
// in the table (it belongs to the idle count, see Dorn/DedupHandle.h). A user who keeps a notifier
// for longer keeps the sub-list alive, no longer interned; all functions here still work.
// Immutable; any thread may read.
class OV_EXPORT RtExtCommListLifeTimeNotifier final : public Kiv::PtrInterface {
  KIV_OBJECT(RtExtCommListLifeTimeNotifier)

 public:
  // A notifier that holds a reference to `rtExtCommList`, which must be a
  // RtExtCommClassificationList. That is not checked.
  explicit RtExtCommListLifeTimeNotifier(const Dorn::DedupHandle::Ptr& rtExtCommList);
  // Releases the sub-list.
  ~RtExtCommListLifeTimeNotifier() override;

  // The sub-list, borrowed. Callers may read it but must not take a reference, because the sub-list
  // may be about to leave its table.
  const RtExtCommClassificationList* rtExtCommListRawPtr() const noexcept;
  // Whether the sub-list has a member with this value.
  bool comm(const U64& value) const;
  // The sub-list's text. Throws std::bad_alloc.
  Kiv::String toStrep() const;

 private:
  // A base class pointer, because this header must not include the sub-list's, which refers to this
  // class.
  const Dorn::DedupHandle::Ptr rtExtCommList_;
};

// Writes the sub-list's text; "NULL" for null.
OV_EXPORT std::ostream& operator<<(std::ostream& out,
                                   const RtExtCommListLifeTimeNotifier* notifier);

}  // namespace Routing::Bgp

#endif
