// What tables probe with, of contents that somebody chose in order to make them slow.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <set>
#include <vector>

#include "OvBgp/List/CommListContent.h"
#include "OvBgp/Value/ExtCommIp6Content.h"

namespace {

using namespace Routing::Bgp;

// An uppermost bit passes a product of 64 bits unchanged, whatever the factor, and
// comes down where halves are folded, and there the next pair can take it back. Where
// both pairs of each step have a choice, so many steps make 2 to that power lists.
constexpr std::size_t steps = 10;
constexpr U32 choices = 1U << steps;

std::vector<U8> listThatTakesBack(U32 choice) {
  std::vector<U8> octets(16 * steps);
  for (std::size_t i = 0; i < octets.size(); ++i) octets[i] = static_cast<U8>(i);
  const auto flip = [&octets](std::size_t pair, std::size_t octet) {
    octets[8 * pair + octet] ^= 0x80;
  };
  for (std::size_t bit = 0; bit < steps; ++bit) {
    if ((choice >> bit & 1) == 0) continue;
    const std::size_t first = bit / 2 * 4 + bit % 2;
    flip(first, 7);
    flip(first + 2, 7);
    flip(first + 2, 3);
  }
  return octets;
}

TEST(ProbeHash, OfListsThatTakeTheirDifferencesBackDiffers) {
  std::set<std::vector<U8>> lists;
  std::set<U32> hashes;
  for (U32 choice = 0; choice < choices; ++choice) {
    const std::vector<U8> list = listThatTakesBack(choice);
    lists.insert(list);
    hashes.insert(CommListContent(list).probeHash());
  }
  EXPECT_EQ(choices, lists.size());
  EXPECT_GT(hashes.size(), choices - 4);
}

// Each bit of a list counts, and so does its length.
TEST(ProbeHash, OfListsThatDifferInABitOrInLengthDiffers) {
  std::set<U32> hashes;
  U32 lists = 0;
  const auto add = [&](const std::vector<U8>& list) {
    hashes.insert(CommListContent(list).probeHash());
    ++lists;
  };
  for (std::size_t size = 0; size <= 132; size += 4) {
    std::vector<U8> list(size);
    add(list);
    for (std::size_t bit = 0; bit < 8 * size; ++bit) {
      list[bit / 8] ^= static_cast<U8>(1U << bit % 8);
      add(list);
      list[bit / 8] = 0;
    }
  }
  EXPECT_GT(hashes.size() + 4, lists);
}

// Eight octets, and eight more that take back what a known factor makes of them.
TEST(ProbeHash, OfIp6ValuesThatTakeTheirDifferencesBackDiffers) {
  constexpr U32 count = 1000;
  std::set<U32> hashes;
  for (U64 i = 0; i < count; ++i) {
    const U64 product = i * 0x9E3779B97F4A7C15;
    const U64 words[] = {i, product ^ product >> 32};
    std::array<U8, sizeof(ExtCommIp6Content)> octets{};
    std::memcpy(octets.data(), words, sizeof words);
    hashes.insert(std::bit_cast<ExtCommIp6Content>(octets).probeHash());
  }
  EXPECT_GT(hashes.size(), count - 4);
}

}  // namespace
