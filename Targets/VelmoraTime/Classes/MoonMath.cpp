#include "Targets/VelmoraTime/Classes/MoonMath.h"

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"
#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"
#include "Targets/VelmoraTime/Classes/SunMath.h"
#include "Targets/VelmoraTime/LunarSeries.h"

namespace {

constexpr double k = AzimuthDegree;

/// The sine of 8 minutes of arc, by the degree of the altitudes.
constexpr double MoonThreshold = 0.00232710356629117;

/// Brings sidereal hours to 0 up to 24.
double sameHour(double hours) {
  const double rest = std::fmod(hours, 24);
  return rest < 0 ? rest + 24 : rest;
}

double symmetricTurn(double degrees) {
  const double angle = turn(degrees);
  return angle > 180 ? angle - 360 : angle;
}

}  // namespace

void moonPosition(double& declination, double& rightAscension, double t) {
  constexpr double P = ShortTurn;
  constexpr double Arc = 206264.8062;
  const double meanLongitude = fraction(0.606433 + 1336.855225 * t);
  const double l = P * fraction(0.374897 + 1325.55241 * t);
  const double ls = P * fraction(0.993133 + 99.997361 * t);
  const double d = P * fraction(0.827361 + 1236.853086 * t);
  const double f = P * fraction(0.259086 + 1342.227825 * t);

  const double longitudeTerms =
      22640 * std::sin(l) - 4586 * std::sin(l - 2 * d) + 2370 * std::sin(2 * d) +
      769 * std::sin(2 * l) - 668 * std::sin(ls) - 412 * std::sin(2 * f) -
      212 * std::sin(2 * l - 2 * d) - 206 * std::sin(l + ls - 2 * d) + 192 * std::sin(l + 2 * d) -
      165 * std::sin(ls - 2 * d) - 125 * std::sin(d) - 110 * std::sin(l + ls) +
      148 * std::sin(l - ls) - 55 * std::sin(2 * f - 2 * d);
  const double s = f + (longitudeTerms + 412 * std::sin(2 * f) + 541 * std::sin(ls)) / Arc;
  const double h = f - 2 * d;
  const double n = -526 * std::sin(h) + 44 * std::sin(l + h) - 31 * std::sin(h - l) -
                   23 * std::sin(ls + h) + 11 * std::sin(h - ls) - 25 * std::sin(f - 2 * l) +
                   21 * std::sin(f - l);
  const double longitude = P * fraction(meanLongitude + longitudeTerms / 1296000);
  const double latitude = (18520 * std::sin(s) + n) / Arc;

  const double x = std::cos(latitude) * std::cos(longitude);
  const double v = std::cos(latitude) * std::sin(longitude);
  const double w = std::sin(latitude);
  const double y = 0.91748 * v - 0.39778 * w;
  const double z = 0.39778 * v + 0.91748 * w;
  const double rho = std::sqrt(1 - z * z);
  declination = DegreesInShortRadian * std::atan(z / rho);
  rightAscension = TwoHoursInShortRadian * std::atan(y / (x + rho));
  if (rightAscension < 0) rightAscension += 24;
}

double moonSinAlt(double modifiedJulianDate, double hour, double minute, double longitude,
                  double cosLatitude, double sinLatitude) {
  const double moment = modifiedJulianDate + hour / 24 + minute / 24 / 60;
  double declination = 0, rightAscension = 0;
  moonPosition(declination, rightAscension, (moment - ModifiedJulianDateOfJ2000) / DaysInCentury);
  const double hourAngle = (lmst(moment, longitude) - rightAscension) * 15;
  return sineOfAltitude(declination, hourAngle, cosLatitude, sinLatitude);
}

void moonRiseSet(int32_t& rise, int32_t& set, float modifiedJulianDate, double zoneHours,
                 double longitude, double latitude) {
  const double sinLatitude = std::sin(latitude * AltitudeDegree);
  const double cosLatitude = std::cos(latitude * AltitudeDegree);
  const double midnight = modifiedJulianDate - zoneHours / 24;
  const RiseSetSearch search = searchRiseAndSet([&](double hour) {
    return moonSinAlt(midnight, hour, 0, longitude, cosLatitude, sinLatitude) - MoonThreshold;
  });
  if (!search.crosses()) {
    rise = search.startsAbove ? RiseSetAlwaysUp : RiseSetAlwaysDown;
    set = RiseSetAlwaysDown;
    return;
  }
  rise = search.rises ? secondsOfEvent(search.riseHour, zoneHours) : RiseSetNoRise;
  set = search.sets ? secondsOfEvent(search.setHour, zoneHours) : RiseSetNoSet;
}

void fetchMoonSkyData(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                      int32_t zoneMinutes, double& azimuth, double& altitude, double& distance,
                      double longitude, double latitude) {
  const double midnight = ucttoj(year, month - 1, day, 0, 0, 0);
  const double hours = (static_cast<double>(minute) + zoneMinutes) / 60 + hour;
  const double julianDate = midnight + hours / 24;
  const double t = (julianDate - JulianDateOfJ2000) / DaysInCentury;
  const double t2 = t * t;
  const double t3 = t2 * t;
  const double t4 = t3 * t;

  const LunarArguments arguments{
      .elongation =
          297.8501921 + 445267.1114034 * t - 0.0018819 * t2 + t3 / 545868 - t4 / 113065000,
      .sunAnomaly = 357.5291092 + 35999.0502909 * t - 0.0001536 * t2 + t3 / 24490000,
      .moonAnomaly = 134.9633964 + 477198.8675055 * t + 0.0087414 * t2 + t3 / 69699 - t4 / 14712000,
      .latitudeArgument =
          93.272095 + 483202.0175233 * t - 0.0036539 * t2 - t3 / 3526000 + t4 / 863310000,
      .meanLongitude =
          218.3164477 + 481267.88123421 * t - 0.0015786 * t2 + t3 / 538841 - t4 / 65194000,
      .a1 = 119.75 + 131.849 * t,
      .a2 = 53.09 + 479264.29 * t,
      .a3 = 313.45 + 481266.484 * t,
      .eccentricity = 1 - 0.002516 * t - 0.0000074 * t2,
  };
  const LunarPeriodicTerms terms = lunarPeriodicTerms(arguments);
  const double eclipticLongitude = (arguments.meanLongitude + terms.longitude / 1e6) * k;
  const double eclipticLatitude = symmetricTurn(terms.latitude / 1e6) * k;
  distance = std::round(385000.56 + terms.distance / 1000);

  const double obliquity = (23.4393 - 0.0000003563 * (julianDate - 2451543.5)) * k;
  const double east = std::sin(eclipticLongitude) * std::cos(obliquity) -
                      std::tan(eclipticLatitude) * std::sin(obliquity);
  const double cosLongitude = std::cos(eclipticLongitude);
  const double backward = cosLongitude < 0 ? 180 : 0;
  const double rightAscension = turn(std::atan(east / cosLongitude) / k - backward) / 15;
  const double sinDeclination =
      std::sin(eclipticLatitude) * std::cos(obliquity) +
      std::cos(eclipticLatitude) * std::sin(obliquity) * std::sin(eclipticLongitude);
  const double declination = symmetricTurn(std::asin(sinDeclination) / k) * k;

  const double t0 = (midnight - JulianDateOfJ2000) / DaysInCentury;
  const double greenwich =
      turn(100.46061837 + 36000.770053608 * t0 + 0.000387933 * t0 * t0 - t0 * t0 * t0 / 38710000) /
      15;
  const double sidereal = sameHour(longitude / -15 + hours * 1.00273790935 + greenwich);
  const double hourAngle = (sidereal - rightAscension) * 15 * k;

  const double cosDeclination = std::cos(declination);
  const double sinLatitude = std::sin(latitude * k);
  const double cosLatitude = std::cos(latitude * k);
  const double numerator = std::sin(hourAngle) * cosDeclination;
  const double denominator =
      std::cos(hourAngle) * cosDeclination * sinLatitude - std::sin(declination) * cosLatitude;
  const double behind = denominator < 0 ? 180 : 0;
  azimuth = turn(std::atan(numerator / denominator) / k - behind + 180);
  const double up =
      std::sin(declination) * sinLatitude + std::cos(hourAngle) * cosDeclination * cosLatitude;
  altitude = std::atan(up / std::sqrt(numerator * numerator + denominator * denominator)) / k;
}
