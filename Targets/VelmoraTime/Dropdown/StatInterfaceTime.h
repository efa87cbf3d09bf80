#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSTimer.h"
#include "Targets/Shared/Dropdown/StatInterface.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"
#include "Targets/VelmoraTime/Dropdown/DropdownMoon.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMapLayer.h"

/// The dropdown of the clock: the month with the day's events, the Moon and the world clocks, in
/// one menu. It is brought up to date when it opens and follows the tick until it closes; a closed
/// one stays as it is. Main thread only.
class StatInterfaceTime_Time : public StatInterface_Time, private StatInterfaceCalendarDelegate {
 public:
  /// Has no clocks before `loadClocks`.
  StatInterfaceTime_Time();
  ~StatInterfaceTime_Time() override;

  /// The world clocks in their order.
  const std::vector<std::shared_ptr<StatInterfaceTimeItem>>& items() const { return items_; }
  /// Null if there is none.
  std::shared_ptr<StatInterfaceTimeItem> itemWithIdentifier(int64_t identifier) const;
  DropdownMoon& moon() { return moon_; }
  StatInterfaceCalendar_Time& calendar() { return *calendar_; }

  /// Makes the clocks those of the setting "Time_Cities". A city that the database lacks is left
  /// out; a clock that stays keeps what it has.
  void loadClocks();
  /// Gives the clocks the names of the setting "Time_CityNames"; one without a name there has its
  /// city's. Without the setting names stay as they are.
  void updateCityNames();
  /// Shows the clocks in the layout of the setting "Time_DropdownCityLayout".
  void updateCityMode();
  /// Shows the month as the settings and the present moment have it.
  void updateCalendar();
  /// Puts the rows in that the settings ask for.
  void rebuildMenu();
  void themeChange();

  /// The tick: passed on to the clocks of an open dropdown, and at midnight to its month.
  void updateClocks();
  /// The date in the row of a combined menu.
  void updateDate();
  void updateMoonPhase() { moon_.updateMoonPhase(); }
  /// Brings everything up to date. What goes wrong ends that and is said in the system log.
  void forceUpdate();

  /// End what goes on by itself, for good.
  void stopTimers();
  void removeNotifications();

  void menuWillOpen(NSMenu& opened) override;
  void menuDidClose(NSMenu& closed) override;
  void menuWillHighlightItem(NSMenu& highlighted, NSMenuItem* item) override;

 private:
  void monthChanged() override { calendarItem_->setAccessibilityLabel(calendar_->title()); }
  void updateEvents() override { rebuildMenu(); }
  void cancelTracking() override;
  void loadCalendar();
  void eventsChanged();
  /// Shows the day of a moment as today, if it is another than before.
  void updateDay(const NSDate& now);
  bool addCalendar(MenuItems& rows) const;
  void loadCombinedRow();
  /// Answers with the clocks of the moment when it is asked, and with none once this has gone.
  StatInterfaceLightMapLayer_Time::Places mapPlaces();
  void removeInvalidClocks();
  void sortClocks();
  void addMoon(MenuItems& rows, bool isLarge, bool hasEvents);
  void addClocks(MenuItems& rows, bool isLarge) const;
  std::shared_ptr<NSMenuItem> filler(const std::string& key, int64_t height) const;
  std::shared_ptr<NSMenuItem> spacer(const std::string& key, int64_t height) const;
  void stateChanged(bool isOpen);

  std::unique_ptr<NSTimer> dateTimer_;
  std::shared_ptr<StatInterfaceCalendar_Time> calendar_;
  std::shared_ptr<StatInterfaceView_Time> calendarContainer_;
  std::shared_ptr<ZEVMenuItem_Time> calendarItem_;
  NSObservation eventsObservation_;
  std::vector<std::shared_ptr<StatInterfaceTimeItem>> items_;
  std::shared_ptr<StatInterfaceTextField_Time> combinedDateValue_;
  DropdownMoon moon_;
};
