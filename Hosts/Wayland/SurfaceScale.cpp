#include "Hosts/Wayland/SurfaceScale.h"

#include <cmath>
#include <numeric>
#include <utility>

namespace {

/// The protocol's own unit of scales.
constexpr int ScaleSteps = 120;

}  // namespace

SurfaceScale::SurfaceScale(WaylandConnection& connection, wl_surface* surface,
                           std::function<void()> onChange)
    : connection_(connection), onChange_(std::move(onChange)) {
  auto* manager = connection.fractionalScale();
  if (manager == nullptr || connection.viewporter() == nullptr) return;
  static constexpr wp_fractional_scale_v1_listener Listener = {
      &WaylandEvent<&SurfaceScale::preferredScale>::call};
  fractionalScale_.reset(wp_fractional_scale_manager_v1_get_fractional_scale(manager, surface));
  wp_fractional_scale_v1_add_listener(fractionalScale_.get(), &Listener, this);
}

double SurfaceScale::on(const Monitor& monitor) const {
  if (connection_.viewporter() == nullptr) {
    const WaylandOutput* output = connection_.outputNamed(monitor.name);
    return output != nullptr ? output->wholeScale() : 1;
  }
  return isShown_ && preferred_ > 0 ? preferred_ : monitor.scale;
}

void SurfaceScale::preferredScale(wp_fractional_scale_v1*, uint32_t scale) {
  preferred_ = static_cast<double>(scale) / ScaleSteps;
  if (isShown_) onChange_();
}

int pixelGridAt(double scale) {
  const int steps = static_cast<int>(std::lround(scale * ScaleSteps));
  return steps / std::gcd(steps, ScaleSteps);
}
