// Rebuilds objects of every kind from a shared-memory store. Private to the library.
//
// The writer may change an image while it is read. The readers of KivStash/ReaderPtr.h work
// like the read side of a sequence lock. They return only data that was in the image at one
// moment, or throw. Only a list of values needs more care, in appendDestashed.
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

// A reader that throws unless what it read was in the image at one moment and lies within the
// store.
template <class T>
using StoredReader = KivStash::ReaderPtr<T, KivStash::PavoAnchorTranslatorValidator>;

// Traces that an object of class T is going to be rebuilt.
template <class T>
void traceDestashing() {
  KIV_TRACE(ovBgpTrace, ovBgpTraceDestash, "Destashing Routing::Bgp::" << T::kivType().name());
}

// Traces the rebuilt object.
template <class T>
void traceDestashed(const T& object) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceDestash, "  destashed: " << object.toStrep());
}

// Makes an object by `make(reader)` of the image at `stored`, and traces it before and after.
template <class T, class Make>
Kiv::Ptr<T> destashTraced(const void* stored, KivStash::StoreManager* storeManager,
                          const Make& make) {
  traceDestashing<T>();
  const StoredReader<T> reader(stored, storeManager);
  Kiv::Ptr<T> object = make(reader);
  traceDestashed(*object);
  return object;
}

// Rebuilds a plain list. Its elements are copied as one block, straight into the list's array,
// and validated afterwards. A list without elements ends before the second trace line.
template <class ListType, class ElementType>
Kiv::Ptr<ListType> destashCommList(const void* stored, KivStash::StoreManager* storeManager) {
  traceDestashing<ListType>();
  const StoredReader<ListType> reader(stored, storeManager);
  auto list = Dorn::notifyingObject<ListType>();
  list->commVectorSortedIs(reader.sorted());
  const auto elements = reader.template elements<ElementType>();
  if (elements.count() == 0) return list;
  elements.copyTo(list->commVectorRawPtrNonConst()->resizeForOverwrite(elements.count()));
  traceDestashed(*list);
  return list;
}

// The classification with the number `stored`, which may be one without a name. Lists use it as an
// index, so a number from a store must be checked. Throws Stash::ContentException.
inline ExtCommClassification checkedClassification(U32 stored) {
  if (!isClassification(stored)) {
    throw Stash::ContentException("classification " + std::to_string(stored) +
                                  " of a stored community is none");
  }
  return static_cast<ExtCommClassification>(stored);
}

// A new value of class `Value` (ExtComm or ExtCommIp6) with the content of the image, not yet
// in the state `rebuilt`.
template <class Value>
Kiv::Ptr<Value> valueOf(const StoredReader<Value>& stored) {
  const auto content =
      stored.template content<decltype(std::declval<const Value&>().getContent())>();
  return Dorn::notifyingObject<Value>(checkedClassification(stored.classification()), content);
}

// Appends the values of the stored list to `list`, in the stored order.
//
// The list's image contains addresses of the values' images. The writer can reuse the image of
// a value as soon as no list references it, and then a value that is read here may be wrong or
// fail to be read, although nothing is wrong with the store. But the writer must change the
// list's image before that. Therefore the list is validated again after its values were read.
// If it has changed, VersionAnchorException tells the caller to try again. If it has not, an
// exception about a value is a true error of the store.
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
