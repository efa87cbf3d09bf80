#include "Targets/VelmoraTime/Map/LightMapDescription.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"
#include "Targets/VelmoraTime/Classes/SunMath.h"

namespace {

/// A stretch of a belt of the Earth, from the one before it eastward.
struct Stretch {
  double end;  ///< Its eastern longitude.
  std::string_view name;
};

constexpr std::string_view Pacific = localizedKey("the Pacific Ocean");
constexpr std::string_view CentralAmerica = localizedKey("Central America");
constexpr std::string_view Caribbean = localizedKey("the Caribbean");
constexpr std::string_view SouthAmerica = localizedKey("South America");
constexpr std::string_view Atlantic = localizedKey("the Atlantic Ocean");
constexpr std::string_view Africa = localizedKey("Africa");
constexpr std::string_view Arabia = localizedKey("Arabia");
constexpr std::string_view IndianOcean = localizedKey("the Indian Ocean");
constexpr std::string_view India = localizedKey("India");
constexpr std::string_view SoutheastAsia = localizedKey("Southeast Asia");
constexpr std::string_view Australia = localizedKey("Australia");

// Belts between the tropics, cut at the shores that a map shows along their middle.
constexpr Stretch North[] = {
    {-105, Pacific}, {-88, CentralAmerica}, {-60, Caribbean}, {-17, Atlantic},      {40, Africa},
    {56, Arabia},    {73, IndianOcean},     {92, India},      {108, SoutheastAsia}, {180, Pacific}};
constexpr Stretch NorthOfEquator[] = {{-84, Pacific}, {-58, SouthAmerica}, {-13, Atlantic},
                                      {49, Africa},   {98, IndianOcean},   {126, SoutheastAsia},
                                      {180, Pacific}};
constexpr Stretch Equator[] = {{-81, Pacific}, {-40, SouthAmerica}, {10, Atlantic},
                               {41, Africa},   {97, IndianOcean},   {150, SoutheastAsia},
                               {180, Pacific}};
constexpr Stretch South[] = {{-73, Pacific},     {-39, SouthAmerica}, {13, Atlantic}, {50, Africa},
                             {116, IndianOcean}, {150, Australia},    {180, Pacific}};

std::span<const Stretch> beltAt(double latitude) {
  if (latitude >= 12) return North;
  if (latitude >= 3) return NorthOfEquator;
  return latitude >= -12 ? std::span<const Stretch>(Equator) : South;
}

std::string_view regionAt(EarthPlace place) {
  const auto belt = beltAt(place.latitude);
  const auto found = std::ranges::lower_bound(belt, place.longitude, {}, &Stretch::end);
  return found != belt.end() ? found->name : Pacific;
}

}  // namespace

EarthPlace subSolarPlace(const NSDate& date) {
  constexpr double MjdOf1970 = 40587;
  constexpr double MjdOfJ2000 = 51544.5;
  constexpr double DaysPerCentury = 36525;
  const double modifiedJulianDate = MjdOf1970 + date.timeIntervalSince1970() / 86400;
  EarthPlace place;
  double rightAscension = 0;
  sunPosition(place.latitude, rightAscension, (modifiedJulianDate - MjdOfJ2000) / DaysPerCentury);
  const double hours = rightAscension - lmst(modifiedJulianDate, 0);
  place.longitude = std::remainder(hours * 15, 360);
  return place;
}

std::string lightMapDescription(const NSDate& date, std::string_view city, bool isDay) {
  const std::string_view region = regionAt(subSolarPlace(date));
  const std::string_view key =
      isDay ? localizedKey("Day and night map: the Sun is over %@, day in %@")
            : localizedKey("Day and night map: the Sun is over %@, night in %@");
  return filledIn(WENLocalizedString(key, "", "time"), "%@",
                  {WENLocalizedString(region, "", "time"), city});
}
