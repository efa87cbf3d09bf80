// The month for those who do not use a pointer.

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Calendar/CalendarKeys.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"
#include "Targets/VelmoraTime/Classes/TranslatedAmounts.h"

double StatInterfaceCalendar_Time::keyboardDay() const {
  const auto isOnShow = [this](double day) {
    return std::ranges::any_of(
        cells_, [day](const StatInterfaceCalendarCell& cell) { return cell.date() == day; });
  };
  for (const double day : {keyboardDay_, selectedDay_, currentDay_}) {
    if (day != NoDay && isOnShow(day)) return day;
  }
  return firstOfMonth(referenceDate());
}

void StatInterfaceCalendar_Time::updateKeyboardCell() {
  if (cells_.empty()) return;
  const double day = keyboardDay();
  for (const StatInterfaceCalendarCell& cell : cells_)
    cell.view()->setTakesKeyboard(cell.date() == day);
}

bool StatInterfaceCalendar_Time::cellKeyDown(const NSEvent& event) {
  const double today = std::floor(wallClockNow() / SecondsPerDay) * SecondsPerDay;
  const auto day = dayAfterKey(event, keyboardDay(), today, userInterfaceLayoutDirection());
  if (!day) return false;
  keyboardDay_ = *day;
  if (firstOfMonth(*day) != firstOfMonth(referenceDate())) setSelectedMonth(*day);
  updateKeyboardCell();
  const auto cell = std::ranges::find(cells_, *day, &StatInterfaceCalendarCell::date);
  if (cell != cells_.end() && window() != nullptr) window()->makeFirstResponder(*cell->view());
  return true;
}

std::string StatInterfaceCalendar_Time::accessibleNameOfDay(const StatInterfaceCalendarCell& cell) {
  std::string name =
      dayFormatter_.stringFromDate(NSDate::dateWithTimeIntervalSince1970(cell.date()));
  const std::string digits = name;
  if (cell.isToday()) name += ", " + lowercaseString(WENLocalizedString("Today", "", "time"));
  const auto count = static_cast<int64_t>(cell.events().size());
  if (count > 0) {
    name += ", " + translatedAmount(count, localizedKey("%i event"), localizedKey("%i events"),
                                    "time", digits);
  }
  return name;
}
