#include "OvBgp/SubList/RtExtCommListLifeTimeNotifier.h"

#include <ostream>

#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(RtExtCommListLifeTimeNotifier)

RtExtCommListLifeTimeNotifier::RtExtCommListLifeTimeNotifier(
    const Dorn::DedupHandle::Ptr& rtExtCommList)
    : rtExtCommList_(rtExtCommList) {}

// Out of line, as are the functions below, since only this source knows the sub-list's class.
RtExtCommListLifeTimeNotifier::~RtExtCommListLifeTimeNotifier() = default;

// The constructor's contract makes this cast right.
const RtExtCommClassificationList* RtExtCommListLifeTimeNotifier::rtExtCommListRawPtr()
    const noexcept {
  return static_cast<const RtExtCommClassificationList*>(rtExtCommList_.ptr());
}

bool RtExtCommListLifeTimeNotifier::comm(const U64& value) const {
  return rtExtCommListRawPtr()->comm(value);
}

Kiv::String RtExtCommListLifeTimeNotifier::toStrep() const {
  return rtExtCommListRawPtr()->toStrep();
}

// Formatted output, unlike the sub-list's own operator, so the stream's width applies.
std::ostream& operator<<(std::ostream& out, const RtExtCommListLifeTimeNotifier* notifier) {
  return out << (notifier ? notifier->toStrep() : "NULL");
}

}  // namespace Routing::Bgp
