#include "Shared/Collectors/CityRecord.h"

#include <string_view>

namespace {

PropertyList valueOf(const PropertyList::Dictionary& row, std::string_view column) {
  const auto found = row.find(column);
  return found != row.end() ? found->second : PropertyList();
}

std::optional<std::string> textOf(const PropertyList::Dictionary& row, std::string_view column) {
  const PropertyList value = valueOf(row, column);
  return value.string() != nullptr ? std::optional(*value.string()) : std::nullopt;
}

}  // namespace

CityRecord cityRecordFromRow(const PropertyList::Dictionary& row) {
  return {.identifier = valueOf(row, "identifier").integerValue(),
          .city = textOf(row, "city").value_or(""),
          .cityPlain = textOf(row, "city_plain").value_or(""),
          .state = textOf(row, "state").value_or(""),
          .country = textOf(row, "country"),
          .timezone = textOf(row, "timezone").value_or(""),
          .latitude = valueOf(row, "latitude").doubleValue(),
          .longitude = valueOf(row, "longitude").doubleValue()};
}
