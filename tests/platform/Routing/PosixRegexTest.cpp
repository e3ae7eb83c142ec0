#include "Routing/RouteMap/PosixRegex.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "Kiv/Exception.h"

namespace {

using Routing::RouteMap::PosixRegex;

static_assert(!std::is_copy_constructible_v<PosixRegex> &&
              std::is_nothrow_move_constructible_v<PosixRegex> &&
              std::is_nothrow_move_assignable_v<PosixRegex>);

TEST(PosixRegex, MatchesExtendedExpressions) {
  const struct {
    const char* expression;
    const char* text;
    bool isMatch;
  } cases[] = {
      {"1:2", "1:1 1:2 1:3", true},
      {"^1:2", "1:1 1:2 1:3", false},
      {"^1:1 2:2$", "1:1 2:2", true},
      {"^$", "", true},
      {"^$", "1:1", false},
      {"", "anything", true},
      {"(no-export|65535:65281)$", "1:1 no-export", true},
      {"6500[0-9]:(1|2){2}$", "65004:21", true},
      {"a+b?c*", "aac", true},
      {"[[:digit:]]+:[]x]", "1:]", true},
      {"\\.", "a", false},
      {"[({*+]{3}", "({+", true},
  };
  for (const auto& c : cases) {
    const PosixRegex regex(c.expression);
    EXPECT_EQ(regex.execute(c.text) == 0, c.isMatch) << c.expression << " on " << c.text;
  }
}

std::string repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

// The reason for which an expression is refused; empty if it compiles.
std::string refusalOf(const std::string& expression) {
  try {
    const PosixRegex regex(expression);
    return "";
  } catch (const Kiv::RangeException& error) {
    const std::string shown =
        expression.substr(0, std::min<std::size_t>(expression.find('\0'), 256));
    const std::string frame = "bad regular expression \"" + shown + "\": ";
    const std::string what = error.what();
    EXPECT_EQ(what.substr(0, frame.size()), frame);
    return what.substr(frame.size());
  }
}

// If one of these compiles, the C library has begun to accept it as an extension.
TEST(PosixRegex, RefusesMalformedExpressions) {
  for (const char* expression : {"(", "a)(", "[a", "a{2,1}", "*)", "[[:nonsense:]]", "a\\"}) {
    EXPECT_NE(refusalOf(expression), "") << expression;
  }
}

// Most would take seconds, gigabytes or the whole stack to compile.
TEST(PosixRegex, RefusesWhatCostsTooMuch) {
  const struct {
    std::string expression;
    const char* reason = "too complex";
  } rows[] = {
      {std::string("1:1\0:2", 6), "NUL character"},
      {std::string(65'537, 'a'), "too long"},
      {"(a)\\1", "back-reference"},
      {"(a|[\\]b)\\9", "back-reference"},
      {repeated("(", 2000) + "a" + repeated(")", 2000)},
      {"a" + repeated("?", 500)},
      // copies
      {"((a{255}){255}){255}"},
      {"(((a{255}){255}){255}){0}"},
      {"(((((a{30}){30}){30}){30}){30}){30}"},
      {repeated("(", 40) + "a" + repeated(")+", 40)},
      {"([]x{1}]{250}){250}{250}"},
      {"((){30000}){30000}"},
      {"1*" + repeated("+", 40) + "00"},
      // closures
      {"a{0,10000}"},
      {"(){1,3000}"},
      {"(a?){1,1000}"},
      {repeated("1:1|", 4000) + "1:1"},
      // loops
      {"((a*|b*|c*){13})*"},
      {"((b*)(a?)*((a?){1,2}|a+|b*){1,9})*((a?a?)+)+"},
      {"(" + repeated("a*|", 400) + "b)*"},
      // borders
      {"(\\b){1,60}"},
      {"((^|a){1,30}){1,30}"},
      {"(\\<|\\>|\\b|\\B)(b?){1,250}"},
      {repeated("\\b", 60)},
      {repeated("(\\b|^|$|)", 40)},
      {"(^|$|\\b|\\B)*"},
  };
  for (const auto& row : rows) EXPECT_EQ(refusalOf(row.expression), row.reason) << row.expression;
  EXPECT_NE(refusalOf("a{99999999999999999999}"), "");
}

TEST(PosixRegex, AcceptsWhatIsCheap) {
  const struct {
    std::string expression;
    const char* text;
  } rows[] = {
      {repeated("(", 90) + "a" + repeated(")", 90), "a"},
      {"^([0-9]{1,5}:[0-9]{1,5} ?){1,100}$", "1:1 2:2 65535:65535"},
      {"^([0-9]+:[0-9]+ ?){1,255}$", "1:1 2:2"},
      {"^([0-9]+:[0-9]+:[0-9]+ ?){0,64}$", "1:1:1 2:2:2"},
      {repeated("65000:99999999999999|", 250) + "1:1", "1:1"},
      {repeated("65000:1|", 1000) + "1:1", "1:1"},
      {repeated("^65000:1$|", 400) + "1:1", "1:1"},
      {"a{1,1900}", "a"},
      {"^[0-9]{20000}$|1", "1"},
      {"(6500[0-9]:){1,1000}", "65001:"},
      {"([0-9]* ?){1,400}$", "65001 "},
      {"((^| )65000:[0-9]+( |$)){1,320}", "65000:1"},
      {"(\\b[0-9]+:[0-9]+\\b ?){1,100}", "65000:1"},
      {"\\b((65000:1)?\\b ?){1,10}", "65000:1"},
      {"(^|,|$|\\b)*65000", "65000"},
      {"^(( )?(65000:[0-9]+)?( |$))*$", "65000:1 65000:22"},
      {"((^| )?(65000:1)?)*$", "65000:1 65000:1"},
      {"(.*)*1:1(.*)*2:2(.*)*", "1:1 2:2"},
      {"^(" + repeated("65000:1|", 200) + "1:1| )+$", "1:1 65000:1"},
      {repeated("( 65000:1)?(a?)?", 8), " 65000:1"},
      {"(1{0})(2{0}|3{0}|)*1[\\1]:\\.", "1\\:."},
  };
  for (const auto& row : rows) {
    ASSERT_EQ(refusalOf(row.expression), "") << row.expression;
    EXPECT_EQ(PosixRegex(row.expression).execute(row.text), 0) << row.expression;
  }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// Each octet of the text leads to a new state, and the C library keeps all of them.
const char* const growing = "^(0|1)*1[01]{40}x";
std::string randomBits(std::size_t length) {
  std::mt19937 random(1);
  std::string text;
  while (text.size() < length) text += random() % 2 == 0 ? '0' : '1';
  return text;
}

// The octets of address space that this process has.
rlim_t addressSpace() {
  rlim_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

// Ends with status 0 if lack of memory is an exception, and the expression is usable after it.
[[noreturn]] void matchWithoutMemory() {
  const PosixRegex regex(growing);
  const std::string text = randomBits(100'000);  // more than earlier tests have freed

  rlimit none{};
  ::getrlimit(RLIMIT_AS, &none);
  const rlimit little{.rlim_cur = addressSpace() + (8 << 20), .rlim_max = none.rlim_max};
  ::setrlimit(RLIMIT_AS, &little);
  bool isThrown = false;
  try {
    (void)regex.execute(text.c_str());
  } catch (const std::bad_alloc&) {
    isThrown = true;
  }
  ::setrlimit(RLIMIT_AS, &none);
  const std::string match = "1" + std::string(40, '0') + "x";
  std::_Exit(isThrown && regex.execute(match.c_str()) == 0 && regex.execute("0") != 0 ? 0 : 1);
}

TEST(PosixRegex, ThrowsIfAMatchRunsOutOfMemory) {
  EXPECT_EXIT(matchWithoutMemory(), testing::ExitedWithCode(0), "");
}

#endif

TEST(PosixRegex, Moves) {
  PosixRegex first("^a$");
  PosixRegex second(std::move(first));
  EXPECT_EQ(second.execute("a"), 0);
  EXPECT_EQ(second.expression(), "^a$");
  second = PosixRegex("^b$");
  EXPECT_NE(second.execute("a"), 0);
  EXPECT_EQ(second.execute("b"), 0);
}

TEST(PosixRegex, ExecutesInSeveralThreadsAtOnce) {
  const PosixRegex regex("(^| )65000:[0-9]+( |$)");
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&regex, &wrong, t] {
      for (int i = 0; i < 2000; ++i) {
        const std::string text =
            "1:1 " + std::to_string(65000 + (i + t) % 2) + ":" + std::to_string(i);
        if ((regex.execute(text.c_str()) == 0) != ((i + t) % 2 == 0)) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
