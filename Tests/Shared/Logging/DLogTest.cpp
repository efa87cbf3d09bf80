// The debugging print, whose year is that of the week.

#include <gtest/gtest.h>

#include "Shared/External/Logging/DLog.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

TEST(DLog, PrintsTheDateWithTheYearOfTheWeekAndTheText) {
  for (const auto& [moment, date] :
       casesIn<NSDate, std::string>("Shared/Logging/Cases/debugging-dates.txt")) {
    const SimulatedTime time(moment.timeIntervalSince1970());
    for (const auto& print : {&DLog, &FMDBLog}) {
      testing::internal::CaptureStdout();
      print("%d %s", 7, "cities");
      EXPECT_EQ(testing::internal::GetCapturedStdout(), date + ": 7 cities\n");
    }
  }
}

}  // namespace
