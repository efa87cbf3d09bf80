#pragma once

#include <optional>
#include <string_view>

#include "Platform/AppKit/Drawing/NSColor.h"

/// A colour as calendars write it: "#RRGGBB", "#RRGGBBAA", or one of the names of CSS Color Module
/// Level 3, section 4.3, in any case of letters. Nothing for anything else.
std::optional<NSColor> calendarColor(std::string_view text);
