#include "OvFmt/DynamicBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

using OvFmt::DynamicBufferInterface;
using OvFmt::StackBackedBuffer;

// Values on both sides of every change of the number of digits or bits, and random values of every
// magnitude.
std::vector<U64> interestingValues() {
  std::vector<U64> values{0, std::numeric_limits<U64>::max()};
  for (U64 power = 1; power <= 10'000'000'000'000'000'000U / 10; power *= 10) {
    for (const U64 factor : {1U, 3U, 10U})
      values.insert(values.end(), {power * factor - 1, power * factor});
  }
  for (unsigned bits = 1; bits < 64; ++bits) {
    values.insert(values.end(), {(U64{1} << bits) - 1, U64{1} << bits});
  }
  std::mt19937_64 random(20);
  for (int i = 0; i < 20000; ++i) values.push_back(random() >> (random() % 64));
  return values;
}

// Returns the text of writeDecimal, and checks that it overwrites nothing behind `Room` octets.
template <std::size_t Room, class Unsigned>
std::string written(Unsigned value) {
  char area[Room + 1];
  area[Room] = '#';
  const std::string text(area, OvFmt::writeDecimal(area, value));
  EXPECT_EQ(area[Room], '#') << value;
  return text;
}

TEST(Decimal, WritesEveryU16) {
  for (U32 value = 0; value <= 0xffff; ++value) {
    ASSERT_EQ(written<OvFmt::decimalRoomU16>(static_cast<U16>(value)), std::to_string(value));
  }
}

TEST(Decimal, WritesWideNumbersOfEveryLength) {
  for (const U64 value : interestingValues()) {
    const U32 low = static_cast<U32>(value);
    ASSERT_EQ(written<OvFmt::decimalRoomU32>(low), std::to_string(low));
    ASSERT_EQ(written<OvFmt::decimalRoomU64>(value), std::to_string(value));
    ASSERT_EQ(OvFmt::decimalDigits(value), std::to_string(value).size());
  }
}

// The same text from buffers of different inline sizes. With a small one, each append must grow the
// buffer, and takes the slow path.
template <std::size_t InlineSize>
std::string appended(U64 value) {
  StackBackedBuffer<InlineSize, 1> buffer;
  buffer.appendDecimal(value);
  buffer.append(':');
  buffer.appendDecimal(static_cast<U32>(value));
  buffer.append(" -> ");
  buffer.appendDecimal(static_cast<U16>(value));
  return buffer.str();
}

TEST(DynamicBuffer, AppendsAlikeWithAndWithoutRoom) {
  for (const U64 value : interestingValues()) {
    const std::string expected = std::to_string(value) + ":" +
                                 std::to_string(static_cast<U32>(value)) + " -> " +
                                 std::to_string(static_cast<U16>(value));
    ASSERT_EQ(appended<1>(value), expected);
    ASSERT_EQ(appended<20>(value), expected);
    ASSERT_EQ(appended<100>(value), expected);
  }
}

TEST(DynamicBuffer, AppendsHexadecimal) {
  const struct {
    U64 value;
    unsigned minDigits;
    const char* text;
  } cases[] = {{0, 1, "0"},       {0, 2, "00"},
               {0xf, 1, "f"},     {0x10, 1, "10"},
               {0x1fd, 2, "1fd"}, {0x0002fde800000064, 16, "0002fde800000064"},
               {0, 0, "0"},       {~U64{0}, 1, "ffffffffffffffff"}};
  for (const auto& c : cases) {
    StackBackedBuffer<2> buffer;
    buffer.appendHex(c.value, c.minDigits);
    EXPECT_EQ(buffer.view(), c.text);
  }
}

// The capacity of a buffer of 100 octets, with `used` octets of text, after `required` more octets
// were reserved.
template <std::size_t Step>
std::size_t capacityAfter(std::size_t used, std::size_t required) {
  StackBackedBuffer<100, Step> buffer;
  buffer.append(std::string(used, 'x'));
  buffer.reserve(required);
  EXPECT_EQ(buffer.str(), std::string(used, 'x'));
  return buffer.capacity();
}

TEST(DynamicBuffer, GrowsByTheFormula) {
  EXPECT_EQ(capacityAfter<1024>(90, 10), 100U);    // fits
  EXPECT_EQ(capacityAfter<1024>(90, 11), 180U);    // twice what is used
  EXPECT_EQ(capacityAfter<1024>(90, 200), 290U);   // what is needed
  EXPECT_EQ(capacityAfter<128>(90, 11), 128U);     // doubling stops at the step
  EXPECT_EQ(capacityAfter<1024>(2000, 1), 2001U);  // beyond the step, only what is needed
  EXPECT_EQ(capacityAfter<1024>(0, 101), 101U);
}

TEST(DynamicBuffer, KeepsItsRoomWhenCleared) {
  StackBackedBuffer<4> buffer;
  buffer.append(std::string(50, 'x'));
  const std::size_t capacity = buffer.capacity();
  buffer.clear();
  EXPECT_TRUE(buffer.empty());
  EXPECT_EQ(buffer.capacity(), capacity);
  const std::string_view withNul("a\0b", 3);
  std::copy(withNul.begin(), withNul.end(), buffer.reserve(3));
  buffer.advance(3);
  buffer.append(std::string_view());
  EXPECT_EQ(buffer.str(), withNul);
}

// Sanitizers abort on huge requests instead of returning null.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

TEST(DynamicBuffer, KeepsItsTextWhenMemoryRunsOut) {
  if (isSanitized) GTEST_SKIP() << "sanitizers stop at such requests";
  if (sizeof(void*) < 8) GTEST_SKIP() << "half the address space can be had";
  StackBackedBuffer<8> buffer;
  buffer.append("text that has moved to the heap");
  EXPECT_THROW(buffer.reserve(std::numeric_limits<std::ptrdiff_t>::max() - 4096), std::bad_alloc);
  buffer.append('!');
  EXPECT_EQ(buffer.view(), "text that has moved to the heap!");
}

// A buffer that cannot grow.
class FixedBuffer final : public DynamicBufferInterface {
 public:
  FixedBuffer() : DynamicBufferInterface(area_, sizeof area_) {}

 private:
  void grow(std::size_t) override {}
  char area_[4];
};

TEST(DynamicBufferDeathTest, AbortsWhenRoomCannotBeProvided) {
  FixedBuffer fixed;
  fixed.append("four");
  EXPECT_DEATH(
      fixed.append('5'),
      "\"endPtr - writePtr >= ptrdiff_t\\( required \\)\" failed in OvStrings/StringBuffer:"
      "[0-9]+, char\\* OvFmt::DynamicBufferInterface::getBuffer\\(size_t\\)");
  StackBackedBuffer<8> buffer;
  buffer.append('x');
  EXPECT_DEATH(buffer.reserve(std::numeric_limits<std::size_t>::max()),
               "ptrdiff_t\\( required \\)");
}

}  // namespace
