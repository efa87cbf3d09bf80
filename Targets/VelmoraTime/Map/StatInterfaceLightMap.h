#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateComponents.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMapLayer.h"
#include "Targets/VelmoraTime/SunlightMapPaths.h"

class CALayer;
class CAShapeLayer;

/// The map of the Earth at the head of a city's submenu, 320 by 160: the day's blue, the night's
/// purple with a soft edge, the continents, and pins and icons in front. Longitude 0 is in its
/// middle and north above, for every reader. Main thread only.
///
/// Layers are there from `load` to `unload` only: without them the map shows its pins alone.
class StatInterfaceLightMap_Time : public StatInterfaceView_Time {
 public:
  explicit StatInterfaceLightMap_Time(NSRect frame);
  ~StatInterfaceLightMap_Time() override;

  const std::shared_ptr<StatInterfaceLightMapLayer_Time>& cityLayer() const { return cityLayer_; }

  /// Makes the layers, which show no night before `update`. Nothing happens where they are there.
  void load();
  /// Gives them back.
  void unload();
  bool isLoaded() const { return layer_ != nullptr; }

  /// Brings the map, and the almanac behind its icons, to the present moment. A row of the table
  /// that is no outline leaves the night as it was.
  void update();

  /// The table of nights; another one has to be set anew after each `load`.
  void setPaths(SunlightMapPaths_Time paths) { paths_ = std::move(paths); }

  /// What is read aloud for the map.
  void setAccessibilityLabel(std::string_view label) { accessibilityLabel_ = label; }
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Image; }
  std::string accessibilityLabel() const override { return accessibilityLabel_; }

  bool isFlipped() const override { return true; }
  bool mirrorsSubviews() const override { return false; }
  void drawRect(NSRect rect) override;

 private:
  static void updateTime(const NSDateComponents& time);
  static void updateCalculations();
  static void updateSunAndMoon();
  void updateNight(const NSDate& now, const NSDateComponents& time);

  std::optional<SunlightMapPaths_Time> paths_;  ///< While the layers are there.
  std::shared_ptr<CALayer> layer_;              ///< Below the others; null while there are none.
  std::shared_ptr<CAShapeLayer> nightMask_;
  std::shared_ptr<StatInterfaceLightMapLayer_Time> cityLayer_;
  std::string accessibilityLabel_;
};
