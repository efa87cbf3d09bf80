#include "Targets/VelmoraTime/Classes/SunMath.h"

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"
#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"

namespace {

/// Subtracts full turns while the angle exceeds one; a negative angle stays as it is. Every single
/// subtraction would be exact, so the exact remainder is the same number in one step.
double reduced(double degrees) {
  if (!(degrees > 360)) return degrees;
  const double rest = std::fmod(degrees, 360);
  return rest == 0 ? 360 : rest;
}

}  // namespace

float mjd(int32_t day, int32_t month, int32_t year, double hour) {
  int64_t y = year;
  int64_t m = month;
  if (m < 3) {
    m += 12;
    y -= 1;
  }
  const auto test = static_cast<double>(10000 * y + 100 * m + day);
  const int64_t b = test > 15821004.1 ? y / 400 - y / 100 + y / 4 : -2 * ((y + 4716) / 4) - 1179;
  const double days = static_cast<double>(365 * y - 679004 + b) +
                      std::floor(30.6001 * static_cast<double>(m + 1)) + day + hour / 24;
  return static_cast<float>(days);
}

double lmst(double modifiedJulianDate, double longitude) {
  const double d = modifiedJulianDate - ModifiedJulianDateOfJ2000;
  const double t = d / DaysInCentury;
  const double greenwich =
      280.46061837 + 360.98564736629 * d + 0.000387933 * t * t - t * t * t / 38710000;
  const double turns = greenwich / 360;
  double angle = (turns - std::trunc(turns)) * 360;
  if (angle < 0) angle += 360;
  return longitude / 15 + angle / 15;
}

void sunPosition(double& declination, double& rightAscension, double t) {
  const double anomaly = ShortTurn * fraction(0.993133 + 99.997361 * t);
  const double centre = 6893 * std::sin(anomaly) + 72 * std::sin(2 * anomaly);
  const double longitude =
      ShortTurn * fraction(0.7859453 + anomaly / ShortTurn + (6191.2 * t + centre) / 1296000);
  const double sine = std::sin(longitude);
  const double z = 0.39778 * sine;
  const double rho = std::sqrt(1 - z * z);
  declination = DegreesInShortRadian * std::atan(z / rho);
  rightAscension = TwoHoursInShortRadian * std::atan(0.91748 * sine / (std::cos(longitude) + rho));
  if (rightAscension < 0) rightAscension += 24;
}

double sunSinAlt(double modifiedJulianDate, double hour, double minute, double longitude,
                 double cosLatitude, double sinLatitude) {
  const double moment = modifiedJulianDate + hour / 24 + minute / 24 / 60;
  double declination = 0, rightAscension = 0;
  sunPosition(declination, rightAscension, (moment - ModifiedJulianDateOfJ2000) / DaysInCentury);
  const double hourAngle = (lmst(moment, longitude) - rightAscension) * 15;
  return sineOfAltitude(declination, hourAngle, cosLatitude, sinLatitude);
}

void sunRiseSet(int32_t& rise, int32_t& set, float modifiedJulianDate, double zoneHours,
                double longitude, double latitude, double sinThreshold) {
  const double sinLatitude = std::sin(latitude * AltitudeDegree);
  const double cosLatitude = std::cos(latitude * AltitudeDegree);
  const double midnight = modifiedJulianDate - zoneHours / 24;
  const RiseSetSearch search = searchRiseAndSet([&](double hour) {
    return sunSinAlt(midnight, hour, 0, longitude, cosLatitude, sinLatitude) - sinThreshold;
  });
  if (!search.crosses()) {
    rise = set = search.startsAbove ? RiseSetAlwaysUp : RiseSetAlwaysDown;
    return;
  }
  rise = search.rises ? secondsOfEvent(search.riseHour, zoneHours) : RiseSetNoRise;
  set = search.sets ? secondsOfEvent(search.setHour, zoneHours) : RiseSetNoSet;
}

double sunAltitude2(float modifiedJulianDate, double longitude, double latitude) {
  const double moment = modifiedJulianDate;
  const double x = sunSinAlt(moment, 0, 0, longitude, std::cos(latitude * AltitudeDegree),
                             std::sin(latitude * AltitudeDegree));
  constexpr double Pi = 3.14159265358979323846;
  double angle = std::atan(x / std::sqrt(1 - x * x));
  if (x == 1) angle = Pi / 2;
  if (x == -1) angle = -Pi / 2;
  return angle / Pi * 180;
}

double sunAzimuth2(int32_t year, int32_t month, int32_t day, double longitude, double latitude,
                   double dayFraction) {
  constexpr double k = AzimuthDegree;
  const double y = year;
  const double m = month;
  const double d = 367 * y - std::floor(1.75 * (y + std::floor((m + 9) / 12))) +
                   std::floor(275 * m / 9) + day - 730531.5 + dayFraction;
  const double t = d / DaysInCentury;
  const double t2 = t * t;
  const double t3 = t2 * t;

  const double anomaly = reduced(357.5291 + 35999.0503 * t - 0.0001559 * t2 - 0.00000045 * t3) * k;
  const double meanLongitude = reduced(280.46645 + 36000.76983 * t + 0.0003032 * t2);
  const double centre = (1.9146 - 0.004817 * t - 0.000014 * t2) * std::sin(anomaly) +
                        (0.019993 - 0.000101 * t) * std::sin(2 * anomaly) +
                        0.00029 * std::sin(3 * anomaly);
  const double sunLongitude = (meanLongitude + centre) * k;
  const double obliquity = (23.43999 - 0.013 * t) * k;
  const double sine = std::sin(sunLongitude);
  const double declination = std::asin(std::sin(obliquity) * sine);
  const double rightAscension = reduced(
      std::atan2(std::cos(obliquity) * sine, std::cos(sunLongitude)) * DegreesInRadian + 360);

  const double sidereal =
      reduced(280.46061837 + 360.98564736629 * d + 0.000387933 * t2 - t3 / 38710000 + 360);
  const double hourAngle = (sidereal + longitude - rightAscension) * k;
  return reduced(
      std::atan2(-std::sin(hourAngle), std::tan(declination) * std::cos(latitude * k) -
                                           std::cos(hourAngle) * std::sin(latitude * k)) *
          DegreesInRadian +
      360);
}

double dayOffset(double seconds) {
  constexpr double Day = 86400;
  const double offset = (seconds - std::floor(seconds / Day) * Day) / Day;
  return seconds < 0 ? offset - 1 : offset;
}

int32_t hourFromSeconds(int32_t seconds) {
  return truncatedTo32Bits(std::floor(static_cast<float>(seconds) / 3600.0F));
}

int32_t minuteFromSeconds(int32_t seconds) {
  const float hours = std::floor(static_cast<float>(seconds) / 3600.0F);
  return truncatedTo32Bits((static_cast<float>(seconds) - hours * 3600.0F) / 60.0F);
}
