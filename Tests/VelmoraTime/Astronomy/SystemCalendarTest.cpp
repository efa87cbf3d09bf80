#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

class SystemCalendar : public AstronomyTest {};

// By hand from the zones' rules: New York's clocks jump from 2:00 to 3:00 on 2024 March 10, 7:00
// UTC, and back on November 3, 6:00 UTC; Samoa had no 2011 December 30.
TEST_F(SystemCalendar, DatesFromFields) {
  struct {
    const char* zone;
    CalendarFields fields;
    const char* utc;
  } const cases[] = {
      {"America/New_York", {2024, 3, 10, 2, 30, 0}, "2024-03-10 07:30"},
      {"America/New_York", {2024, 11, 3, 1, 30, 0}, "2024-11-03 05:30"},
      {"America/New_York", {2024, 11, 3, 2, 0, 0}, "2024-11-03 07:00"},
      {"Asia/Kathmandu", {2024, 2, 29, 24, 0, 0}, "2024-02-29 18:15"},
      {"Pacific/Apia", {2011, 12, 31, 0, 0, 0}, "2011-12-30 10:00"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.zone) + " " + c.utc);
    setSystemZone(c.zone);
    EXPECT_EQ(dateFromSystemCalendar(c.fields).timeIntervalSince1970(), secondsAt(c.utc));
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
