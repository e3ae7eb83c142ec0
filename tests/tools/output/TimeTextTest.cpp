// The text of times and durations.
#include "tools/bgp-communities/output/TimeText.h"

#include <gtest/gtest.h>

namespace CommTool {
namespace {

TEST(TimeText, TimesAreInUtc) {
  EXPECT_EQ(timeText(0), "1970-01-01T00:00:00Z");
  EXPECT_EQ(timeText(1470931204), "2016-08-11T16:00:04Z");
  EXPECT_EQ(timeText(~U32{0}), "2106-02-07T06:28:15Z");
}

TEST(TimeText, DurationsHaveDaysOnlyIfTheyAreThatLong) {
  EXPECT_EQ(durationText(0), "00:00:00");
  EXPECT_EQ(durationText(900), "00:15:00");
  EXPECT_EQ(durationText(86399), "23:59:59");
  EXPECT_EQ(durationText(86400), "1 d 00:00:00");
  EXPECT_EQ(durationText(2 * 86400 + 3 * 3600 + 1), "2 d 03:00:01");
  EXPECT_EQ(durationText(~U32{0}), "49710 d 06:28:15");
}

}  // namespace
}  // namespace CommTool
