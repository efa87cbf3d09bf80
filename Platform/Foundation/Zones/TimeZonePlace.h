#pragma once

#include <optional>
#include <string_view>

/// Degrees, north- and east-positive.
struct TimeZonePlace {
  double latitude;
  double longitude;
};

/// Where the principal city of a zone lies, by the table "zone.tab" beside the system's zone files.
/// An old name of a zone, by "tzdata.zi" there, counts as the present one. Nothing for zones
/// without a place, such as "UTC".
std::optional<TimeZonePlace> placeOfTimeZone(std::string_view name);
