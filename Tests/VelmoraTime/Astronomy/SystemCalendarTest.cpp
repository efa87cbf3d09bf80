#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

#include <cstdio>

#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

class SystemCalendar : public AstronomyTest {};

TEST_F(SystemCalendar, DatesFromFields) {
  for (const auto& [zone, date, hour, minute, moment] :
       casesOf<std::string, std::string, int, int, NSDate>("calendar fields")) {
    SCOPED_TRACE(zone + " " + date);
    setSystemZone(zone);
    int32_t year = 0, month = 0, day = 0;
    ASSERT_EQ(std::sscanf(date.c_str(), "%d-%d-%d", &year, &month, &day), 3);
    EXPECT_EQ(dateFromSystemCalendar({year, month, day, hour, minute, 0}), moment);
  }
}

TEST_F(SystemCalendar, FieldsOfDates) {
  setSystemZone("Asia/Kathmandu");
  const CalendarFields fields =
      systemCalendarFields(utc("2024-02-29 18:14:59").dateByAddingTimeInterval(0.75));
  EXPECT_EQ(fields.day, 29);
  EXPECT_EQ(fields.hour * 3600 + fields.minute * 60 + fields.second, 86399);
  // Before 1970, and on the other side of the calendar's reform: 1582 October 4 is Julian.
  setSystemZone("UTC");
  EXPECT_EQ(systemCalendarFields(NSDate::dateWithTimeIntervalSince1970(-0.5)).year, 1969);
  const CalendarFields julian =
      systemCalendarFields(NSDate::dateWithTimeIntervalSince1970((2299159.5 - 2440587.5) * 86400));
  EXPECT_EQ(julian.day, 4);
  EXPECT_EQ(julian.month, 10);
}

// The zone's offset is that of the moment already shifted by the system's: five hours after New
// York's jump of 2024 March 10, seen from Kiritimati (14 hours ahead), it is the winter's.
TEST_F(SystemCalendar, CorrectedDate) {
  const NSDate date = utc("2024-03-10 12:00");
  EXPECT_EQ(correctedDate(date, zoneNamed("America/New_York")), utc("2024-03-10 08:00"));
  setSystemZone("Pacific/Kiritimati");
  EXPECT_EQ(correctedDate(date, zoneNamed("America/New_York")), utc("2024-03-09 17:00"));
}

}  // namespace
