#include "Kiv/Hash.h"

#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>

namespace Kiv {
namespace {

// Makes a key of two numbers, which may have their information in few bits. The constant keeps mask
// and factor different if the two numbers are equal.
HashKey keyOf(U64 first, U64 second) noexcept {
  return {spreadBits(first), spreadBits(second + 0x9E3779B97F4A7C15) | 1};
}

// Fallback if getentropy() is unavailable or forbidden: mixes the start time, the process id and a
// stack address. A local user can guess this key; a remote sender of routes hardly can.
HashKey keyOfCircumstances() noexcept {
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  const auto stack = reinterpret_cast<std::uintptr_t>(&now);
  return keyOf(static_cast<U64>(now), U64{stack} << 20 ^ static_cast<U64>(getpid()));
}

// The environment takes precedence, because a fixed key is for tests and for repeating a run.
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

// Priority 101 is the earliest that a program may use. Constructors of other static objects may
// intern values, so the key must exist before them.
[[gnu::init_priority(101)]] const HashKey hashKey = keyDrawn();

}  // namespace Kiv
