#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Platform/EventKit/EKEvent.h"
#include "Targets/Shared/Dropdown/RowMarks.h"
#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"
#include "Targets/VelmoraTime/Calendar/EventDays.h"

/// A row of a day's list: a dot in the calendar's colour, an event's title and when it takes place.
class StatInterfaceEventItem_Time {
 public:
  StatInterfaceEventItem_Time();

  /// Whether the row is still wanted, for a list that is brought up to date.
  bool exists() const { return exists_; }
  void setExists(bool exists) { exists_ = exists; }
  /// The event's identifier.
  const std::string& uuid() const { return uuid_; }
  void setUuid(std::string_view uuid) { uuid_ = uuid; }
  /// The day whose list this is.
  void setDay(const WallClockSpan& day) { day_ = day; }

  /// Has a click on the row open the calendar application.
  void setOpensCalendar(bool opens);
  /// Shows an event as the day sees it.
  void updateWithEvent(const EKEvent& event, EventTimes& times);

  const std::shared_ptr<StatInterfaceView_Time>& view() const { return view_; }
  const std::shared_ptr<StatInterfaceTextFieldLabel_Time>& name() const { return name_; }
  const std::shared_ptr<StatInterfaceTextFieldLabel_Time>& time() const { return time_; }
  const std::shared_ptr<DotView_Time>& dot() const { return dot_; }
  const std::shared_ptr<ZEVMenuItem_Time>& menuitem() const { return menuitem_; }

 private:
  void layOutTexts();

  bool exists_ = false;
  std::shared_ptr<StatInterfaceView_Time> view_;
  std::shared_ptr<StatInterfaceTextFieldLabel_Time> name_;
  std::shared_ptr<StatInterfaceTextFieldLabel_Time> time_;
  std::shared_ptr<ZEVMenuItem_Time> menuitem_;
  std::string uuid_;
  WallClockSpan day_;
  std::shared_ptr<DotView_Time> dot_;
};
