// The debugging print, whose year is that of the week.

#include <gtest/gtest.h>

#include "Shared/External/Logging/DLog.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

// By hand, from the calendars of these years: weeks begin on Sunday and belong to the new year as
// soon as they have a day of it, as is the custom in the United States. 2025-01-01 is a Wednesday,
// 2028-01-01 a Saturday, 2023-01-01 a Sunday.
TEST(DLog, PrintsTheDateWithTheYearOfTheWeekAndTheText) {
  struct Case {
    double time;
    const char* line;
  };
  for (const Case& entry : {
           Case{utc(2026, 11, 21, 15, 4, 5.25), "2026-11-21 15:04:05.250: 7 cities\n"},
           Case{utc(2024, 12, 28, 23, 59, 59), "2024-12-28 23:59:59.000: 7 cities\n"},
           Case{utc(2024, 12, 29), "2025-12-29 00:00:00.000: 7 cities\n"},
           Case{utc(2027, 12, 26), "2028-12-26 00:00:00.000: 7 cities\n"},
           Case{utc(2022, 12, 31), "2022-12-31 00:00:00.000: 7 cities\n"},
       }) {
    const SimulatedTime time(entry.time);
    for (const auto& print : {&DLog, &FMDBLog}) {
      testing::internal::CaptureStdout();
      print("%d %s", 7, "cities");
      EXPECT_EQ(testing::internal::GetCapturedStdout(), entry.line);
    }
  }
}

}  // namespace
