#include "Kiv/Hash.h"

#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>

namespace Kiv {
namespace {

HashKey keyOf(U64 first, U64 second) noexcept {
  return {spreadBits(first), spreadBits(second + 0x9E3779B97F4A7C15) | 1};
}

// Without random numbers of the system, for want of the call or of permission: when and
// as what the process started, and where its stack lies. Who is on the same machine may
// find that out; who sends routes from elsewhere hardly can.
HashKey keyOfCircumstances() noexcept {
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  const auto stack = reinterpret_cast<std::uintptr_t>(&now);
  return keyOf(static_cast<U64>(now), U64{stack} << 20 ^ static_cast<U64>(getpid()));
}

HashKey keyDrawn() noexcept {
  if (const char* const fixed = std::getenv("KIV_HASH_KEY")) {
    const U64 number = std::strtoull(fixed, nullptr, 0);
    return keyOf(number, number);
  }
  U64 random[2];
  if (getentropy(random, sizeof random) != 0) return keyOfCircumstances();
  return keyOf(random[0], random[1]);
}

}  // namespace

// The first of all initialisers, as others may intern.
[[gnu::init_priority(101)]] const HashKey hashKey = keyDrawn();

}  // namespace Kiv
