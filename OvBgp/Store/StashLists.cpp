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

// The images of a list's values. This object holds a reference to each image, because an image
// that neither the caller nor a list references is removed from the store. Once the list's
// image exists, it holds references of its own, and these here are given up.
class HeldValues {
 public:
  explicit HeldValues(StoreWriter& writer) : writer_(writer) {}
  // Fails only if the store's file was lost or shortened. Then the images are lost, too, so the
  // exception can be ignored.
  ~HeldValues() {
    try {
      for (const ImageId value : values_) writer_.remove(value);
    } catch (const Stash::StoreException&) {
    }
  }
  HeldValues(const HeldValues&) = delete;
  HeldValues& operator=(const HeldValues&) = delete;

  // Puts an image of each value into the store, or finds the one that is there. The room is
  // reserved first, so that push_back cannot throw and lose an image that was just put.
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

// Calls `put` with the elements of `list` in the form that the store takes. For a plain list,
// these are the communities themselves, a span of words. For an extended list, these are the
// ids of its values' images, which HeldValues keeps until `put` has returned.
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

// The templates are instantiated below for the four classes of lists, and only for these.
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
