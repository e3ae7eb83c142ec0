#include "OvBgp/Store/Destash.h"

#include "OvBgp/List/CommList.h"
#include "OvBgp/List/ExtCommIp6List.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/List/LargeCommList.h"
#include "OvBgp/Store/Private/DestashImpl.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

CommList::Ptr CommList::destash(const void* stored, KivStash::StoreManager* storeManager) {
  return destashCommList<CommList, U32>(stored, storeManager);
}

LargeCommList::Ptr LargeCommList::destash(const void* stored,
                                          KivStash::StoreManager* storeManager) {
  return destashCommList<LargeCommList, Acl::CommunityValue>(stored, storeManager);
}

// A rebuilt value gets the state `rebuilt`, so that it can never be interned: its class and
// classification are the writer's, not those of the rule tree. The state is set here because
// only the value itself may set it.
ExtComm::Ptr ExtComm::destash(const void* stored, KivStash::StoreManager* storeManager) {
  return destashTraced<ExtComm>(stored, storeManager, [](const auto& reader) {
    Ptr comm = valueOf(reader);
    comm->dedupStateIs(Dorn::DedupHandleState::rebuilt);
    return comm;
  });
}

ExtCommIp6::Ptr ExtCommIp6::destash(const void* stored, KivStash::StoreManager* storeManager) {
  return destashTraced<ExtCommIp6>(stored, storeManager, [](const auto& reader) {
    Ptr comm = valueOf(reader);
    comm->dedupStateIs(Dorn::DedupHandleState::rebuilt);
    return comm;
  });
}

// Grouping sorts the members, whatever the stored flag says.
ExtCommList::Ptr ExtCommList::destash(const void* stored, KivStash::StoreManager* storeManager) {
  return destashTraced<ExtCommList>(stored, storeManager, [storeManager](const auto& reader) {
    Ptr list = extCommListFactory();
    appendDestashed(reader, storeManager, *list);
    list->createClassificationListVector(false);
    return list;
  });
}

// The list keeps order and flag of the image and has no sub-lists.
ExtCommIp6List::Ptr ExtCommIp6List::destash(const void* stored,
                                            KivStash::StoreManager* storeManager) {
  return destashTraced<ExtCommIp6List>(stored, storeManager, [storeManager](const auto& reader) {
    Ptr list = extCommIp6ListFactory();
    if (reader.sorted()) list->commVectorSortedIs();
    appendDestashed(reader, storeManager, *list);
    return list;
  });
}

}  // namespace Routing::Bgp
