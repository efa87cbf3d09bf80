#pragma once

#include <optional>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/EventKit/EKCalendar.h"

/// A calendar's colour; where it has none, the one that its text of eight hexadecimal digits, red
/// to alpha, spells. Nothing for any other text.
std::optional<NSColor> colorOfCalendar(const EKCalendar& calendar);
