#include "OvBgp/SubList/Private/ExtCommMembers.h"

#include "Kiv/Hash.h"

namespace Routing::Bgp {
namespace {

// A sequence of random odd numbers (SplitMix64), seeded with the hash key of the process. Odd,
// because multiplying by an even number would lose bits of the address.
std::array<U64, 32> factorsDrawn() {
  std::array<U64, 32> factors{};
  U64 state = Kiv::hashKey.mask;
  for (U64& factor : factors) {
    state += Kiv::hashKey.factor;
    factor = Kiv::spreadBits(state) | 1;
  }
  return factors;
}

}  // namespace

// Initialised directly after the hash key and before all ordinary initialisers, because these may
// already intern lists.
[[gnu::init_priority(102)]] const std::array<U64, 32> placeFactors = factorsDrawn();

}  // namespace Routing::Bgp
