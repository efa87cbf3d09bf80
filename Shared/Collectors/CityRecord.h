#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// A city of the world.
struct CityRecord {
  int64_t identifier = 0;
  std::string city;       ///< The name as it is shown, with its accents.
  std::string cityPlain;  ///< The name in plain letters, to be searched for.
  std::string state;      ///< The division of the country; may be empty.
  std::optional<std::string> country;
  std::string timezone;  ///< By its name in the zone database.
  double latitude = 0;   ///< Degrees, positive north.
  double longitude = 0;  ///< Degrees, positive east.

  friend bool operator==(const CityRecord&, const CityRecord&) = default;
};

/// From a row of the table "cities", by column. A column that is missing leaves its field as it is.
CityRecord cityRecordFromRow(const PropertyList::Dictionary& row);
