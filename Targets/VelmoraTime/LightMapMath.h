#pragma once

// The almanac behind the Sun and Moon icons of the light map: their Greenwich hour angles and
// declinations. Each step leaves its results in one set of variables of the process for the next;
// only the main thread may use it.
//
// The calendar date of this almanac is fixed: `setLightMapTime` takes the time of day alone, so the
// icons turn with the hours and keep their height on the map through the year. The lit area follows
// the seasons, by SunlightMapPaths.h.
//
// Sun and Moon after Meeus, "Astronomical Algorithms", ch. 25 and 47; nutation by the IAU 1980
// theory, of which the longitude takes a single small term.

/// The variables of the almanac; zero until written. Degrees unless told otherwise.
struct LightMapEphemeris {
  double year = 0, month = 0, day = 0;  ///< The fixed date.
  double dayfraction = 0;
  double deltaT = 0;  ///< Dynamical less universal time, in seconds.

  double JD = 0;                                           ///< Julian date.
  double T = 0, T2 = 0, T3 = 0, T4 = 0, T5 = 0;            ///< Centuries of universal time.
  double TE = 0, TE2 = 0, TE3 = 0, TE4 = 0, TE5 = 0;       ///< Centuries of dynamical time.
  double Tau = 0, Tau2 = 0, Tau3 = 0, Tau4 = 0, Tau5 = 0;  ///< Millennia of the latter.

  double delta_psi = 0;  ///< Nutation in longitude.
  double eps = 0;        ///< True obliquity.
  double GHAAtrue = 0;   ///< Greenwich hour angle of Aries.

  double Lsun_true = 0, Lsun_prime = 0;
  double R = 0;        ///< Distance of the Sun in astronomical units.
  double lambda_ = 0;  ///< Its apparent longitude.
  double RAsun = 0, SHAsun = 0, DECsun = 0, Dsun = 0, GHAsun = 0;
  double SDsun = 0, HPsun = 0;  ///< Semidiameter and parallax in seconds of arc.
  double EOT = 0;               ///< Equation of time in minutes.

  double Lmoon_mean = 0, D = 0, Msun_mean = 0, Mmoon_mean = 0, F = 0, A1 = 0, A2 = 0, A3 = 0;
  double fE = 0, fE2 = 0;
  double lambdaMm = 0, betaM = 0;
  double dEM = 0;  ///< Distance of the Moon in kilometres.
  double lambdaMapp = 0;
  double RAmoon = 0, SHAmoon = 0, DECmoon = 0, Dmoon = 0, GHAmoon = 0;
};

/// The variables as the latest step left them.
const LightMapEphemeris& lightMapEphemeris();

/// Takes the time of day (UTC) of a full date and time.
void setLightMapTime(double year, double month, double day, double hour, double minute,
                     double second);

// The steps, to be run in this order for each new moment.
void TimeMeasures();
void Nutation();
void Aries();
void Sun();
void Moon();

// The names begin as they do throughout the family.
double _GHAsun();
double _GHAmoon();
double _DECsun();
double _DECmoon();
