#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "Platform/AppKit/Views/NSView.h"

/// A place on a map of the whole Earth, from 0 to 1 from west to east and from north to south.
struct LightMapPlace {
  int64_t identifier = 0;  ///< Of the city.
  double longitudePercentage = 0;
  double latitudePercentage = 0;
};

/// What stands on the light map: pins of cities, and the Sun and the Moon where they are overhead
/// by the almanac of LightMapMath.h, whose latest update counts.
class StatInterfaceLightMapLayer_Time : public NSView {
 public:
  using Places = std::function<std::vector<LightMapPlace>()>;

  using NSView::NSView;

  /// All places to pin, asked for at each drawing.
  void setPlaces(Places places) { places_ = std::move(places); }
  /// The city whose map this is. Its pin is another, in front of all; no other place of its
  /// identifier is pinned.
  const LightMapPlace& currentCity() const { return currentCity_; }
  void setCurrentCity(const LightMapPlace& place) { currentCity_ = place; }

  /// The upper left corner of an icon of 16 points for a Greenwich hour angle and a declination in
  /// degrees: hour angle 0 is in the middle, 180 at the right edge.
  NSPoint elementPosition(double degX, double degY) const;

  bool isFlipped() const override { return true; }
  void drawRect(NSRect rect) override;

 private:
  void drawPin(std::string_view picture, const LightMapPlace& place) const;
  void drawIcon(std::string_view picture, double hourAngle, double declination) const;

  Places places_;
  LightMapPlace currentCity_;
};
