#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Views/NSView.h"

/// A picture of the Moon as it stands in the sky: the lit picture, clipped at the terminator, over
/// the dark one. In the north the waxing Moon is lit on the right, in the south on the left.
class MoonPhaseView_Time : public NSView {
 public:
  using NSView::NSView;

  /// With the side of the pictures, the terminator's way and the pictures' names, as told below.
  static std::shared_ptr<MoonPhaseView_Time> moonWithFrame(NSRect frame, int32_t size,
                                                           int32_t range, std::string light,
                                                           std::string dark);

  /// The picture, drawn at the first call and kept until it is replaced.
  const std::shared_ptr<NSImage>& image();
  void setImage(std::shared_ptr<NSImage> image) { image_ = std::move(image); }
  void redraw();

  /// Takes an age in days and an illuminated fraction over; the next picture shows them.
  void showPhase(double age, double illuminatedFraction);

  /// Draws the Moon into the current context.
  void drawMoon();
  void drawRect(NSRect) override { drawMoon(); }

  /// Days since new moon.
  void setAge(double age) { age_ = age; }
  /// The dark fraction of the disc, 0 to 1: 1 minus the illuminated one.
  void setIllumination(double darkFraction) { illumination_ = darkFraction; }
  /// The side of the pictures, in points.
  void setSize(int32_t size) { size_ = size; }
  /// The way that the terminator's control points travel in a lunation, in points.
  void setRange(int32_t range) { range_ = range; }
  /// 0 north, 1 south; where the system's city is known, that decides instead.
  int32_t hemisphere() const { return hemisphere_; }
  void setHemisphere(int32_t hemisphere) { hemisphere_ = hemisphere; }
  /// Names of pictures. An empty name draws nothing.
  void setLight(std::string name) { light_ = std::move(name); }
  void setDark(std::string name) { dark_ = std::move(name); }

 private:
  void takeHemisphereOfSelectedCity();
  double terminator() const;

  std::shared_ptr<NSImage> image_;
  double age_ = 0;
  double illumination_ = 0;
  int32_t size_ = 0;
  int32_t range_ = 0;
  int32_t hemisphere_ = 0;
  std::string light_;
  std::string dark_;
};
