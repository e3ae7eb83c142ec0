#include "Kiv/Hash.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

namespace {

using Kiv::foldedProduct;

constexpr U64 all = ~U64{0};

TEST(Hash, FoldedProductHasBothHalves) {
  const struct {
    U64 a, b, product;
  } rows[] = {
      {0, all, 0},
      {1, all, all},
      {U64{1} << 63, 2, 1},
      {U64{1} << 32, U64{1} << 32, 1},
      {all, all, (all - 1) ^ 1},
      {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE00000001},
      {0x123456789ABCDEF0, 0x0FEDCBA987654321, 0x2236D88FE5618CF0 ^ 0x0121FA00AD77D742},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.product, foldedProduct(row.a, row.b)) << std::hex << row.a;
    EXPECT_EQ(row.product, foldedProduct(row.b, row.a)) << std::hex << row.a;
  }
}

// An attack: the values are constructed, with the inverse of a known factor, so that a plain
// multiplication gives all of them the same upper half. The keyed hash must still spread them.
TEST(Hash, ValuesThatWereChosenToCollideDoNot) {
  constexpr U64 inverse = 0x96DE1B173F119089;
  static_assert(inverse * 0xBF58476D1CE4E5B9 == 1);
  constexpr U32 count = 20'000;
  for (const U32 seed : {0U, 1U, 0x80000000U}) {
    std::set<U32> homes;
    for (U32 i = 0; i < count; ++i) {
      const U64 folded = (U64{0x12345678} << 32 | i) * inverse;
      const U64 value = folded ^ folded >> 32;
      homes.insert(Kiv::hashSingleAttr(seed, value) & 0xFFFFFF);
    }
    EXPECT_GT(homes.size(), count - 100) << seed;  // about 12 collide by chance
  }
}

// Regular inputs that weak hashes map to few values: neighbours, multiples of powers of two, and
// single bits.
TEST(Hash, RegularValuesAreSpread) {
  std::set<U32> hashes;
  std::set<U64> values;
  for (U32 shift = 0; shift < 64; ++shift) {
    for (U64 i = 0; i < 512; ++i) {
      values.insert(i << shift);
      hashes.insert(Kiv::hashSingleAttr(0, i << shift));
    }
  }
  EXPECT_GT(hashes.size() + 20, values.size());
  EXPECT_NE(Kiv::hashSingleAttr(0, 5), Kiv::hashSingleAttr(1, 5));
}

// If this variable is in the environment, the test program prints the hash of a number and exits at
// once. A test runs its own program that way to see the hash of another process.
constexpr const char* hashIsAskedFor = "HASH_TEST_IS_ASKED_FOR";
[[maybe_unused]] const bool isAskedFor = [] {
  if (!std::getenv(hashIsAskedFor)) return false;
  std::printf("%x", Kiv::hashSingleAttr(0, 42));
  std::fflush(stdout);
  ::_exit(0);
}();

// Returns the hash that a new process prints. `environment` has arguments for env(1), such as
// "NAME=VALUE" or "-u NAME".
std::string hashElsewhere(const std::string& environment) {
  const std::string self = std::filesystem::read_symlink("/proc/self/exe");
  const std::string command = "env " + environment + ' ' + hashIsAskedFor + "=1 '" + self + "'";
  std::FILE* const out = ::popen(command.c_str(), "r");
  if (!out) return "";
  char said[16] = "";
  said[std::fread(said, 1, sizeof said - 1, out)] = '\0';
  ::pclose(out);
  return said;
}

TEST(Hash, OfEachProcessIsItsOwnUnlessFixed) {
  const std::string drawn = hashElsewhere("-u KIV_HASH_KEY");
  EXPECT_NE("", drawn);
  EXPECT_NE(drawn, hashElsewhere("-u KIV_HASH_KEY"));

  const std::string fixed = hashElsewhere("KIV_HASH_KEY=7");
  EXPECT_NE("", fixed);
  EXPECT_EQ(fixed, hashElsewhere("KIV_HASH_KEY=7"));
  EXPECT_NE(fixed, hashElsewhere("KIV_HASH_KEY=8"));
}

}  // namespace
