#include "tools/bgp-communities/output/TimeText.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace CommTool {

// gmtime_r() cannot fail here: 32 bits of seconds end in the year 2106.
std::string timeText(U32 seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  ::gmtime_r(&time, &parts);
  std::array<char, sizeof "0000-00-00T00:00:00Z"> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

// Hours above 23 become days, because data often spans a whole number of days.
std::string durationText(U32 seconds) {
  constexpr U32 hour = 3600;
  constexpr U32 day = 24 * hour;
  std::array<char, 32> clock{};
  std::snprintf(clock.data(), clock.size(), "%02u:%02u:%02u", seconds % day / hour,
                seconds % hour / 60, seconds % 60);
  if (seconds < day) return clock.data();
  return std::to_string(seconds / day) + " d " + clock.data();
}

}  // namespace CommTool
