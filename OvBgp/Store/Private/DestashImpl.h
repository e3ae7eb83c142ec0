// How objects are rebuilt from a store, whatever their family.  Private to the
// library.
#ifndef OVBGP_STORE_PRIVATE_DESTASHIMPL_H
#define OVBGP_STORE_PRIVATE_DESTASHIMPL_H

#include <string>
#include <utility>
#include <vector>

#include "BgpCommon/Private/OvBgpTrace.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "KivStash/ReaderPtr.h"
#include "KivStash/StoreManager.h"
#include "OvBgp/Store/Destash.h"
#include "OvBgp/Value/PacketTypes.h"
#include "Stash/StoreException.h"

namespace Routing::Bgp {

// Returns only what belongs together and lies within the store.
template <class T>
using StoredReader = KivStash::ReaderPtr<T, KivStash::PavoAnchorTranslatorValidator>;

template <class T>
void traceDestashing() {
  KIV_TRACE(ovBgpTrace, ovBgpTraceDestash, "Destashing Routing::Bgp::" << T::kivType().name());
}
template <class T>
void traceDestashed(const T& object) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceDestash, "  destashed: " << object.toStrep());
}

// A list of plain elements, copied in one block.
template <class ListType, class ElementType>
Kiv::Ptr<ListType> destashCommList(const void* stored, KivStash::StoreManager* storeManager) {
  traceDestashing<ListType>();
  const StoredReader<ListType> reader(stored, storeManager);
  auto list = Dorn::notifyingObject<ListType>();
  list->commVectorSorted_ = reader.sorted();
  const auto elements = reader.template elements<ElementType>();
  if (elements.count() == 0) return list;
  elements.copyTo(list->commVectorRawPtrNonConst()->resizeForOverwrite(elements.count()));
  traceDestashed(*list);
  return list;
}

// Lists are grouped by it, at its index.
inline ExtCommClassification checkedClassification(U32 stored) {
  if (stored >= static_cast<U32>(extCommClassificationOneBeyondLast)) {
    throw Stash::ContentException("classification " + std::to_string(stored) +
                                  " of a stored community is none");
  }
  return static_cast<ExtCommClassification>(stored);
}

// A value of the family's base class, not yet marked as rebuilt.
template <class Value>
Kiv::Ptr<Value> destashExtComm(const void* stored, KivStash::StoreManager* storeManager) {
  traceDestashing<Value>();
  const StoredReader<Value> reader(stored, storeManager);
  const auto content =
      reader.template content<decltype(std::declval<const Value&>().getContent())>();
  auto value =
      Dorn::notifyingObject<Value>(checkedClassification(reader.classification()), content);
  traceDestashed(*value);
  return value;
}

// Appends the stored members to `list`, in their order.
//
// A value may be replaced as soon as no list has it, so what is wrong with a member
// is the list's fault only if the list is still the same; else it is worth another
// try, which VersionAnchorException says.
template <class List>
void appendDestashed(const StoredReader<List>& stored, KivStash::StoreManager* storeManager,
                     List& list) {
  const auto elements = stored.template elements<const void*>();
  if (elements.count() == 0) return;
  std::vector<const void*> members(elements.count());
  elements.copyTo(members);
  list.expectedCommunityCountIs(elements.count());
  try {
    for (const void* const member : members) {
      list.commIs(List::Value::destash(member, storeManager));
    }
  } catch (const Stash::StoreException&) {
    stored.validateVersionAnchor();
    throw;
  }
  stored.validateVersionAnchor();
}

}  // namespace Routing::Bgp

#endif
