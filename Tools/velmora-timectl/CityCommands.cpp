#include <array>

#include "Platform/Foundation/Text/NSString.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/LoadedCities.h"

namespace {

/// The collector puts texts between the apostrophes of an SQL text, where two stand for one.
std::string escaped(std::string_view text) { return stringByReplacingOccurrences(text, "'", "''"); }

Json cityJson(const CityRecord& city) {
  return {{"identifier", city.identifier},
          {"city", city.city},
          {"city_plain", city.cityPlain},
          {"state", city.state},
          {"country", city.country ? Json(*city.country) : Json()},
          {"timezone", city.timezone},
          {"latitude", city.latitude},
          {"longitude", city.longitude}};
}

Json getCity(const Arguments& arguments) {
  arguments.expectRest(std::array<std::string_view, 2>{"get", "ID"});
  const std::string& identifier = arguments.rest()[1];
  const auto city = LoadedCities::collector().cityWithIdentifier(escaped(identifier));
  if (!city) {
    throw CommandFailure("there is no city '" + identifier +
                         "' in the database; 'cities search TEXT' finds identifiers");
  }
  return cityJson(*city);
}

Json searchCities(const Arguments& arguments) {
  arguments.expectRest(std::array<std::string_view, 2>{"search", "TEXT"});
  const std::string& text = arguments.rest()[1];
  if (text.empty()) {
    throw UsageError("cities search: TEXT is empty; give the beginning of a name");
  }
  Json list = Json::array();
  for (const CityRecord& city : LoadedCities::collector().citiesWithMatch(escaped(text)))
    list.push_back(cityJson(city));
  return list;
}

Json citiesCommand(const Arguments& arguments) {
  const std::string action = arguments.rest().empty() ? "" : arguments.rest().front();
  if (action == "get") return getCity(arguments);
  if (action == "search") return searchCities(arguments);
  throw UsageError("cities: write 'get ID' or 'search TEXT'");
}

constexpr Command Commands[] = {
    {"cities",
     "get ID | search TEXT",
     "a city, or those whose name, division or country begins with a text",
     {},
     citiesCommand},
};

}  // namespace

std::span<const Command> cityCommands() { return Commands; }
