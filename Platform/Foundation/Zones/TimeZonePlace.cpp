#include "Platform/Foundation/Zones/TimeZonePlace.h"

#include <cmath>
#include <fstream>
#include <string>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

namespace {

/// Degrees of an ISO 6709 angle: a sign, degrees of two or three digits, minutes, maybe seconds.
std::optional<double> angle(std::string_view text) {
  const size_t digits = text.size() - 1;
  const size_t degreeDigits = digits % 2 == 0 ? 2 : 3;
  if (digits < 4 || digits > 7 || text.find_first_not_of("0123456789", 1) != std::string_view::npos)
    return {};
  const auto part = [&](size_t start, size_t count) {
    return start > digits ? 0 : doubleValue(text.substr(start, count));
  };
  const double size =
      part(1, degreeDigits) + part(1 + degreeDigits, 2) / 60 + part(3 + degreeDigits, 2) / 3600;
  return text.front() == '-' ? -size : size;
}

std::optional<TimeZonePlace> placeOfCoordinates(std::string_view text) {
  const size_t split = text.find_first_of("+-", 1);
  if (split == std::string_view::npos) return {};
  const auto latitude = angle(text.substr(0, split));
  const auto longitude = angle(text.substr(split));
  if (!latitude || !longitude) return {};
  return TimeZonePlace{*latitude, *longitude};
}

/// By the table "zone.tab": its columns are the country, the coordinates, the zone and a comment.
std::optional<TimeZonePlace> listedPlace(std::string_view name) {
  std::ifstream table(timeZoneFolder() / "zone.tab");
  for (std::string line; std::getline(table, line);) {
    if (line.empty() || line.front() == '#') continue;
    const auto columns = componentsSeparatedByString(line, "\t");
    if (columns.size() >= 3 && columns[2] == name) return placeOfCoordinates(columns[1]);
  }
  return {};
}

/// By the links of the compact source "tzdata.zi": a line for each, with "L", the present name and
/// the old one. ICU's canonical names would not do: they are the old ones of many zones.
std::string presentName(std::string_view name) {
  std::ifstream source(timeZoneFolder() / "tzdata.zi");
  for (std::string line; std::getline(source, line);) {
    if (!line.starts_with("L ")) continue;
    const auto columns = componentsSeparatedByString(line, " ");
    if (columns.size() == 3 && columns[2] == name) return columns[1];
  }
  return {};
}

}  // namespace

std::optional<TimeZonePlace> placeOfTimeZone(std::string_view name) {
  const auto place = listedPlace(name);
  return place ? place : listedPlace(presentName(name));
}
