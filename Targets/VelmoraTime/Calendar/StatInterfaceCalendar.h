#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/VelmoraTime/Calendar/CalendarControls.h"
#include "Targets/VelmoraTime/Calendar/MonthDays.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendarCell.h"

/// What a month wants of the dropdown that it is in.
class StatInterfaceCalendarDelegate {
 public:
  virtual ~StatInterfaceCalendarDelegate() = default;

  /// Another month may be on show.
  virtual void monthChanged() = 0;
  /// The list of the chosen day's events is another.
  virtual void updateEvents() = 0;
  /// Something outside is about to open: close what is open here.
  virtual void cancelTracking() = 0;
};

/// The month in the dropdown: its name and buttons, the weekdays, and six weeks of days with their
/// events; if wanted, the weeks' numbers. Days are wall-clock seconds (MonthDays.h). After its
/// making `loadControls`, then `loadCells`. Main thread only.
class StatInterfaceCalendar_Time : public StatInterfaceFlippedView_Time {
 public:
  static constexpr NSRect Frame = {{0, 0}, {280, 247}};

  StatInterfaceCalendar_Time();

  void loadControls();
  void loadCells();

  /// Not kept; who is the delegate sets null before it goes.
  void setDelegate(StatInterfaceCalendarDelegate* delegate) { delegate_ = delegate; }
  void setShowWeeks(bool showWeeks);
  /// On which day weeks begin, 1 for Sunday; nothing follows the user's customs.
  void setFirstWeekday(std::optional<int> weekday) { firstWeekday_ = weekday; }

  /// The day of the month at the last refresh, as the dropdown has noted.
  int64_t lastDay() const { return lastDay_; }
  void setLastDay(int64_t day) { lastDay_ = day; }

  /// Fills the cells for the month on show and the present moment.
  void updateCalendar();
  void updateMonth();
  void updateHeaders();
  void updateDate();
  void updateColors() override;

  /// Moves on or back; back at the present month, the grid follows the clock again.
  void selectMonth(bool forward);
  void selectYear(bool forward);
  /// Shows the month of a day; nothing for the present one.
  void setSelectedMonth(std::optional<double> day);
  /// Chooses a day; `NoDay` is today, whatever day that is.
  void setSelectedDay(double day);
  bool isTodaySelected() const;
  /// Shows and chooses today.
  void selectToday();
  void openCalendar();

  // Events. They are fetched on the collector's queue and appear when they come.

  /// Looks whether the hidden calendars are others.
  void prepareToDisplay();
  /// Whether there is a calendar application, which the button and the rows open.
  void setOpensCalendar(bool opens);
  /// Has events fetched again the next time.
  void setNeedToUpdateEvents() { needToUpdateEvents_ = true; }
  void updateEventsIfNeeded();
  /// For those who have switched events off; gives the memory back to the system.
  void forgetEvents();
  /// Gives each day its events.
  void processEvents(const EventList& events);
  /// Makes the rows of the chosen day: today's are those that are not over.
  void updateUpcomingEvents();
  const std::vector<std::shared_ptr<StatInterfaceEventItem_Time>>& upcomingEvents() const {
    return upcomingEvents_;
  }
  /// The items of these rows.
  std::vector<std::shared_ptr<NSMenuItem>> upcomingEventsItems() const;
  /// Waits for the events of the days on show; for a program that draws one picture.
  void fetchNow();

  // What is on show.

  const std::vector<StatInterfaceCalendarCell>& cells() const { return cells_; }
  const std::vector<StatInterfaceCalendarCell>& weekCells() const { return weekCells_; }
  const std::vector<std::shared_ptr<StatInterfaceTextField_Time>>& headerCells() const {
    return headerCells_;
  }
  std::string title() const { return monthName_->stringValue(); }
  double currentDay() const { return currentDay_; }
  double selectedDay() const { return selectedDay_; }
  double monthStartTime() const { return monthStartTime_; }
  double monthEndTime() const { return monthEndTime_; }

  void drawRect(NSRect rect) override;
  bool tracksMouse() const override { return true; }
  bool acceptsFirstMouse() const override { return true; }
  void mouseDown(const NSEvent& event) override;

 private:
  std::shared_ptr<CalendarButton_Time> addButton(NSRect frame,
                                                 const CalendarButton_Time::Pictures& pictures,
                                                 const std::string& name,
                                                 void (StatInterfaceCalendar_Time::*action)());
  void addCell(StatInterfaceCalendarCell& cell);
  void layOut();
  int firstWeekday() const;
  double referenceDate() const;
  void moveMonths(int64_t months);
  void previousMonth();
  void nextMonth();
  void updateWeeks();
  void chooseDay(double day);

  // StatInterfaceCalendarKeyboard.cpp.
  double keyboardDay() const;
  void updateKeyboardCell();
  bool cellKeyDown(const NSEvent& event);
  std::string accessibleNameOfDay(const StatInterfaceCalendarCell& cell);

  // StatInterfaceCalendarEvents.cpp.
  void updateEvents();
  void eventsFetched(EventsOfDays sorted);
  void showEvents(EventsOfDays sorted);
  StatInterfaceCalendarCell* chosenCell();

  double currentDay_ = NoDay;
  double selectedDay_ = NoDay;
  bool showWeeks_ = false;
  bool needToUpdateEvents_ = false;
  bool opensCalendar_ = false;
  int64_t lastDay_ = 0;
  std::vector<std::shared_ptr<StatInterfaceEventItem_Time>> upcomingEvents_;
  StatInterfaceCalendarDelegate* delegate_ = nullptr;
  double selectedMonth_ = NoDay;
  std::shared_ptr<StatInterfaceTextField_Time> monthName_;
  std::shared_ptr<CalendarButton_Time> calendarButton_;
  std::vector<StatInterfaceCalendarCell> cells_;
  std::vector<StatInterfaceCalendarCell> weekCells_;
  /// The title of the week numbers, then the weekdays.
  std::vector<std::shared_ptr<StatInterfaceTextField_Time>> headerCells_;
  std::optional<std::vector<std::string>> hiddenCalendars_;
  double monthStartTime_ = 0;
  double monthEndTime_ = 0;

  std::optional<int> firstWeekday_;
  /// Where the keyboard was last; the chosen day or today where that is not on show.
  double keyboardDay_ = NoDay;
  NSDateFormatter monthFormatter_;
  NSDateFormatter dayFormatter_;
  /// Of fetches, to leave those out that a later one has overtaken.
  const std::shared_ptr<std::atomic<uint64_t>> requests_ =
      std::make_shared<std::atomic<uint64_t>>(0);
};
