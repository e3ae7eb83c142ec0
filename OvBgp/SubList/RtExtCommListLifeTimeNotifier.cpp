#include "OvBgp/SubList/RtExtCommListLifeTimeNotifier.h"

#include <ostream>

#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(RtExtCommListLifeTimeNotifier)

RtExtCommListLifeTimeNotifier::RtExtCommListLifeTimeNotifier(
    const Dorn::DedupHandle::Ptr& rtExtCommList)
    : rtExtCommList_(rtExtCommList) {}

RtExtCommListLifeTimeNotifier::~RtExtCommListLifeTimeNotifier() = default;

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

std::ostream& operator<<(std::ostream& out, const RtExtCommListLifeTimeNotifier* notifier) {
  return out << (notifier ? notifier->toStrep() : "NULL");
}

}  // namespace Routing::Bgp
