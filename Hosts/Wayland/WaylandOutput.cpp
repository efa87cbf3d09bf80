#include "Hosts/Wayland/WaylandOutput.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr uint32_t Version = 4;

/// Scales come in these steps.
constexpr double ScaleSteps = 120;

}  // namespace

WaylandOutput::WaylandOutput(wl_registry* registry, uint32_t globalName, uint32_t version,
                             std::function<void()> onChange)
    : output_(static_cast<wl_output*>(wl_registry_bind(registry, globalName, &wl_output_interface,
                                                       std::min(version, Version)))),
      globalName_(globalName),
      onChange_(std::move(onChange)),
      name_("output-" + std::to_string(globalName)) {
  static constexpr wl_output_listener Listener = {
      &WaylandEvent<&WaylandOutput::geometry>::call, &WaylandEvent<&WaylandOutput::mode>::call,
      &WaylandEvent<&WaylandOutput::done>::call,     &WaylandEvent<&WaylandOutput::scale>::call,
      &WaylandEvent<&WaylandOutput::name>::call,     &ignoreWaylandEvent<wl_output*, const char*>,
  };
  wl_output_add_listener(output_.get(), &Listener, this);
}

void WaylandOutput::describeWith(zxdg_output_manager_v1* manager) {
  static constexpr zxdg_output_v1_listener Listener = {
      &WaylandEvent<&WaylandOutput::logicalPosition>::call,
      &WaylandEvent<&WaylandOutput::logicalSize>::call,
      &WaylandEvent<&WaylandOutput::logicalDone>::call,
      &WaylandEvent<&WaylandOutput::logicalName>::call,
      &ignoreWaylandEvent<zxdg_output_v1*, const char*>,
  };
  logical_.reset(zxdg_output_manager_v1_get_xdg_output(manager, output_.get()));
  zxdg_output_v1_add_listener(logical_.get(), &Listener, this);
}

void WaylandOutput::geometry(wl_output*, int32_t x, int32_t y, int32_t, int32_t, int32_t,
                             const char*, const char*, int32_t transform) {
  if (!logical_) position_ = {static_cast<double>(x), static_cast<double>(y)};
  // The odd transforms are those by a quarter.
  isTurned_ = transform % 2 != 0;
}

void WaylandOutput::mode(wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t) {
  if ((flags & WL_OUTPUT_MODE_CURRENT) == 0) return;
  pixels_ = {static_cast<double>(width), static_cast<double>(height)};
}

void WaylandOutput::logicalPosition(zxdg_output_v1*, int32_t x, int32_t y) {
  position_ = {static_cast<double>(x), static_cast<double>(y)};
}

void WaylandOutput::logicalSize(zxdg_output_v1*, int32_t width, int32_t height) {
  logicalSize_ = {static_cast<double>(width), static_cast<double>(height)};
}

Monitor WaylandOutput::monitor() const {
  const NSSize pixels = isTurned_ ? NSSize{pixels_.height, pixels_.width} : pixels_;
  const double whole = scale_;
  NSSize size{pixels.width / whole, pixels.height / whole};
  double scale = whole;
  if (logicalSize_.width > 0 && logicalSize_.height > 0) {
    size = logicalSize_;
    // The logical size is rounded to whole points; the longer side tells more.
    const double measured =
        pixels.width >= pixels.height ? pixels.width / size.width : pixels.height / size.height;
    // A scale in steps of a quarter is likelier than one beside it.
    const double quarter = std::round(measured * 4) / 4;
    const double longer = std::max(pixels.width, pixels.height);
    const bool isQuarter = std::abs(longer / quarter - std::max(size.width, size.height)) < 1;
    scale = isQuarter ? quarter : std::round(measured * ScaleSteps) / ScaleSteps;
  }
  return {name_, {position_, size}, scale, false};
}
