#pragma once

#include <optional>
#include <string_view>

#include "Platform/AppKit/Drawing/NSBezierPath.h"

/// Where the night of a row of the table (SunlightMapPaths.h) stands on a map.
struct NightPlacement {
  double width = 0;   ///< Of the map, in points.
  double offset = 0;  ///< Of the night's left end, in points: from minus the width to 0.
};

/// The offset at a time of day (UTC), in whole points: the night goes once around in a day.
double nightOffset(double width, int64_t hour, int64_t minute, int64_t second);

/// The night twice, side by side, in points with y downwards from the map's upper left corner: it
/// covers the map wherever it has slid to. Nothing for a row of fewer than three numbers.
std::optional<NSBezierPath> nightOutline(std::string_view row, NightPlacement placement);
