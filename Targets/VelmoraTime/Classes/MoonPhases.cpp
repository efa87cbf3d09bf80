#include "Targets/VelmoraTime/Classes/MoonPhases.h"

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"
#include "Targets/VelmoraTime/Classes/JulianDate.h"

namespace {

constexpr double k = AzimuthDegree;
constexpr double SynodicMonth = 29.53058868;
constexpr double JulianDateOf1900 = 2415020;

double sine(double degrees) { return std::sin(degrees * k); }
double cosine(double degrees) { return std::cos(degrees * k); }

double centuriesFrom1900(double julianDate) {
  return (julianDate - JulianDateOf1900) / DaysInCentury;
}

/// Julian date of a mean phase; `t` in centuries from 1900.
double meanPhase(double lunation, double t) {
  const double t2 = t * t;
  return 2415020.75933 + SynodicMonth * lunation + 0.0001178 * t2 - 0.000000155 * t2 * t +
         0.00033 * sine(166.56 + 132.87 * t - 0.009173 * t2);
}

/// The Sun's eccentric anomaly in radians from the mean one, by Newton's steps.
double eccentricAnomaly(double meanAnomaly, double eccentricity) {
  constexpr double Tolerance = 0.000001;
  // Three steps are enough for any angle; the bound only stops numbers too large to be angles.
  constexpr int MostSteps = 50;
  double anomaly = meanAnomaly;
  for (int step = 0; step < MostSteps; ++step) {
    const double delta = anomaly - eccentricity * std::sin(anomaly) - meanAnomaly;
    anomaly -= delta / (1 - eccentricity * std::cos(anomaly));
    if (std::abs(delta) <= Tolerance) break;
  }
  return anomaly;
}

struct PhaseAngles {
  double t;
  double m;   ///< The Sun's mean anomaly.
  double mp;  ///< The Moon's mean anomaly.
  double f;   ///< The Moon's argument of latitude.
};

double newOrFullTerms(const PhaseAngles& angles) {
  const auto [t, m, mp, f] = angles;
  return (0.1734 - 0.000393 * t) * sine(m) + 0.0021 * sine(2 * m) - 0.4068 * sine(mp) +
         0.0161 * sine(2 * mp) - 0.0004 * sine(3 * mp) + 0.0104 * sine(2 * f) -
         0.0051 * sine(m + mp) - 0.0074 * sine(m - mp) + 0.0004 * sine(2 * f + m) -
         0.0004 * sine(2 * f - m) - 0.0006 * sine(2 * f + mp) + 0.001 * sine(2 * f - mp) +
         0.0005 * sine(m + 2 * mp);
}

double quarterTerms(const PhaseAngles& angles) {
  const auto [t, m, mp, f] = angles;
  return (0.1721 - 0.0004 * t) * sine(m) + 0.0021 * sine(2 * m) - 0.628 * sine(mp) +
         0.0089 * sine(2 * mp) - 0.0004 * sine(3 * mp) + 0.0079 * sine(2 * f) -
         0.0119 * sine(m + mp) - 0.0047 * sine(m - mp) + 0.0003 * sine(2 * f + m) -
         0.0004 * sine(2 * f - m) - 0.0006 * sine(2 * f + mp) + 0.0021 * sine(2 * f - mp) +
         0.0003 * sine(m + 2 * mp) + 0.0004 * sine(m - 2 * mp) - 0.0003 * sine(2 * m + mp);
}

/// How much later than the middle the first quarter is; the last is as much earlier.
double quarterShift(const PhaseAngles& angles) {
  return 0.0028 - 0.0004 * cosine(angles.m) + 0.0003 * cosine(angles.mp);
}

bool isNear(double value, double target) { return std::abs(value - target) < 0.01; }

}  // namespace

double phase(double& illumination, double& age, double& distance, double& angularDiameter,
             double& sunDistance, double& sunAngularDiameter, double julianDate) {
  constexpr double Perigee = 282.596403;  // The Sun's longitude at perigee, and
  constexpr double Epoch = 278.83354;     // at the epoch, 1980 January 0.
  constexpr double Eccentricity = 0.016718;
  const auto fix = [](double angle) { return angle - 360 * std::floor(angle / 360); };

  const double day = julianDate - 2444238.5;
  const double n = fix(0.9856473320990837 * day);
  const double m = fix(n + Epoch - Perigee);
  const double eccentric = eccentricAnomaly(m * k, Eccentricity);
  const double trueAnomaly =
      2 * std::atan(1.0168601118216303 * std::tan(eccentric / 2)) * DegreesInRadian;
  const double sunLongitude = fix(trueAnomaly + Perigee);
  const double closeness = (1 + Eccentricity * cosine(trueAnomaly)) / 0.999720508476;
  sunDistance = 149598500 / closeness;
  sunAngularDiameter = closeness * 0.533128;

  const double ml = fix(13.1763966 * day + 64.975464);
  const double mm = fix(ml - 0.1114041 * day - 349.383063);
  const double evection = 1.2739 * sine(2 * (ml - sunLongitude) - mm);
  const double annualEquation = 0.1858 * sine(m);
  const double a3 = 0.37 * sine(m);
  const double correctedAnomaly = mm + evection - annualEquation - a3;
  const double centre = 6.2886 * sine(correctedAnomaly);
  const double a4 = 0.214 * sine(2 * correctedAnomaly);
  const double longitude = ml + evection + centre - annualEquation + a4;
  const double variation = 0.6583 * sine(2 * (longitude - sunLongitude));
  const double ageAngle = longitude + variation - sunLongitude;

  const double phaseFraction = fix(ageAngle) / 360;
  illumination = (1 - cosine(ageAngle)) / 2;
  age = SynodicMonth * phaseFraction;
  distance = 383242.41154199 / (1 + 0.0549 * cosine(correctedAnomaly + centre));
  angularDiameter = 0.5181 / (distance / 384401);
  return phaseFraction;
}

double lunationstart(double julianDate) {
  constexpr double Earlier = 45;
  int32_t year = 0, month = 0, day = 0;
  jyear(year, month, day, julianDate - Earlier);
  double lunation = std::floor((year + (month - 1) * 0.08333333333333333 - 1900) * 12.3685);
  double moment = meanPhase(lunation, centuriesFrom1900(julianDate - Earlier));
  double start = moment;
  // The estimate is two months early at the most for thousands of years around ours. Beyond, it
  // drifts until the search would never close, and the bound ends it.
  constexpr int MostMonths = 12;
  for (int months = 0; months < MostMonths; ++months) {
    moment += SynodicMonth;
    const double next = meanPhase(lunation + 1, centuriesFrom1900(moment));
    if (start <= julianDate && next > julianDate) return lunation;
    start = next;
    lunation += 1;
  }
  return std::floor((julianDate - meanPhase(0, 0)) / SynodicMonth);
}

double truephase(double& phase, double lunation, double fraction) {
  phase = fraction;
  const double number = lunation + fraction;
  const double t = number / 1236.85;
  const double t2 = t * t;
  const double t3 = t2 * t;
  const double mean = meanPhase(number, t);
  const PhaseAngles angles{
      .t = t,
      .m = 359.2242 + 29.10535608 * number - 0.0000333 * t2 - 0.00000347 * t3,
      .mp = 306.0253 + 385.81691806 * number + 0.0107306 * t2 + 0.00001236 * t3,
      .f = 21.2964 + 390.67050646 * number - 0.0016528 * t2 - 0.00000239 * t3,
  };
  if (fraction < 0.01 || isNear(fraction, 0.5)) return mean + newOrFullTerms(angles);
  if (isNear(fraction, 0.25) || isNear(fraction, 0.75)) {
    const double middle = mean + quarterTerms(angles);
    return fraction < 0.5 ? middle + quarterShift(angles) : middle - quarterShift(angles);
  }
  return mean;
}
