#include "Targets/VelmoraTime/Classes/MoonPhaseView.h"

#include <numbers>
#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/Foundation/Settings/NSUserDefaults.h"
#include "Targets/Shared/ZEVImageCache.h"

namespace {

/// Half a synodic month, in days.
constexpr double AgeOfFullMoon = 14.765294075012207;

/// Nearer to either end of the cycle than this the terminator snaps to the disc's edge and beyond.
constexpr double NearlyDark = 0.98;
constexpr double NearlyLit = 0.02;

/// Makes the terminator reach the limb where the snapping sets in.
constexpr double TravelFactor = 1.02;

}  // namespace

std::shared_ptr<MoonPhaseView_Time> MoonPhaseView_Time::moonWithFrame(NSRect frame, int32_t size,
                                                                      int32_t range,
                                                                      std::string light,
                                                                      std::string dark) {
  auto moon = std::make_shared<MoonPhaseView_Time>(frame);
  moon->setSize(size);
  moon->setRange(range);
  moon->setLight(std::move(light));
  moon->setDark(std::move(dark));
  return moon;
}

const std::shared_ptr<NSImage>& MoonPhaseView_Time::image() {
  if (!image_) redraw();
  return image_;
}

void MoonPhaseView_Time::redraw() {
  image_ = NSImage::imageWithSize(frame().size);
  const NSImageFocus focus = image_->lockFocus();
  drawMoon();
}

void MoonPhaseView_Time::showPhase(double age, double illuminatedFraction) {
  setAge(age);
  setIllumination(1.0 - illuminatedFraction);
  // Drawn when it is asked for: a clock without a Moon never loads a picture, nor what reads them.
  setImage(nullptr);
}

void MoonPhaseView_Time::takeHemisphereOfSelectedCity() {
  const PropertyList city = NSUserDefaults::standardUserDefaults().objectForKey(
      "com.apple.preferences.timezone.selected_city");
  if (city.dictionary() == nullptr) return;
  const auto latitude = city.dictionary()->find("Latitude");
  if (latitude != city.dictionary()->end()) hemisphere_ = latitude->second.doubleValue() < 0;
}

double MoonPhaseView_Time::terminator() const {
  const bool isWaning = age_ >= AgeOfFullMoon;
  const auto range = static_cast<float>(range_);
  const auto travel = static_cast<float>(illumination_ * TravelFactor) * range;
  float x = isWaning ? travel : range - travel;
  if (illumination_ > NearlyDark) x = isWaning ? range : 0;
  if (illumination_ < NearlyLit) x = isWaning ? 0 : range;
  const auto margin = (range_ - size_) / 2;  // In whole points.
  return x - static_cast<float>(margin);
}

void MoonPhaseView_Time::drawMoon() {
  takeHemisphereOfSelectedCity();
  auto* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  const NSSavedGraphicsState saved(*context);
  if (const auto dark = ZEVImageNamed(dark_)) dark->drawAtPoint({0, 0});
  if (hemisphere_ == 0) {
    context->rotateByRadians(std::numbers::pi);
    context->translateBy({-frame().size.width, -frame().size.height});
  }

  // The curve's control points stand at `x`, so that it bulges three quarters of the way there. The
  // picture is lit on the left here while the Moon waxes; the half turn above mirrors that.
  const double x = terminator();
  const auto side = static_cast<double>(size_);
  const double middle = side / 2;
  const double litEdge = age_ >= AgeOfFullMoon ? side : 0;
  NSBezierPath path;
  path.moveToPoint({middle, side});
  path.curveToPoint({middle, 0}, {x, side}, {x, 0});
  path.lineToPoint({litEdge, 0});
  path.lineToPoint({litEdge, side});
  path.closePath();
  context->clipToPath(path);
  if (const auto light = ZEVImageNamed(light_)) light->drawAtPoint({0, 0});
}
