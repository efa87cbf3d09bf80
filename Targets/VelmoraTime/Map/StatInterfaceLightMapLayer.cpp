#include "Targets/VelmoraTime/Map/StatInterfaceLightMapLayer.h"

#include <string_view>

#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/VelmoraTime/LightMapMath.h"

namespace {

// In points.
constexpr double PinRadius = 6;
constexpr double IconSize = 16;
constexpr double IconRadius = 8;

}  // namespace

NSPoint StatInterfaceLightMapLayer_Time::elementPosition(double degX, double degY) const {
  const NSSize size = bounds().size;
  const double degreesPerPointX = 360 / size.width;
  const double degreesPerPointY = 180 / size.height;
  const double middle = size.width * 0.5 * degreesPerPointX;
  const double x = ((middle > degX ? 0 : 360) - degX + middle) / degreesPerPointX;
  const double y = (size.height * 0.5 * degreesPerPointY - degY) / degreesPerPointY;
  return {x - IconRadius, y - IconRadius};
}

void StatInterfaceLightMapLayer_Time::drawPin(std::string_view picture,
                                              const LightMapPlace& place) const {
  const auto pin = ZEVImageNamed(picture);
  if (!pin) return;
  const NSSize size = bounds().size;
  pin->drawAtPoint({static_cast<float>(place.longitudePercentage * size.width - PinRadius),
                    static_cast<float>(place.latitudePercentage * size.height - PinRadius)});
}

void StatInterfaceLightMapLayer_Time::drawIcon(std::string_view picture, double hourAngle,
                                               double declination) const {
  const auto icon = ZEVImageNamed(picture);
  if (!icon) return;
  const double width = bounds().size.width;
  const NSPoint corner = elementPosition(hourAngle, declination);
  icon->drawAtPoint(corner);
  // What reaches over one edge comes in at the other.
  if (corner.x > width - IconSize) icon->drawAtPoint({corner.x - width, corner.y});
  if (corner.x < 0) icon->drawAtPoint({corner.x + width, corner.y});
}

void StatInterfaceLightMapLayer_Time::drawRect(NSRect) {
  for (const LightMapPlace& place : places_ ? places_() : std::vector<LightMapPlace>()) {
    if (place.identifier != currentCity_.identifier) drawPin("map-location", place);
  }
  drawPin("map-location-selected", currentCity_);
  drawIcon("map-icon-sun", _GHAsun(), _DECsun());
  drawIcon("map-icon-moon", _GHAmoon(), _DECmoon());
}
