// The month: its days, its events and what is said of them.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Calendar/CalendarKeys.h"
#include "Targets/VelmoraTime/Calendar/HiddenCalendars.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

using Texts = std::vector<std::string>;

void useZone(const char* name) {
  setenv("TZ", name, 1);
  NSTimeZone::resetSystemTimeZone();
}

/// "11-21" of wall-clock seconds.
std::string dayText(double wallClockSeconds) {
  return NSDate::dateWithTimeIntervalSince1970(wallClockSeconds).description().substr(5, 5);
}

TEST(MonthDays, AreSixWeeksFromTheUsersFirstWeekday) {
  for (const auto& [day, firstWeekday, first, before, behind] :
       casesIn<NSDate, int, std::string, int, int>("Targets/VelmoraTime/Cases/month-days.txt")) {
    const MonthDays days = daysOfMonth(day.timeIntervalSince1970(), Saturday, firstWeekday);
    EXPECT_EQ(dayText(days.start()), first);
    for (int index = 0; index < MonthDays::Count; ++index) {
      const MonthDay& shown = days.days[static_cast<size_t>(index)];
      const bool isOfMonth = index >= before && index < MonthDays::Count - behind;
      EXPECT_EQ(shown.type, isOfMonth ? DayOfMonthType : DayOfOtherMonthType) << first << index;
      EXPECT_EQ(shown.weekday, (firstWeekday - 1 + index) % 7 + 1);
    }
  }
}

TEST(MonthDays, BothDaysAreTodayAtMidnight) {
  const auto marks = [](double now) {
    std::string text;
    const MonthDays days = daysOfMonth(utc(2026, 11, 1), now, 1);
    for (const MonthDay& day : days.days) {
      if (day.isToday) text += dayText(day.date) + " ";
      if (day.isTomorrow) text += "(" + dayText(day.date) + ") ";
    }
    return text + (days.currentDay == NoDay ? "-" : dayText(days.currentDay));
  };
  EXPECT_EQ(marks(Saturday), "11-21 (11-22) 11-21");
  EXPECT_EQ(marks(utc(2026, 11, 22)), "11-21 11-22 (11-23) 11-22");
  EXPECT_EQ(marks(utc(2026, 12, 12, 23)), "12-12 12-12");
  EXPECT_EQ(marks(utc(2026, 12, 14)), "-");
}

TEST(CalendarKeys, LeadFromDayToDay) {
  const std::map<std::string, uint16_t> keys = {
      {"Right", NSKeyCodeRight}, {"Left", NSKeyCodeLeft},     {"Up", NSKeyCodeUp},
      {"Down", NSKeyCodeDown},   {"PageUp", NSKeyCodePageUp}, {"PageDown", NSKeyCodePageDown},
      {"Home", NSKeyCodeHome},   {"End", NSKeyCodeEnd}};
  for (const auto& [key, modifier, reading, day] :
       casesIn<std::string, std::string, std::string, std::string>(
           "Targets/VelmoraTime/Cases/calendar-keys.txt")) {
    NSEvent event;
    event.keyCode = keys.at(key);
    if (modifier == "Shift") event.modifierFlags = NSEventModifierFlagShift;
    if (modifier == "Control") event.modifierFlags = NSEventModifierFlagControl;
    const auto direction = reading == "left-to-right" ? NSUserInterfaceLayoutDirection::LeftToRight
                                                      : NSUserInterfaceLayoutDirection::RightToLeft;
    const auto next = dayAfterKey(event, utc(2028, 3, 31), utc(2026, 11, 21), direction);
    EXPECT_EQ(next ? NSDate::dateWithTimeIntervalSince1970(*next).description().substr(0, 10) : "-",
              day)
        << modifier << key << " " << reading;
  }
}

class Month : public testing::Test {
 protected:
  Month() {
    useZone("America/New_York");
    ZEVSetObjectForKey("Time_DropdownFormat", PropertyList::Array{"hh", "':'", "mm", "' '", "a"});
    grid->loadControls();
    grid->loadCells();
    grid->updateDate();
  }

  /// An event of this year by New York's clocks, "11-21 10:00".
  static std::shared_ptr<const EKEvent> event(const std::string& title, double start, double end,
                                              bool isAllDay = false,
                                              std::shared_ptr<const EKCalendar> calendar = Red) {
    EKEvent::Values values;
    values.title = title.empty() ? std::nullopt : std::optional(title);
    values.eventIdentifier = title + std::to_string(start);
    const auto instant = [](double wallClockSeconds) {
      const NSDate close = NSDate::dateWithTimeIntervalSince1970(wallClockSeconds + 5 * 3600);
      const int offset = NSTimeZone::systemTimeZone().secondsFromGMTForDate(close);
      return NSDate::dateWithTimeIntervalSince1970(wallClockSeconds - offset);
    };
    values.startDate = instant(start);
    values.endDate = instant(end);
    values.isAllDay = isAllDay;
    values.calendar = std::move(calendar);
    return std::make_shared<const EKEvent>(std::move(values));
  }
  static std::shared_ptr<const EKCalendar> calendar(const char* identifier, const char* color) {
    return std::make_shared<const EKCalendar>(identifier, "", color);
  }

  /// The rows of a day.
  Texts rowsOf(double day) {
    grid->setSelectedDay(day);
    grid->updateUpcomingEvents();
    Texts rows;
    for (const auto& row : grid->upcomingEvents())
      rows.push_back(row->name()->stringValue() + " " + row->time()->stringValue());
    return rows;
  }
  const StatInterfaceCalendarCell& cellOf(double day) {
    return *std::ranges::find(grid->cells(), day, &StatInterfaceCalendarCell::date);
  }
  Texts weeks() {
    Texts texts;
    for (const auto& cell : grid->weekCells())
      texts.push_back(cell.label()->stringValue());
    return texts;
  }
  void press(double day, NSEventModifierFlags modifiers = 0) {
    const NSRect frame = cellOf(day).view()->frame();
    click({frame.origin.x + 5, frame.origin.y + 5}, modifiers);
  }
  void click(NSPoint place, NSEventModifierFlags modifiers = 0) {
    NSEvent event;
    event.locationInWindow = place;
    event.modifierFlags = modifiers;
    const NSCurrentEvent current(event);
    NSView* view = grid->hitTest(place);
    while (!view->tracksMouse())
      view = view->superview();
    view->mouseEntered(event);
    view->mouseDown(event);
    view->mouseUp(event);
  }

  static inline const auto Red = calendar("red", "#FF0000FF");
  SimulatedTime time{utc(2026, 11, 21, 20, 4, 5)};  // 15:04 in New York.
  std::shared_ptr<StatInterfaceCalendar_Time> grid = std::make_shared<StatInterfaceCalendar_Time>();
};

constexpr NSPoint Previous{239, 33};
constexpr NSPoint Next{262, 33};
constexpr NSPoint Title{140, 10};

TEST_F(Month, MovesByMonthsAndYearsAndBackToToday) {
  const auto moved = [this](NSPoint place, NSEventModifierFlags modifiers = 0) {
    click(place, modifiers);
    return grid->title();
  };
  press(utc(2026, 11, 19));
  EXPECT_EQ(moved(Next), "December 2026");
  EXPECT_EQ(moved(Next), "January 2027");
  EXPECT_EQ(grid->currentDay(), NoDay);
  for (const auto& cell : grid->cells())
    EXPECT_FALSE(cell.view()->isSelected());
  EXPECT_EQ(grid->selectedDay(), utc(2026, 11, 19)) << "it comes back with its month";
  EXPECT_EQ(moved(Previous, NSEventModifierFlagShift), "January 2026");
  EXPECT_EQ(moved(Title), "November 2026");
  EXPECT_EQ(grid->selectedDay(), NoDay);
  EXPECT_EQ(moved(Previous), "October 2026");
  EXPECT_EQ(moved(Next), "November 2026");
  // Back at the present month, the grid follows the clock.
  time.clock.setTimeIntervalSince1970(utc(2026, 12, 1, 4, 59));
  grid->updateDate();
  EXPECT_EQ(grid->title(), "November 2026") << "23:59 in New York";
  time.clock.setTimeIntervalSince1970(utc(2026, 12, 1, 5, 1));
  grid->updateDate();
  EXPECT_EQ(grid->title(), "December 2026");
}

TEST_F(Month, DrawsItsMarksOnTodayAndTheSelectedDay) {
  const EnvironmentVariable pictures("VELMORA_SUPPORT_DIR", VELMORA_SOURCE_DIR "/Resources");
  press(utc(2026, 11, 19));
  RecordingGraphicsContext context;
  const NSCurrentGraphicsContext current(context);
  grid->displayRect(grid->bounds());
  std::ostringstream marks;
  for (const auto& record : context.records()) {
    if (record.name.ends_with("-selected") || record.name.ends_with("-today-light"))
      marks << record.name << " " << record.rect.origin.x << " " << record.rect.origin.y << " ";
  }
  EXPECT_EQ(marks.str(), "stats-calendar-selected 160 118 stats-calendar-today-light 240 118 ");
}

// Python's isocalendar; for weeks from Sunday on, the week of January 1 is the first.
TEST_F(Month, NumbersItsWeeksAndLaysThemOut) {
  EXPECT_EQ(weeks(), (Texts{"45", "46", "47", "48", "49", "50"}));
  ZEVSetObjectForKey("Time_WeekNumberFormat", 1);
  grid->setSelectedMonth(utc(2027, 1, 1));
  EXPECT_EQ(weeks(), (Texts{"53", "1", "2", "3", "4", "5"})) << "by each row's Monday";
  ZEVSetObjectForKey("Time_CalendarShowEvents", 0);
  for (const bool withWeeks : {false, true}) {
    grid->setShowWeeks(withWeeks);
    grid->updateCalendar();
    EXPECT_EQ(grid->cells()[9].view()->frame(),
              withWeeks ? NSMakeRect(105, 86, 35, 32) : NSMakeRect(80, 86, 40, 32));
    EXPECT_EQ(grid->headerCells()[7]->frame(),
              withWeeks ? NSMakeRect(245, 40, 35, 16) : NSMakeRect(240, 40, 40, 16));
    EXPECT_EQ(grid->weekCells()[2].view()->frame(), NSMakeRect(0, 118, 35, 32));
    EXPECT_EQ(grid->weekCells()[2].view()->isHidden(), !withWeeks);
    EXPECT_EQ(grid->cells()[9].label()->frame().origin.y, -3);
    StatInterfaceTime_Time dropdown;
    ZEVSetBoolForKey("Time_CalendarShowWeeks", withWeeks);
    dropdown.updateCalendar();
    EXPECT_EQ(dropdown.calendar().weekCells()[2].view()->isHidden(), !withWeeks);
  }
}

TEST_F(Month, TellsWhenAnEventTakesPlace) {
  EventList events;
  for (const auto& [title, start, end, isAllDay] :
       casesIn<std::string, NSDate, NSDate, bool>("Targets/VelmoraTime/Cases/events.txt"))
    events.push_back(
        event(title, start.timeIntervalSince1970(), end.timeIntervalSince1970(), isAllDay));
  grid->processEvents(events);
  for (const auto& [day, expected] :
       casesIn<NSDate, std::string>("Targets/VelmoraTime/Cases/event-rows.txt")) {
    std::string rows;
    for (const std::string& row : rowsOf(day.timeIntervalSince1970()))
      rows += (rows.empty() ? "" : ", ") + row;
    EXPECT_EQ(rows, expected) << day.description();
  }
}

TEST_F(Month, ListsTheDaysEventsThatAreNotOver) {
  const auto at = [](unsigned day, int hour) { return utc(2026, 11, day, hour); };
  const EventList events{event("over", at(21, 13), at(21, 14)),
                         event("now", at(21, 15), at(21, 16)),
                         event("before", at(20, 13), at(20, 14))};
  grid->processEvents(events);
  EXPECT_EQ(rowsOf(NoDay), Texts{"now 03 PM"});
  const auto row = grid->upcomingEvents().front();
  grid->processEvents(events);
  EXPECT_EQ(rowsOf(at(21, 0)), Texts{"now 03 PM"}) << "also where today was clicked";
  EXPECT_EQ(grid->upcomingEvents().front(), row) << "rows are kept";
  EXPECT_EQ(rowsOf(at(20, 0)), Texts{"before 01 PM"});
  EXPECT_EQ(rowsOf(at(22, 0)), Texts{});
  EXPECT_EQ(row->name()->frame(), NSMakeRect(18, 2, 204 - row->time()->frame().size.width, 15));
  EXPECT_EQ(row->time()->frame().origin.x, 237 - 8 - row->time()->frame().size.width);
}

TEST_F(Month, MarksADaysCalendarsAndLeavesHiddenOnesOut) {
  const double day = utc(2026, 11, 20);
  const auto other = [&](const char* identifier, const char* color) {
    return event(identifier, day, day + 60, false, calendar(identifier, color));
  };
  const EventList events{event("a", day, day + 60), event("b", day, day + 60),
                         other("half", "00FF0080"), other("short", "#00FF00"),
                         other("no hexadecimal", "#00FF00GG")};
  grid->processEvents(events);
  const auto& view = *cellOf(day).view();
  EXPECT_EQ(view.eventColors(), (std::vector{NSColor::colorWithDeviceRed(1, 0, 0, 1),
                                             NSColor::colorWithDeviceRed(0, 1, 0, 128 / 255.0)}));
  EXPECT_TRUE(view.drawDot());
  EXPECT_EQ(view.accessibilityLabel(), "Friday, November 20, 2026, 5 events");
  EXPECT_EQ(cellOf(utc(2026, 11, 21)).view()->accessibilityLabel(),
            "Saturday, November 21, 2026, today");

  EXPECT_EQ(hiddenCalendars(), std::nullopt);
  prepareHiddenCalendars();
  EXPECT_EQ(hiddenCalendars(), Texts{});
  CFPreferencesSetAppValue("DisabledCalendars",
                           PropertyList::Dictionary{{"MainWindow", PropertyList::Array{"red"}}},
                           "com.apple.iCal");
  prepareHiddenCalendars();
  grid->processEvents(events);
  EXPECT_EQ(view.eventColors().size(), 1);
  EXPECT_EQ(rowsOf(day).size(), 3);
}

}  // namespace
