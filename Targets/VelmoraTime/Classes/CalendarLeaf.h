#pragma once

#include <cstdint>
#include <string_view>

#include "Platform/Foundation/NSGeometry.h"
#include "Platform/Foundation/Time/NSDate.h"

/// The number on the calendar leaf: the day of the month in the current calendar.
int64_t calendarLeafDay(const NSDate& date);

/// Paints the leaf with its lower left corner at a point: the paper, the coloured head that the
/// type ("___ICON__RED___", …) asks for, and the day's number. On a dark background only the
/// transparent type changes.
void drawCalendarLeaf(NSPoint point, std::string_view type, int64_t day, bool white);
