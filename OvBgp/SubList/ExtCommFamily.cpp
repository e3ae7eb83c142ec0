#include "OvBgp/SubList/ExtCommFamily.h"

#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

namespace KivStash {

template <>
Kiv::Type& arrayType<Routing::Bgp::ExtComm::PtrConst>() noexcept {
  static constinit Kiv::Type record{"ExtComm[]"};
  return record;
}

template <>
Kiv::Type& arrayType<Routing::Bgp::ExtCommIp6::PtrConst>() noexcept {
  static constinit Kiv::Type record{"ExtCommIp6[]"};
  return record;
}

template <>
Kiv::Type& arrayType<Routing::Bgp::ExtCommClassificationList::PtrConst>() noexcept {
  static constinit Kiv::Type record{"ExtCommClassificationList[]"};
  return record;
}

template <>
Kiv::Type& arrayType<Routing::Bgp::ExtCommIp6ClassificationList::PtrConst>() noexcept {
  static constinit Kiv::Type record{"ExtCommIp6ClassificationList[]"};
  return record;
}

}  // namespace KivStash
