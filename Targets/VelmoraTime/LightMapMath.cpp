#include "Targets/VelmoraTime/LightMapMath.h"

#include <cmath>

#include "Targets/VelmoraTime/AstronomyTables.h"
#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"
#include "Targets/VelmoraTime/EarthSeries.h"
#include "Targets/VelmoraTime/LunarSeries.h"

namespace {

constexpr double dtr = AzimuthDegree;

LightMapEphemeris ephemeris;

double sine(double degrees) { return std::sin(degrees * dtr); }
double cosine(double degrees) { return std::cos(degrees * dtr); }
double tangent(double degrees) { return std::tan(degrees * dtr); }

/// From the ecliptic to the equator.
double rightAscensionOf(double longitude, double latitude) {
  return turn(
      std::atan2(sine(longitude) * cosine(ephemeris.eps) - tangent(latitude) * sine(ephemeris.eps),
                 cosine(longitude)) /
      dtr);
}

double declinationOf(double longitude, double latitude) {
  return std::asin(sine(latitude) * cosine(ephemeris.eps) +
                   cosine(latitude) * sine(ephemeris.eps) * sine(longitude)) /
         dtr;
}

}  // namespace

const LightMapEphemeris& lightMapEphemeris() { return ephemeris; }

void setLightMapTime(double /*year*/, double /*month*/, double /*day*/, double hour, double minute,
                     double second) {
  ephemeris.dayfraction = (hour + minute / 60 + second / 3600) / 24;
}

void TimeMeasures() {
  LightMapEphemeris& e = ephemeris;
  // Nothing sets a date, so the first run takes month 0 for one of the year before and leaves
  // December of the year -1, which then stands.
  if (e.month <= 2) {
    e.year -= 1;
    e.month += 12;
  }
  const double a = std::floor(e.year / 100);
  const double b = 2 - a + std::floor(a * 0.25);
  e.JD = std::floor(365.25 * (e.year + 4716)) + std::floor(30.6001 * (e.month + 1)) + e.day + b -
         1524.5 + e.dayfraction;

  e.T = (e.JD - JulianDateOfJ2000) / DaysInCentury;
  e.T2 = e.T * e.T;
  e.T3 = e.T2 * e.T;
  e.T4 = e.T3 * e.T;
  e.T5 = e.T4 * e.T;

  e.TE = (e.JD + e.deltaT / 86400 - JulianDateOfJ2000) / DaysInCentury;
  e.TE2 = e.TE * e.TE;
  e.TE3 = e.TE2 * e.TE;
  e.TE4 = e.TE3 * e.TE;
  e.TE5 = e.TE4 * e.TE;

  e.Tau = 0.1 * e.TE;
  e.Tau2 = e.Tau * e.Tau;
  e.Tau3 = e.Tau2 * e.Tau;
  e.Tau4 = e.Tau3 * e.Tau;
  e.Tau5 = e.Tau4 * e.Tau;
}

void Nutation() {
  LightMapEphemeris& e = ephemeris;
  const double t = e.TE;
  const double moonAnomaly =
      134.962981389 + 198.867398056 * t + turn(477000 * t) + 0.008697222222 * e.TE2 + e.TE3 / 56250;
  const double sunAnomaly =
      357.527723333 + 359.05034 * t + turn(35640 * t) - 0.0001602777778 * e.TE2 - e.TE3 / 300000;
  const double latitudeArgument =
      93.271910277 + 82.017538055 * t + turn(483120 * t) - 0.0036825 * e.TE2 + e.TE3 / 327272.7273;
  const double elongation = 297.850363055 + 307.11148 * t + turn(444960 * t) -
                            0.001914166667 * e.TE2 + e.TE3 / 189473.6842;
  const double node =
      125.044522222 - 134.136260833 * t - turn(1800 * t) + 0.002070833333 * e.TE2 + e.TE3 / 450000;

  // The almanac has always read one row less than the table holds, and taken the longitude's
  // nutation from the last row it reads alone; the hour angles stand on that.
  constexpr size_t RowsRead = NutationTermCount - 1;
  constexpr double UnitsInDegree = 36000000;
  double obliquity = 0;
  for (size_t row = 0; row < RowsRead; ++row) {
    const NutationTerm& term = NutationTerms[row];
    const double argument = (term.moonAnomaly * moonAnomaly + term.sunAnomaly * sunAnomaly +
                             term.latitudeArgument * latitudeArgument +
                             term.elongation * elongation + term.node * node) *
                            dtr;
    e.delta_psi = (term.longitude + term.longitudeRate * t) * std::sin(argument) / UnitsInDegree;
    obliquity += (term.obliquity + term.obliquityRate * t) * std::cos(argument);
  }
  e.eps = (84381.448 - 46.815 * t - 0.00059 * e.TE2 + 0.001813 * e.TE3) / 3600 +
          obliquity / UnitsInDegree;
}

void Aries() {
  LightMapEphemeris& e = ephemeris;
  const double turns = (280.46061837 + 360.98564736629 * (e.JD - JulianDateOfJ2000) +
                        0.000387933 * e.T2 - e.T3 / 38710000) /
                       360;
  e.GHAAtrue = turn(cosine(e.eps) * e.delta_psi + fraction(turns) * 360);
}

void Sun() {
  LightMapEphemeris& e = ephemeris;
  const EarthPosition earth = earthPosition(e.Tau);
  const double geometric = turn(earth.longitude / dtr) + 180;
  e.Lsun_true = turn(geometric - 0.000025);
  double latitude = turn(-(earth.latitude / dtr));
  e.Lsun_prime = turn(geometric - 1.397 * e.TE - 0.00031 * e.TE2);
  e.R = earth.distance;
  const double aberration = -0.005691611 / e.R;
  e.lambda_ = turn(e.Lsun_true + e.delta_psi + aberration);
  latitude += 0.000011 * (cosine(e.Lsun_prime) - sine(e.Lsun_prime));

  e.RAsun = rightAscensionOf(e.lambda_, latitude);
  e.SHAsun = 360 - e.RAsun;
  e.DECsun = declinationOf(e.lambda_, latitude);
  e.Dsun = e.DECsun;
  e.GHAsun = turn(e.GHAAtrue - e.RAsun);
  e.SDsun = 959.63 / e.R;
  e.HPsun = 8.794 / e.R;

  e.EOT = 4 * e.GHAsun + 720 - 1440 * e.dayfraction;
  if (e.EOT > 20) e.EOT -= 1440;
  if (e.EOT < -20) e.EOT += 1440;
}

void Moon() {
  LightMapEphemeris& e = ephemeris;
  const double t = e.TE;
  e.Lmoon_mean = turn(218.3164591 + 481267.88134236 * t - 0.0013268 * e.TE2 + e.TE3 / 538841 -
                      e.TE4 / 65194000);
  e.D =
      turn(297.8502042 + 445267.1115168 * t - 0.00163 * e.TE2 + e.TE3 / 545868 - e.TE4 / 113065000);
  e.Msun_mean = turn(357.5291092 + 35999.0502909 * t - 0.0001536 * e.TE2 + e.TE3 / 24490000);
  e.Mmoon_mean =
      turn(134.9634114 + 477198.8676313 * t + 0.008997 * e.TE2 + e.TE3 / 69699 - e.TE4 / 14712000);
  e.F = turn(93.2720993 + 483202.0175273 * t - 0.0034029 * e.TE2 - e.TE3 / 3526000 +
             e.TE4 / 863310000);
  e.A1 = turn(119.75 + 131.849 * t);
  e.A2 = turn(53.09 + 479264.29 * t);
  e.A3 = turn(313.45 + 481266.484 * t);
  e.fE = 1 - 0.002516 * t - 0.0000074 * e.TE2;
  e.fE2 = e.fE * e.fE;

  const LunarPeriodicTerms terms = lunarPeriodicTerms({.elongation = e.D,
                                                       .sunAnomaly = e.Msun_mean,
                                                       .moonAnomaly = e.Mmoon_mean,
                                                       .latitudeArgument = e.F,
                                                       .meanLongitude = e.Lmoon_mean,
                                                       .a1 = e.A1,
                                                       .a2 = e.A2,
                                                       .a3 = e.A3,
                                                       .eccentricity = e.fE});
  e.lambdaMm = turn(e.Lmoon_mean + terms.longitude / 1e6);
  e.betaM = terms.latitude / 1e6;
  e.dEM = 385000.56 + terms.distance / 1000;
  e.lambdaMapp = e.lambdaMm + e.delta_psi;
  e.RAmoon = rightAscensionOf(e.lambdaMapp, e.betaM);
  e.SHAmoon = 360 - e.RAmoon;
  e.DECmoon = declinationOf(e.lambdaMapp, e.betaM);
  e.Dmoon = e.DECmoon;
  e.GHAmoon = turn(e.GHAAtrue - e.RAmoon);
}

double _GHAsun() { return ephemeris.GHAsun; }
double _GHAmoon() { return ephemeris.GHAmoon; }
double _DECsun() { return ephemeris.DECsun; }
double _DECmoon() { return ephemeris.DECmoon; }
