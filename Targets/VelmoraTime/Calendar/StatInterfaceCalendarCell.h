#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendarCellView.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceEventItem.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"

/// A day of the month's grid, or a number of a week: what it stands for, its view, its events and
/// the rows that were made for these. The month fills all of it anew and again.
class StatInterfaceCalendarCell {
 public:
  StatInterfaceCalendarCell();

  /// Wall-clock seconds (MonthDays.h).
  double date() const { return date_; }
  double endDate() const;
  /// 1 is Sunday.
  int64_t weekday() const { return weekday_; }
  /// A `MonthDayType`.
  int64_t type() const { return type_; }
  bool isToday() const { return today_; }
  bool isTomorrow() const { return tomorrow_; }
  void setDay(double date, int64_t weekday, int64_t type);
  void setType(int64_t type) { type_ = type; }
  void setToday(bool today) { today_ = today; }
  void setTomorrow(bool tomorrow) { tomorrow_ = tomorrow; }

  const EventList& events() const { return events_; }
  void setEvents(EventList events) { events_ = std::move(events); }
  EventList takeEvents() { return std::exchange(events_, {}); }
  /// Shows the events' calendars in the view, each colour once.
  void updateEvents();

  const std::shared_ptr<StatInterfaceCalendarCellView_Time>& view() const { return view_; }
  const std::shared_ptr<CalendarCellLabel_Time>& label() const { return label_; }

  // Rows of the day's list, kept by their events' identifiers as long as they are used: between
  // these two calls, every row that is wanted is marked by `setExists`.
  void invalidateUpcomingEventItems();
  void removeUpcomingEventItems();
  /// The row of an event; a new one if there is none.
  std::shared_ptr<StatInterfaceEventItem_Time> upcomingEventItemWithUUID(std::string_view uuid);

  std::string description() const;

 private:
  bool today_ = false;
  bool tomorrow_ = false;
  int64_t type_ = 0;
  int64_t weekday_ = 0;
  EventList events_;
  std::vector<std::shared_ptr<StatInterfaceEventItem_Time>> upcomingEventItems_;
  double date_ = 0;
  std::shared_ptr<StatInterfaceCalendarCellView_Time> view_;
  std::shared_ptr<CalendarCellLabel_Time> label_;
};
