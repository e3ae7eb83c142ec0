#include "Routing/RouteMap/PosixRegex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
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

TEST(PosixRegex, SaysWhatIsWrongWithAnExpression) {
  for (const char* expression : {"(", "a)(", "[a", "a{2,1}", "*)", "[[:nonsense:]]", "a\\"}) {
    try {
      const PosixRegex regex(expression);
      // If this fails, the C library has begun to accept the expression as an extension.
      ADD_FAILURE() << expression << " compiled";
    } catch (const Kiv::RangeException& error) {
      const std::string what = error.what();
      const std::string frame = "bad regular expression \"" + std::string(expression) + "\": ";
      EXPECT_EQ(what.substr(0, frame.size()), frame);
      EXPECT_GT(what.size(), frame.size());
    }
  }
}

TEST(PosixRegex, SaysWhatIsWrongBehindANul) {
  try {
    const PosixRegex regex(std::string("1:1\0:2", 6));
    ADD_FAILURE() << "compiled";
  } catch (const Kiv::RangeException& error) {
    EXPECT_STREQ("bad regular expression \"1:1\": NUL character", error.what());
  }
}

std::string repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(PosixRegex, RefusesWhatWouldExhaustTheMachine) {
  const std::string refused[] = {
      std::string("1:1\0", 4),
      std::string(4097, 'a'),
      repeated("(", 2000) + "a" + repeated(")", 2000),
      "((a{255}){255}){255}",
      "(((((a{30}){30}){30}){30}){30}){30}",
      repeated("(", 40) + "a" + repeated(")+", 40),
      "([]x{1}]{250}){250}{250}",
      "((){30000}){30000}",
      "a{99999999999999999999}",
      "1*" + repeated("+", 11) + "00",
      "a{0,10000}",
      "((a*|b*|c*){13})*",
      "((b*)(a?)*((a?){1,2}|a+|b*){1,9})*((a?a?)+)+",
      "(a(b*|c*)*)(((d*|e*)*|f*){9})*",
      "(" + repeated("a*|", 400) + "b)*",
      "(((((\\b)+)?)*|a)+|aa+|(a?)+|(a?|b*a)?)*",
      "(){1,1500}",
      "(\\b){1,60}",
      "((^|a){1,30}){1,30}",
      "\\b(){0,200}",
      "(\\<|a)(b?){1,250}",
      repeated("\\b", 60),
      repeated("(\\b|^|$|)", 40),
      "((\\b)*^\\B(^|a|))*",
      "(^|$|\\b|\\B)*",
  };
  for (const std::string& expression : refused) {
    EXPECT_THROW(PosixRegex{expression}, Kiv::RangeException) << expression;
  }
  // Expressions like those that people write are accepted.
  EXPECT_EQ(PosixRegex(repeated("(", 90) + "a" + repeated(")", 90)).execute("a"), 0);
  EXPECT_EQ(PosixRegex("^([0-9]{1,5}:[0-9]{1,5} ?){1,32}$").execute("1:1 2:2 65535:65535"), 0);
  EXPECT_EQ(PosixRegex("^([0-9]{1,5}:[0-9]{1,5} ?){1,100}$").execute("1:1 2:2"), 0);
  EXPECT_EQ(PosixRegex(repeated("65000:1|", 511) + "1:1").execute("1:1"), 0);
  EXPECT_EQ(PosixRegex("^[0-9]{1,255}$").execute("65000"), 0);
  EXPECT_EQ(PosixRegex("a{1,1900}").execute("a"), 0);
  EXPECT_EQ(PosixRegex("(6500[0-9]:){1,250}").execute("65001:"), 0);
  EXPECT_EQ(PosixRegex("([0-9]* ?){1,100}$").execute("65001 "), 0);
  EXPECT_EQ(PosixRegex("^(65000:[0-9]* ?){1,100}$").execute("65000:1 65000:2"), 0);
  EXPECT_EQ(PosixRegex("((^| )65000:[0-9]+( |$)){1,90}").execute("65000:1"), 0);
  EXPECT_EQ(PosixRegex("\\b((65000:1)?\\b ?){1,10}").execute("65000:1"), 0);
  EXPECT_EQ(PosixRegex(repeated("^65000:1$|", 400) + "1:1").execute("1:1"), 0);
  EXPECT_EQ(PosixRegex("(^|,|$|\\b)*65000").execute("65000"), 0);
  EXPECT_EQ(PosixRegex("^(65000:(1|2|3) ?)+$").execute("65000:1 65000:3"), 0);
  EXPECT_EQ(PosixRegex("^(( )?(65000:[0-9]+)?( |$))*$").execute("65000:1 65000:22"), 0);
  EXPECT_EQ(PosixRegex("((^| )?(65000:1)?)*$").execute("65000:1 65000:1"), 0);
  EXPECT_EQ(PosixRegex("(.*)*1:1(.*)*2:2(.*)*").execute("1:1 2:2"), 0);
  EXPECT_EQ(PosixRegex("^(" + repeated("65000:1|", 200) + "1:1| )+$").execute("1:1 65000:1"), 0);
  EXPECT_EQ(PosixRegex(repeated("( 65000:1)?(a?)?", 8)).execute(" 65000:1"), 0);
}

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
