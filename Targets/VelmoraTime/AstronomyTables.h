#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The published tables of the ephemeris, row for row and in the published order. Their source is
// generated from Resources/Astronomy by scripts/make-astronomy-tables.

constexpr size_t LunarRowCount = 60;
using LunarColumn = std::array<int32_t, LunarRowCount>;

// Longitude and distance of the Moon: multiples of the elongation D, the Sun's anomaly M, the
// Moon's anomaly MP and its argument of latitude F; the sine's coefficient in 1e-6 degree (L) and
// the cosine's in metres (R). Meeus, "Astronomical Algorithms", table 47.A.
extern const LunarColumn T45AD, T45AM, T45AMP, T45AF, T45AL, T45AR;

// Latitude of the Moon, likewise, in 1e-6 degree. Table 47.B.
extern const LunarColumn T45BD, T45BM, T45BMP, T45BF, T45BL;

/// One term of the nutation: multiples of the anomalies of Moon and Sun, of F, D and the node; then
/// the sine's coefficient in longitude and its change in a century, the cosine's in obliquity and
/// its change, in 0.0001 second of arc. IAU 1980 theory of nutation.
struct NutationTerm {
  float moonAnomaly, sunAnomaly, latitudeArgument, elongation, node;
  float longitude, longitudeRate, obliquity, obliquityRate;
};

constexpr size_t NutationTermCount = 106;
extern const std::array<NutationTerm, NutationTermCount> NutationTerms;

/// One term A cos(B + C tau) of the Earth's heliocentric position: A in 1e-8 radian or 1e-8
/// astronomical unit, B in radians, C in radians in a Julian millennium.
struct EarthTerm {
  double a, b, c;
};

// Longitude, latitude and distance, by the power of tau that a series belongs to. VSOP87 (D) as
// abridged by Meeus, "Astronomical Algorithms", appendix III.
extern const std::array<EarthTerm, 64> EarthL0;
extern const std::array<EarthTerm, 34> EarthL1;
extern const std::array<EarthTerm, 20> EarthL2;
extern const std::array<EarthTerm, 7> EarthL3;
extern const std::array<EarthTerm, 3> EarthL4;
extern const std::array<EarthTerm, 1> EarthL5;
extern const std::array<EarthTerm, 5> EarthB0;
extern const std::array<EarthTerm, 2> EarthB1;
extern const std::array<EarthTerm, 40> EarthR0;
extern const std::array<EarthTerm, 10> EarthR1;
extern const std::array<EarthTerm, 6> EarthR2;
extern const std::array<EarthTerm, 2> EarthR3;
extern const std::array<EarthTerm, 1> EarthR4;
