#include "OvBgp/SubList/ExtCommFamily.h"

namespace KivStash {

// Defines the record that counts arrays of pointers to `Element`; its name is "Element[]". A
// function template cannot be specialised for all pointers at once, hence a macro. The record is
// constant-initialised, since initialisers of other files may already build lists.
#define ARRAY_TYPE_DEFINE(Element)                                         \
  template <>                                                              \
  Kiv::Type& arrayType<Kiv::Ptr<const Routing::Bgp::Element>>() noexcept { \
    static constinit Kiv::Type record{#Element "[]"};                      \
    return record;                                                         \
  }
ARRAY_TYPE_DEFINE(ExtComm)
ARRAY_TYPE_DEFINE(ExtCommIp6)
ARRAY_TYPE_DEFINE(ExtCommClassificationList)
ARRAY_TYPE_DEFINE(ExtCommIp6ClassificationList)
#undef ARRAY_TYPE_DEFINE

}  // namespace KivStash
