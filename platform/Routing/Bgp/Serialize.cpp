#include "Routing/Bgp/Serialize.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "Kiv/Assert.h"

namespace Routing::Bgp {

Serialize::~Serialize() {
  if (begin_ != inPlace_) delete[] begin_;
}

// The new storage is allocated first, so that the content is unchanged if that throws.
void Serialize::growBuffer(U32 needed) {
  if (needed <= capacity()) return;
  U8* const storage = new U8[needed];
  const U32 written = size();
  std::memcpy(storage, begin_, written);
  if (begin_ != inPlace_) delete[] begin_;
  begin_ = storage;
  at_ = storage + written;
  end_ = storage + needed;
}

// At least doubles the capacity, so that appending takes amortised constant time. The limit keeps
// positions and sizes within a U32, as in the interface.
void Serialize::growFor(std::size_t count) {
  constexpr U32 sizeMax = std::numeric_limits<U32>::max();
  if (count > sizeMax - size()) throw std::length_error("more than 4294967295 octets serialized");
  const U32 doubled = static_cast<U32>(std::min<U64>(U64{2} * capacity(), sizeMax));
  growBuffer(std::max(doubled, size() + static_cast<U32>(count)));
}

Kiv::String Serialize::serializedString(U32 start) const {
  KIV_ASSERT(start <= size(), "start <= size()", "Routing/Bgp/Serialize");
  return Kiv::String(begin_ + start, at_);
}

// Checked in every build, because the next octets would be written behind the storage.
void Serialize::writePositionIs(U32 position) {
  KIV_ASSERT(position <= capacity(), "position <= capacity()", "Routing/Bgp/Serialize");
  at_ = begin_ + position;
}

}  // namespace Routing::Bgp
