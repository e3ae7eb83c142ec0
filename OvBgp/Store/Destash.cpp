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

ExtComm::Ptr ExtComm::destash(const void* stored, KivStash::StoreManager* storeManager) {
  Ptr comm = destashExtComm<ExtComm>(stored, storeManager);
  comm->dedupStateIs(Dorn::DedupHandleState::rebuilt);
  return comm;
}

ExtCommIp6::Ptr ExtCommIp6::destash(const void* stored, KivStash::StoreManager* storeManager) {
  Ptr comm = destashExtComm<ExtCommIp6>(stored, storeManager);
  comm->dedupStateIs(Dorn::DedupHandleState::rebuilt);
  return comm;
}

ExtCommList::Ptr ExtCommList::destash(const void* stored, KivStash::StoreManager* storeManager) {
  traceDestashing<ExtCommList>();
  const StoredReader<ExtCommList> reader(stored, storeManager);
  Ptr list = extCommListFactory();
  appendDestashed(reader, storeManager, *list);
  list->createClassificationListVector(false);
  traceDestashed(*list);
  return list;
}

ExtCommIp6List::Ptr ExtCommIp6List::destash(const void* stored,
                                            KivStash::StoreManager* storeManager) {
  traceDestashing<ExtCommIp6List>();
  const StoredReader<ExtCommIp6List> reader(stored, storeManager);
  Ptr list = extCommIp6ListFactory();
  if (reader.sorted()) list->commVectorSortedIs();
  appendDestashed(reader, storeManager, *list);
  traceDestashed(*list);
  return list;
}

}  // namespace Routing::Bgp
