// What must be interned, as a random program over all tables knows it from what it
// holds; and the few communities that such programs use.
#ifndef FUZZ_SUPPORT_INTERNING_EXPECTED_H
#define FUZZ_SUPPORT_INTERNING_EXPECTED_H

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "fuzz/support/Lists.h"

namespace Fuzz::Interning {

using namespace Routing::Bgp;
using Fuzz::wireOf;
using Wires = std::vector<Wire>;

template <class Kind>
constexpr bool isExtended = requires {
  typename Kind::Value;
};

// Sub-lists, by classification and members.
using Parts = std::set<std::pair<ExtCommClassification, Wires>>;

struct Expected {
  std::set<Wires> lists[4];
  Parts parts[2];
  std::set<Wire> values[2];
};

// Where a kind is in there: lists by `at`, parts and values by `at - 2`.
template <class Kind>
inline constexpr std::size_t at = 0;
template <>
inline constexpr std::size_t at<Large> = 1;
template <>
inline constexpr std::size_t at<Extended> = 2;
template <>
inline constexpr std::size_t at<Ip6Extended> = 3;

template <class Kind>
Parts partsOf(const typename Kind::List& list) {
  std::map<ExtCommClassification, Wires> parts;
  if constexpr (isExtended<Kind>) {
    for (const auto& member : list.commVector()) {
      parts[member->classification()].push_back(Kind::wire(member));
    }
  }
  return {parts.begin(), parts.end()};
}

// The few communities that there are, so that programs meet themselves.
inline Wire wireOf(const Standard&, U8 number) {
  return wireOf(number < 8 ? 0xFFFFFF00U + number : number, Standard::memberSize);
}
inline Wire wireOf(const Large&, U8 number) {
  return wireOf(number & 1, 4) + wireOf(number >> 1 & 1, 4) + wireOf(number, 4);
}
inline Wire wireOf(const Extended&, U8 number) {
  constexpr U64 bases[] = {0x0002'fde8'0000'0000, 0x0102'0a00'0001'0000, 0x0202'0001'0000'0000,
                           0x0003'fde8'0000'0000, 0x030b'0000'0000'0000, 0x4004'fde8'3f80'0000,
                           0x4300'0000'0000'0000, 0x0600'0000'0000'0000};
  return wireOf(bases[number % 8] + number / 8, Extended::memberSize);
}
inline Wire wireOf(const Ip6Extended&, U8 number) {
  return wireOf(number & 1 ? 0x4002 : 0x0002, 2) + wireOf(0x20010db8'00000000, 8) +
         wireOf(number, 8) + wireOf(number >> 4, 2);
}

}  // namespace Fuzz::Interning

#endif
