#include "Targets/VelmoraTime/Calendar/CalendarKeys.h"

#include "Targets/VelmoraTime/Calendar/MonthDays.h"

std::optional<double> dayAfterKey(const NSEvent& event, double day, double today,
                                  NSUserInterfaceLayoutDirection direction) {
  constexpr NSEventModifierFlags OtherModifiers =
      NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
  if ((event.modifierFlags & OtherModifiers) != 0) return std::nullopt;
  const double right =
      direction == NSUserInterfaceLayoutDirection::RightToLeft ? -SecondsPerDay : SecondsPerDay;
  const int64_t months = (event.modifierFlags & NSEventModifierFlagShift) != 0 ? 12 : 1;
  switch (event.keyCode) {
    case NSKeyCodeLeft:
      return day - right;
    case NSKeyCodeRight:
      return day + right;
    case NSKeyCodeUp:
      return day - MonthDays::Columns * SecondsPerDay;
    case NSKeyCodeDown:
      return day + MonthDays::Columns * SecondsPerDay;
    case NSKeyCodePageUp:
      return monthsLater(day, -months);
    case NSKeyCodePageDown:
      return monthsLater(day, months);
    case NSKeyCodeHome:
      return today;
    default:
      return std::nullopt;
  }
}
