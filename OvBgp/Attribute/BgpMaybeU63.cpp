#include "OvBgp/Attribute/BgpMaybeU63.h"

#include "Kiv/Exception.h"

namespace Routing::Bgp {

// The word is overwritten before the exception, so that nobody who catches it finds a number out of
// bounds.
void BgpMaybeU63::checkValue() {
  if (isUnspecified() || (word() >= min() && word() <= max())) return;
  wordIs(unspecifiedBit);
  throw Kiv::RangeException("value < min or > max not allowed");
}

// An empty range, as each kind has to give bounds of its own.
U64 BgpMaybeU63::min() const { return 1; }
U64 BgpMaybeU63::max() const { return 0; }

U64 BgpMaybeU63::mappedUnspecifiedValue() const { return 0; }

Kiv::String BgpMaybeU63::toStrep() const { return valueToStrep(*this); }

// Reads an unbounded number first. valueIs then checks the bounds of the target's kind, which only
// the target knows; `it` moves last, since either step may throw.
void sequenceToValue(const char*& it, const char* end, BgpMaybeU63* target) {
  const char* at = it;
  Dorn::MaybeU63 read;
  sequenceToValue(at, end, &read);
  target->valueIs(read.word());
  it = at;
}

}  // namespace Routing::Bgp
