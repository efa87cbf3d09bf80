#include <algorithm>
#include <array>
#include <string_view>

#include "Platform/Foundation/Time/NSCalendar.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/SunData.h"
#include "Targets/VelmoraTime/LightMapMath.h"
#include "Targets/VelmoraTime/SunlightMapPaths.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): it is never made without its date.
struct Place {
  NSDate date;
  NSTimeZone zone;
  double latitude = 0;
  double longitude = 0;
};

/// The arithmetic holds for every Gregorian date that can be written with four digits.
NSDate astronomicalDate(const Arguments& arguments) {
  constexpr double YearZero = -62'167'219'200;
  constexpr double YearTenThousand = 253'402'300'800;
  const NSDate date = instantFromText(arguments.required("--date"), "--date");
  const double seconds = date.timeIntervalSince1970();
  if (seconds < YearZero || seconds >= YearTenThousand) {
    throw UsageError("--date: the years are 0000 to 9999");
  }
  return date;
}

Place placeArguments(const Arguments& arguments) {
  arguments.expectRest({});
  return {astronomicalDate(arguments), zoneFromText(arguments.required("--zone"), "--zone"),
          numberFromText(arguments.required("--lat"), "--lat", -90, 90),
          numberFromText(arguments.required("--lon"), "--lon", -180, 180)};
}

Json sunCommand(const Arguments& arguments) {
  constexpr std::array<std::string_view, 17> Keys = {"rise-sun",
                                                     "set-sun",
                                                     "rise-civil",
                                                     "set-civil",
                                                     "rise-nautical",
                                                     "set-nautical",
                                                     "rise-astronomical",
                                                     "set-astronomical",
                                                     "noon",
                                                     "azimuth-now",
                                                     "altitude-now",
                                                     "azimuth-rise-sun",
                                                     "azimuth-set-sun",
                                                     "azimuth-noon",
                                                     "altitude-noon",
                                                     "daylength",
                                                     "daylength-yesterday"};
  const Place place = placeArguments(arguments);
  const SunData record =
      calculateSunRiseAndSet(place.date, place.zone, place.longitude, place.latitude);
  Json json = Json::object();
  for (const std::string_view key : Keys)
    json[std::string(key)] = record.find(key)->second;
  return json;
}

Json moonCommand(const Arguments& arguments) {
  const Place place = placeArguments(arguments);
  const MoonData record =
      calculateMoonRiseAndSet(place.date, place.zone, place.longitude, place.latitude);
  return {{"rise", record.find("rise")->second}, {"set", record.find("set")->second}};
}

Json moonInfoCommand(const Arguments& arguments) {
  arguments.expectRest({});
  double altitude = 0;
  double azimuth = 0;
  double distance = 0;
  calculateMoonInfo(astronomicalDate(arguments), altitude, azimuth, distance);
  return {{"altitude", altitude}, {"azimuth", azimuth}, {"distance", distance}};
}

Json phaseCommand(const Arguments& arguments) {
  constexpr auto Names =
      localizedKeys("New Moon", "Waxing Crescent", "First Quarter", "Waxing Gibbous", "Full Moon",
                    "Waning Gibbous", "Last Quarter", "Waning Crescent");
  arguments.expectRest({});
  double age = 0;
  double illumination = 0;
  const int32_t index = currentPhase(age, illumination, astronomicalDate(arguments));
  return {{"phase", index},
          {"name", WENLocalizedString(Names[static_cast<size_t>(index)], "", "time")},
          {"age", age},
          {"illumination", illumination}};
}

Json phasesCommand(const Arguments& arguments) {
  constexpr double MaximumCount = 10'000;
  arguments.expectRest({});
  const auto count = static_cast<int32_t>(
      integerFromText(arguments.required("--count"), "--count", 0, MaximumCount));
  Json list = Json::array();
  for (const MoonPhaseRecord& record : nextPhases(count, astronomicalDate(arguments))) {
    list.push_back({{"phase", record.phase}, {"time", record.time}, {"age", record.age}});
  }
  return list;
}

Json ephemerisCommand(const Arguments& arguments) {
  constexpr double MaximumRepeats = 10'000'000;
  arguments.expectRest({});
  const NSDate date = astronomicalDate(arguments);
  const auto repeats = static_cast<int64_t>(
      integerFromText(arguments.value("--repeat").value_or("1"), "--repeat", 1, MaximumRepeats));
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
  const auto part = [&](NSCalendarUnit unit) {
    return static_cast<double>(calendar.component(unit, date));
  };
  for (int64_t repeat = 0; repeat < repeats; ++repeat) {
    setLightMapTime(part(NSCalendarUnitYear), part(NSCalendarUnitMonth), part(NSCalendarUnitDay),
                    part(NSCalendarUnitHour), part(NSCalendarUnitMinute),
                    part(NSCalendarUnitSecond));
    TimeMeasures();
    Nutation();
    Aries();
    Sun();
    Moon();
  }
  const LightMapEphemeris& almanac = lightMapEphemeris();
  return {{"JD", almanac.JD},
          {"eps", almanac.eps},
          {"delta_psi", almanac.delta_psi},
          {"GHAAtrue", almanac.GHAAtrue},
          {"lambda_", almanac.lambda_},
          {"RAsun", almanac.RAsun},
          {"DECsun", almanac.DECsun},
          {"GHAsun", almanac.GHAsun},
          {"EOT", almanac.EOT},
          {"lambdaMm", almanac.lambdaMm},
          {"betaM", almanac.betaM},
          {"dEM", almanac.dEM},
          {"RAmoon", almanac.RAmoon},
          {"DECmoon", almanac.DECmoon},
          {"GHAmoon", almanac.GHAmoon},
          {"year", almanac.year},
          {"month", almanac.month}};
}

Json nightPathCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const int64_t row = integerFromText(arguments.required("--row"), "--row", -1e9, 1e9);
  const SunlightMapPaths_Time table;
  // The place behind the last row is there for a leap year's sake and holds nothing.
  const auto rows = static_cast<int64_t>(table.paths().size()) - 1;
  if (row < 0 || row >= rows) {
    throw CommandFailure("there is no row " + std::to_string(row) + "; the rows are 0 to " +
                         std::to_string(rows - 1));
  }
  return {{"row", row}, {"path", table.paths()[static_cast<size_t>(row)]}};
}

constexpr OptionSpec DateOption = {"--date", "INSTANT", "the instant, or one in the day wanted",
                                   true};
constexpr OptionSpec PlaceOptions[] = {DateOption,
                                       {"--zone", "ZONE", "the time zone, by its IANA name", true},
                                       {"--lat", "D", "latitude in degrees, north-positive", true},
                                       {"--lon", "D", "longitude in degrees, east-positive", true}};
constexpr OptionSpec DateOptions[] = {DateOption};
constexpr OptionSpec PhasesOptions[] = {DateOption, {"--count", "N", "how many phases", true}};
constexpr OptionSpec EphemerisOptions[] = {DateOption,
                                           {"--repeat", "N", "run the steps N times (1)"}};
constexpr OptionSpec NightPathOptions[] = {{"--row", "N", "the day of the year, from 0", true}};

constexpr Command Commands[] = {
    {"sun", "", "the sun record of a place and day", PlaceOptions, sunCommand},
    {"moon", "", "when the Moon rises and sets at a place on a day", PlaceOptions, moonCommand},
    {"moon-info", "", "altitude, azimuth and distance of the Moon", DateOptions, moonInfoCommand},
    {"phase", "", "the phase of the Moon", DateOptions, phaseCommand},
    {"phases", "", "the next principal phases of the Moon", PhasesOptions, phasesCommand},
    {"ephemeris", "", "the almanac of the light map's icons", EphemerisOptions, ephemerisCommand},
    {"night-path", "", "the night outline of a day", NightPathOptions, nightPathCommand},
};

}  // namespace

std::span<const Command> astronomyCommands() { return Commands; }
