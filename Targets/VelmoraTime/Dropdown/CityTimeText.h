#pragma once

#include <optional>
#include <string>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

/// What a world clock's texts are made with. The formatter's pattern is changed, its zone becomes
/// the city's.
struct CityClock {
  NSDateFormatter& formatter;
  NSTimeZone zone;
  std::optional<NSLocale> locale;              ///< Else the current one.
  std::optional<NSLocale> abbreviationLocale;  ///< Of "zzz" alone; else the same.
};

/// The text of a format list at a moment. An element that is one lone apostrophe raises
/// `std::out_of_range`.
std::string cityTimeText(const ClockElements& elements, const CityClock& clock, const NSDate& date);

/// "Today", "Tomorrow" or "Yesterday" for the day there, seen from the system's zone; translated.
std::string relativeDayText(const CityClock& clock, const NSDate& date);
