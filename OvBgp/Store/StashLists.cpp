#include "OvBgp/Store/StashLists.h"

#include <span>
#include <vector>

#include "OvBgp/List/CommList.h"
#include "OvBgp/List/ExtCommIp6List.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/List/LargeCommList.h"
#include "OvBgp/Store/Destash.h"
#include "Stash/StoreException.h"

namespace Routing::Bgp {
namespace {

using KivStash::ImageId;
using KivStash::StoreWriter;

// Images of values, held until a list holds them.
class HeldValues {
 public:
  explicit HeldValues(StoreWriter& writer) : writer_(writer) {}
  // What a store that has lost its file cannot give up any more is gone anyway.
  ~HeldValues() {
    try {
      for (const ImageId value : values_) writer_.remove(value);
    } catch (const Stash::StoreException&) {
    }
  }
  HeldValues(const HeldValues&) = delete;
  HeldValues& operator=(const HeldValues&) = delete;

  template <class Value>
  void add(const ExtCommVector<Value>& comms) {
    values_.reserve(comms.size());
    for (const auto& comm : comms) {
      values_.push_back(writer_.putValue(KivStash::storedKind<Value>,
                                         static_cast<U32>(comm->classification()),
                                         comm->getContent()));
    }
  }
  std::span<const ImageId> elements() const noexcept { return values_; }

 private:
  StoreWriter& writer_;
  std::vector<ImageId> values_;
};

// Calls `put` with what the store takes for the elements of a list.
template <class List, class Put>
auto withElements(StoreWriter& writer, const List& list, const Put& put) {
  if constexpr (requires { list.commVectorRawPtr(); }) {
    const auto& comms = *list.commVectorRawPtr();
    return put(std::span(comms.data(), comms.size()));
  } else {
    HeldValues values(writer);
    values.add(list.commVector());
    return put(values.elements());
  }
}

}  // namespace

template <class List>
ImageId stashPut(StoreWriter& writer, const List& list) {
  return withElements(writer, list, [&](auto elements) {
    return writer.putList(KivStash::storedKind<List>, list.commVectorSorted(), elements);
  });
}

template <class List>
void stashReplace(StoreWriter& writer, ImageId id, const List& list) {
  withElements(writer, list,
               [&](auto elements) { writer.replaceList(id, list.commVectorSorted(), elements); });
}

template OV_EXPORT ImageId stashPut(StoreWriter&, const CommList&);
template OV_EXPORT ImageId stashPut(StoreWriter&, const LargeCommList&);
template OV_EXPORT ImageId stashPut(StoreWriter&, const ExtCommList&);
template OV_EXPORT ImageId stashPut(StoreWriter&, const ExtCommIp6List&);
template OV_EXPORT void stashReplace(StoreWriter&, ImageId, const CommList&);
template OV_EXPORT void stashReplace(StoreWriter&, ImageId, const LargeCommList&);
template OV_EXPORT void stashReplace(StoreWriter&, ImageId, const ExtCommList&);
template OV_EXPORT void stashReplace(StoreWriter&, ImageId, const ExtCommIp6List&);

}  // namespace Routing::Bgp
