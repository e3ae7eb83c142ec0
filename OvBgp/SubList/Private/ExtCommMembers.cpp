#include "OvBgp/SubList/Private/ExtCommMembers.h"

#include "Kiv/Hash.h"

namespace Routing::Bgp {
namespace {

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

// Right after the key, as initialisers of others may intern.
[[gnu::init_priority(102)]] const std::array<U64, 32> placeFactors = factorsDrawn();

}  // namespace Routing::Bgp
