#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"

#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

std::string ordinalSuffixFromDay(int64_t day) {
  switch (day) {
    case 1:
    case 21:
    case 31:
      return "st";
    case 2:
    case 22:
      return "nd";
    case 3:
    case 23:
      return "rd";
    default:
      return "th";
  }
}

std::string ordinalSuffix(const NSDate& date) {
  const NSCalendar& calendar = ZEVDateAndTimeUtilities::sharedUtilities().currentCalendar();
  return ordinalSuffixFromDay(calendar.component(NSCalendarUnitDay, date));
}
