// Helpers for tests of `destash`: images with contents that stashPut would not write.
#ifndef TESTS_OVBGP_STORE_DESTASHKIT_H
#define TESTS_OVBGP_STORE_DESTASHKIT_H

#include <span>
#include <utility>
#include <vector>

#include "Kiv/Type.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/Store/Destash.h"
#include "OvBgp/Store/StashLists.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "tests/platform/KivStash/StoreImages.h"

namespace Routing::Bgp {

using KivStash::ImageId;
using KivStash::StoreManager;
using KivStash::StoreWriter;
using StoreTest::TestName;

// The octets of all objects that the framework's allocator counts.
inline U64 bytesAllocated() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

// Puts an image of a plain list, in the given order.
template <class List, class Element>
ImageId putPlain(StoreWriter& writer, bool sorted, const std::vector<Element>& comms) {
  return writer.putList(KivStash::storedKind<List>, sorted, std::span<const Element>(comms));
}

// Puts an image of an extended list with these contents. The values have the given
// classifications in turn, whether these are right or not.
template <class List>
ImageId putValues(
    StoreWriter& writer, bool sorted, const std::vector<U32>& classifications,
    const std::vector<decltype(std::declval<const typename List::Value&>().getContent())>&
        contents) {
  std::vector<ImageId> values;
  for (std::size_t i = 0; i < contents.size(); ++i) {
    values.push_back(writer.putValue(KivStash::storedKind<typename List::Value>,
                                     classifications[i % classifications.size()], contents[i]));
  }
  const ImageId list =
      writer.putList(KivStash::storedKind<List>, sorted, std::span<const ImageId>(values));
  for (const ImageId value : values) writer.remove(value);
  return list;
}

}  // namespace Routing::Bgp

#endif
