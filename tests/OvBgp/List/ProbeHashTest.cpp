// The hashes that tables probe with, for contents that an attacker chose in order to make many
// hashes equal and so the tables slow.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <random>
#include <set>
#include <vector>

#include "Dorn/DedupBuckets.h"
#include "Dorn/Detail/DedupTableShell.h"
#include "OvBgp/List/CommListContent.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6Content.h"

namespace {

using namespace Routing::Bgp;

// An attack on a hash that multiplies modulo 2^64. There, a difference in the uppermost bit
// remains exactly that difference, whatever the factor is. Folding moves it to a known bit,
// where the next pair of words can cancel it. Each step of the hash offers one such choice,
// so `steps` choices give 2^steps lists with one hash. A folded multiply of 128 bits, which
// the library uses, does not let the difference pass.
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

// Lists that differ in one bit, and lists of zeros that differ in length, have different hashes.
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

// The same attack on a hash with a known factor: the second eight octets cancel the product of
// the first eight.
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

// How many of `count` members find no slot in their home bucket, if their hashes are those that
// `hashOf(i)` gives and each bucket gets six members on average.
template <class HashOf>
U32 overflowing(U32 count, const HashOf& hashOf) {
  std::vector<U32> members(count / 6);
  U32 without = 0;
  for (U32 i = 0; i < count; ++i) {
    const U32 mixed = Dorn::DedupTableShell::mixed32(hashOf(i));
    if (++members[static_cast<std::size_t>(U64{mixed} * members.size() >> 32)] >
        Dorn::DedupBucket::slots)
      ++without;
  }
  return without;
}

// Values that are received one after the other get addresses in arithmetic progression. Lists of
// every so-many-th of them must not crowd into fewer buckets than lists of random hashes do.
TEST(ProbeHash, OfListsOfOneMemberSpreadsWhateverTheStride) {
  constexpr U32 count = 6000;
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  std::vector<ExtComm::PtrConst> held;
  for (U64 i = 0; i < U64{8} * count; ++i) {
    held.push_back(ExtComm::dedupContent(values.ptr(), ExtCommContent(U64{0x030B} << 48 | i)));
  }
  std::mt19937 random(1);
  const U32 usual = overflowing(count, [&](U32) { return static_cast<U32>(random()); });
  for (U32 stride = 1; stride <= 8; ++stride) {
    const U32 without = overflowing(count, [&](U32 i) {
      const auto list = extCommListFactory();
      list->commIs(held[std::size_t{i} * stride]);
      return list->probeHash();
    });
    EXPECT_LT(without, usual * 3 / 2) << stride;
  }
}

}  // namespace
