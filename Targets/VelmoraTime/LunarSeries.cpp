#include "Targets/VelmoraTime/LunarSeries.h"

#include <cmath>
#include <cstdlib>

#include "Targets/VelmoraTime/AstronomyTables.h"
#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"

namespace {

double sine(double degrees) { return std::sin(degrees * AzimuthDegree); }

/// A row's argument in radians.
double argumentOf(const LunarArguments& arguments, int32_t d, int32_t m, int32_t mp, int32_t f) {
  return turn(arguments.elongation * d + arguments.sunAnomaly * m + arguments.moonAnomaly * mp +
              arguments.latitudeArgument * f) *
         AzimuthDegree;
}

/// A term with the Sun's anomaly shrinks with the eccentricity of the Earth's orbit.
double weightOf(const LunarArguments& arguments, int32_t m) {
  switch (std::abs(m)) {
    case 1:
      return arguments.eccentricity;
    case 2:
      return arguments.eccentricity * arguments.eccentricity;
    default:
      return 1;
  }
}

}  // namespace

LunarPeriodicTerms lunarPeriodicTerms(const LunarArguments& arguments) {
  LunarPeriodicTerms terms{};
  for (size_t row = 0; row < LunarRowCount; ++row) {
    const double argument = argumentOf(arguments, T45AD[row], T45AM[row], T45AMP[row], T45AF[row]);
    const double weight = weightOf(arguments, T45AM[row]);
    terms.longitude += T45AL[row] * weight * std::sin(argument);
    terms.distance += T45AR[row] * weight * std::cos(argument);
  }
  for (size_t row = 0; row < LunarRowCount; ++row) {
    const double argument = argumentOf(arguments, T45BD[row], T45BM[row], T45BMP[row], T45BF[row]);
    terms.latitude += T45BL[row] * weightOf(arguments, T45BM[row]) * std::sin(argument);
  }

  const double mean = arguments.meanLongitude;
  terms.longitude += 3958 * sine(arguments.a1) + 1962 * sine(mean - arguments.latitudeArgument) +
                     318 * sine(arguments.a2);
  terms.latitude += -2235 * sine(mean) + 382 * sine(arguments.a3) +
                    175 * sine(arguments.a1 - arguments.latitudeArgument) +
                    175 * sine(arguments.a1 + arguments.latitudeArgument) +
                    127 * sine(mean - arguments.moonAnomaly) -
                    115 * sine(mean + arguments.moonAnomaly);
  return terms;
}
