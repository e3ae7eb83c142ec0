// The text of times.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_TIME_TEXT_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_TIME_TEXT_H

#include <string>

#include "Kiv/Types.h"

namespace CommTool {

// Returns a time in seconds since 1970 as ISO 8601 in UTC: 2016-08-11T16:00:04Z.
std::string timeText(U32 seconds);

// Returns a duration in seconds as hours, minutes and seconds with the days before them, if there
// are any: 00:15:00 or 2 d 03:00:01.
std::string durationText(U32 seconds);

}  // namespace CommTool

#endif
