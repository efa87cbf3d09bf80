#include "Targets/VelmoraTime/SunlightMapPaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "Platform/Foundation/NSGeometry.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

constexpr double Width = 1024;
constexpr double Height = 512;
constexpr double Degree = M_PI / 180;
constexpr int Rows = 365;
constexpr int FirstBottomRow = 80;
constexpr int LastBottomRow = 266;

bool runsAlongBottom(int row) { return row >= FirstBottomRow && row <= LastBottomRow; }

// On these two dates the Sun is already over the other hemisphere: by 0.06 and 0.29 degree.
bool isPastEquinox(int row) { return row == FirstBottomRow - 1 || row == LastBottomRow; }

struct Segment {
  NSPoint start, first, second, end;

  NSPoint at(double t) const {
    const double s = 1 - t;
    const double weights[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    return {
        weights[0] * start.x + weights[1] * first.x + weights[2] * second.x + weights[3] * end.x,
        weights[0] * start.y + weights[1] * first.y + weights[2] * second.y + weights[3] * end.y};
  }
};

std::vector<std::string> piecesOf(std::string_view row) {
  return componentsSeparatedByString(row, ",");
}

std::vector<Segment> segmentsOf(std::string_view row) {
  std::vector<double> numbers;
  for (const std::string& piece : piecesOf(row))
    numbers.push_back(std::strtod(piece.c_str(), nullptr));
  std::vector<Segment> segments;
  NSPoint start{numbers[0], numbers[1]};
  for (size_t i = 2; i + 6 <= numbers.size(); i += 6) {
    const double* n = &numbers[i];
    segments.push_back({start, {n[2], n[3]}, {n[4], n[5]}, {n[0], n[1]}});
    start = segments.back().end;
  }
  return segments;
}

/// Radians. The equation of time is positive when the sundial is ahead of the clock, and the Sun
/// then west of the map's edges at 00:00 UTC.
struct TrueSun {
  double declination;
  double equationOfTime;
};

/// For a day of 2027, by the Astronomical Almanac's low-precision formulas (page C5): 0.01 degree
/// in declination, 0.1 minute of time in the equation of time.
TrueSun trueSun(int row) {
  const double n = 61406 + row - 51544.5;
  const double meanLongitude = (280.460 + 0.9856474 * n) * Degree;
  const double anomaly = (357.528 + 0.9856003 * n) * Degree;
  const double longitude =
      meanLongitude + (1.915 * std::sin(anomaly) + 0.020 * std::sin(2 * anomaly)) * Degree;
  const double obliquity = (23.439 - 0.0000004 * n) * Degree;
  const double rightAscension =
      std::atan2(std::cos(obliquity) * std::sin(longitude), std::cos(longitude));
  return {std::asin(std::sin(obliquity) * std::sin(longitude)),
          std::remainder(meanLongitude - rightAscension, 2 * M_PI)};
}

/// Sine of the Sun's altitude where a point of the plane lies, at 00:00 UTC.
double sinAltitude(NSPoint point, const TrueSun& sun) {
  const double latitude = (90 - point.y * 180 / Height) * Degree;
  const double hourAngle = point.x * 360 / Width * Degree + sun.equationOfTime;
  return std::sin(latitude) * std::sin(sun.declination) +
         std::cos(latitude) * std::cos(sun.declination) * std::cos(hourAngle);
}

std::vector<std::string_view> table() { return SunlightMapPaths_Time().paths(); }

// What the map view relies on: 366 places, six numbers a segment, a closed outline that starts at
// the polar edge of its kind.
TEST(SunlightMapPaths, FormOfTheRows) {
  SunlightMapPaths_Time replaced;
  replaced.setPaths({"0,0"});
  EXPECT_EQ(replaced.paths(), std::vector<std::string_view>{"0,0"});
  const auto rows = table();
  ASSERT_EQ(rows.size(), 366U) << "each map has its own";
  EXPECT_TRUE(rows.back().empty());
  for (int row = 0; row < Rows; ++row) {
    SCOPED_TRACE(row);
    const auto pieces = piecesOf(rows[row]);
    ASSERT_EQ(pieces.size() % 6, 2U);
    EXPECT_GE(pieces.size(), 110U);
    EXPECT_LE(pieces.size(), 308U);
    for (const std::string& piece : pieces)
      EXPECT_EQ(piece.find_first_not_of("0123456789.-"), std::string::npos) << piece;

    const auto segments = segmentsOf(rows[row]);
    const std::string side = pieces[runsAlongBottom(row) ? 1 : 9];
    const std::string_view start = rows[row];
    EXPECT_TRUE(start.starts_with(runsAlongBottom(row)
                                      ? "1024," + side + ",1024,512,"
                                      : "0,0,1024,0,341.3,0,682.7,0,1024," + side + ","));
    EXPECT_NEAR(segments.back().end.x, segments.front().start.x, 1e-9);
    EXPECT_NEAR(segments.back().end.y, segments.front().start.y, 1e-9);
  }
}

// The region inside is the night: every place that is dark, and none that is light. This catches a
// curve beside the terminator, a wrong polar edge, a turned kind and a hole, in every row.
TEST(SunlightMapPaths, RegionIsTheNight) {
  const auto rows = table();
  for (int row = 0; row < Rows; ++row) {
    const TrueSun sun = trueSun(row);
    std::vector<NSPoint> outline;
    for (const Segment& segment : segmentsOf(rows[row])) {
      for (int step = 0; step < 8; ++step)
        outline.push_back(segment.at(step / 8.0));
    }
    const auto contains = [&](NSPoint point) {
      bool inside = false;
      for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const NSPoint &a = outline[i], &b = outline[j];
        if ((a.y > point.y) == (b.y > point.y)) continue;
        if (point.x < a.x + (b.x - a.x) * (point.y - a.y) / (b.y - a.y)) inside = !inside;
      }
      return inside;
    };
    for (double x = 4; x < Width; x += 24) {
      for (double y = 0.5; y < Height; y += 5.3) {
        const double sine = sinAltitude({x, y}, sun);
        // Rounding to two decimals, the fit, and what the formulas leave out.
        if (std::abs(sine) < std::sin((isPastEquinox(row) ? 0.35 : 0.08) * Degree)) continue;
        EXPECT_EQ(contains({x, y}), sine < 0) << "row " << row << " at " << x << "," << y;
      }
    }
  }
}

}  // namespace
