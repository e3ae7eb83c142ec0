// The report that a host gets between a failed assertion and the abort.
#include "Kiv/Assert.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace Kiv {
namespace {

void report(const AssertFailure& failure) {
  std::fprintf(stderr, "told %s, %s, %s\n", failure.condition, failure.source, failure.function);
  KIV_ASSERT_IN(false, "the handler's own", "There", "report()");
}

TEST(AssertDeathTest, TellsTheHandlerOnce) {
  EXPECT_EQ(nullptr, setAssertHandler(report));
  EXPECT_DEATH(KIV_ASSERT_IN(1 + 1 == 3, "sums", "Here/There", "f(int)"),
               "^assertion \"sums\" failed in Here/There:[0-9]+, f\\(int\\)\n"
               "told sums, Here/There, f\\(int\\)\n"
               "assertion \"the handler's own\" failed in There:[0-9]+, report\\(\\)\n$");
  EXPECT_EQ(report, setAssertHandler(nullptr));
}

}  // namespace
}  // namespace Kiv
