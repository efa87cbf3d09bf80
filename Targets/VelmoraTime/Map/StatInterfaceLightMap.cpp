#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"

#include <algorithm>
#include <cstddef>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/VelmoraTime/LightMapMath.h"
#include "Targets/VelmoraTime/Map/NightOutline.h"

namespace {

constexpr NSColor DayNorth = NSColor::colorWithDeviceRed(0.459, 0.722, 0.91, 1);
constexpr NSColor DaySouth = NSColor::colorWithDeviceRed(0.18, 0.427, 0.651, 1);
constexpr NSColor Night = NSColor::colorWithDeviceRed(0.282353, 0.0862745, 0.588235, 1);

/// Of the night's edge, in points: about the width of civil twilight at the equator.
constexpr double TerminatorBlur = 5;

NSDateComponents universalTime(const NSDate& date) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("UTC"));
  return calendar.components(NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay |
                                 NSCalendarUnitHour | NSCalendarUnitMinute | NSCalendarUnitSecond,
                             date);
}

/// By the day of the year here, which near midnight is another than in UTC.
size_t rowOfDay(const NSDate& date) {
  constexpr int64_t LastRow = 364;
  const NSCalendar calendar = NSCalendar::gregorianCalendar();
  const int64_t day = calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitYear, date);
  return static_cast<size_t>(std::clamp<int64_t>(day - 1, 0, LastRow));
}

}  // namespace

StatInterfaceLightMap_Time::StatInterfaceLightMap_Time(NSRect frame)
    : StatInterfaceView_Time(frame),
      cityLayer_(std::make_shared<StatInterfaceLightMapLayer_Time>(bounds())) {
  addSubview(cityLayer_);
}

StatInterfaceLightMap_Time::~StatInterfaceLightMap_Time() = default;

void StatInterfaceLightMap_Time::load() {
  if (isLoaded()) return;
  paths_.emplace();

  const auto blue = std::make_shared<CAGradientLayer>();
  blue->setFrame(bounds());
  blue->setColors({DayNorth, DaySouth});

  nightMask_ = std::make_shared<CAShapeLayer>();
  nightMask_->setFrame(bounds());
  nightMask_->setShadowRadius(TerminatorBlur);
  nightMask_->setWrapsHorizontally(true);
  const auto purple = std::make_shared<CAGradientLayer>();
  purple->setFrame(bounds());
  purple->setColors({Night, Night});
  purple->setMask(nightMask_);

  const auto continents = std::make_shared<CALayer>();
  continents->setFrame(bounds());
  continents->setContents(ZEVImageNamed("stats-calendar-map-header"));

  layer_ = std::make_shared<CALayer>();
  layer_->setFrame(bounds());
  for (const std::shared_ptr<CALayer>& layer :
       std::initializer_list<std::shared_ptr<CALayer>>{blue, purple, continents})
    layer_->addSublayer(layer);
  setNeedsDisplay(true);
}

void StatInterfaceLightMap_Time::unload() {
  layer_.reset();
  nightMask_.reset();
  paths_.reset();
}

void StatInterfaceLightMap_Time::update() {
  const NSDate now = NSDate::date();
  const NSDateComponents time = universalTime(now);
  updateTime(time);
  updateCalculations();
  updateSunAndMoon();
  if (isLoaded()) updateNight(now, time);
  cityLayer_->setNeedsDisplay(true);
}

void StatInterfaceLightMap_Time::updateTime(const NSDateComponents& time) {
  const auto number = [](const std::optional<int64_t>& part) {
    return static_cast<double>(part.value_or(0));
  };
  setLightMapTime(number(time.year), number(time.month), number(time.day), number(time.hour),
                  number(time.minute), number(time.second));
}

void StatInterfaceLightMap_Time::updateCalculations() {
  TimeMeasures();
  Nutation();
  Aries();
}

void StatInterfaceLightMap_Time::updateSunAndMoon() {
  Sun();
  Moon();
}

void StatInterfaceLightMap_Time::updateNight(const NSDate& now, const NSDateComponents& time) {
  const double width = frame().size.width;
  const double offset =
      nightOffset(width, time.hour.value_or(0), time.minute.value_or(0), time.second.value_or(0));
  const size_t row = rowOfDay(now);
  if (row >= paths_->paths().size()) return;
  if (auto night = nightOutline(paths_->paths()[row], {width, offset})) {
    nightMask_->setPath(std::move(*night));
  }
}

void StatInterfaceLightMap_Time::drawRect(NSRect) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (layer_ && context != nullptr) layer_->renderInContext(*context);
}
