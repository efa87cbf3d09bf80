#include "Targets/VelmoraTime/Map/NightOutline.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Foundation/Text/NSString.h"

namespace {

/// Of the table's plane, which is as wide as a map of 320 points.
constexpr double PlaneScale = 320.0 / 1024;

constexpr size_t FewestNumbers = 3;
/// Of a segment: its end and its two control points.
constexpr size_t NumbersPerSegment = 6;

/// A row's numbers as places on the map.
class Row {
 public:
  Row(const std::vector<std::string>& texts, double offset) : offset_(offset) {
    numbers_.reserve(texts.size());
    for (const std::string& text : texts)
      numbers_.push_back(doubleValue(text) * PlaneScale);
  }

  size_t segments() const { return (numbers_.size() - 2) / NumbersPerSegment; }
  NSPoint start() const { return point(0, 0); }
  NSPoint end(size_t segment, double shift) const { return point(first(segment), shift); }

  void addSegments(NSBezierPath& path, double shift) const {
    for (size_t segment = 0; segment < segments(); ++segment) {
      const size_t index = first(segment);
      path.curveToPoint(point(index, shift), point(index + 2, shift), point(index + 4, shift));
    }
    path.closePath();
  }

 private:
  static size_t first(size_t segment) { return 2 + NumbersPerSegment * segment; }
  NSPoint point(size_t index, double shift) const {
    return {numbers_[index] + offset_ + shift, numbers_[index + 1]};
  }

  double offset_;
  std::vector<double> numbers_;
};

}  // namespace

double nightOffset(double width, int64_t hour, int64_t minute, int64_t second) {
  const float hours = static_cast<float>(hour) + static_cast<float>(minute) / 60.F +
                      static_cast<float>(second) / 3600.F;
  return -std::floor(static_cast<float>(hours / 24.F) * width);
}

std::optional<NSBezierPath> nightOutline(std::string_view row, NightPlacement placement) {
  const std::vector<std::string> texts = componentsSeparatedByString(row, ",");
  if (texts.size() < FewestNumbers) return std::nullopt;
  const Row night(texts, placement.offset);
  NSBezierPath path;
  path.moveToPoint(night.start());
  if (night.segments() == 0) {
    path.closePath();
    return path;
  }
  night.addSegments(path, 0);
  // The second copy begins where the first segment ends: that segment is a straight edge of the
  // plane, along which the figure closes anyway.
  path.moveToPoint(night.end(0, placement.width));
  night.addSegments(path, placement.width);
  return path;
}
