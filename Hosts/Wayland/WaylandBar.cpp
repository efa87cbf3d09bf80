#include "Hosts/Wayland/WaylandBar.h"

#include <cmath>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace {

/// The protocol's own unit of scales.
constexpr int ScaleSteps = 120;

/// How long the connection of what is shown is watched after news on the other, in nanoseconds.
constexpr int64_t Attention = 2'000'000'000;

}  // namespace

WaylandBar::WaylandBar(WaylandConnections connections, const Monitor& monitor, int height,
                       SurfaceClient& client)
    : connections_(connections), client_(client), monitor_(monitor), height_(height) {
  open();
}

WaylandBar::~WaylandBar() {
  close();
  connections_.shown.flush();
  connections_.input.flush();
}

void WaylandBar::open() {
  const WaylandOutput* shownOn = connections_.shown.outputNamed(monitor_.name);
  const WaylandOutput* inputOn = connections_.input.outputNamed(monitor_.name);
  if (shownOn == nullptr || inputOn == nullptr) {
    throw std::runtime_error("the monitor " + monitor_.name + " has gone");
  }
  bar_ = std::make_unique<LayerSurface>(
      connections_.shown, shownOn->output(), height_, LayerSurface::Space::Reserved,
      LayerSurface::Input::Passed,
      LayerSurface::Events{[this] { changed(); }, [this] { closedByDisplay(); }});
  item_ =
      std::make_unique<ItemSurface>(connections_.shown, bar_->surface(), [this] { frameShown(); });
  if (auto* manager = connections_.shown.fractionalScale();
      manager != nullptr && connections_.shown.viewporter() != nullptr) {
    static constexpr wp_fractional_scale_v1_listener Listener = {
        &WaylandEvent<&WaylandBar::preferredScale>::call};
    fractionalScale_.reset(
        wp_fractional_scale_manager_v1_get_fractional_scale(manager, bar_->surface()));
    wp_fractional_scale_v1_add_listener(fractionalScale_.get(), &Listener, this);
  }
  input_ = std::make_unique<LayerSurface>(
      connections_.input, inputOn->output(), height_, LayerSurface::Space::Shared,
      LayerSurface::Input::Taken, LayerSurface::Events{[this] { inputConfigured(); }, [] {}});
  inputTarget_ = {&client_, monitor_.scale};
  wl_surface_set_user_data(input_->surface(), &inputTarget_);
  inputCame();
}

void WaylandBar::close() {
  frame_.reset();
  wantsFrame_ = false;
  preferredScale_ = 0;
  if (input_ && connections_.input.seat() != nullptr) {
    connections_.input.seat()->forget(input_->surface());
  }
  input_.reset();
  item_.reset();
  fractionalScale_.reset();
  bar_.reset();
}

void WaylandBar::moveTo(const Monitor& monitor) {
  const bool isElsewhere = monitor.name != monitor_.name;
  monitor_ = monitor;
  inputTarget_.scale = monitor.scale;
  // Along its edge the compositor stretches the bar itself; another output needs another surface.
  if (!isElsewhere && bar_) {
    item_->forgetFrame();
    return;
  }
  close();
  open();
}

void WaylandBar::changed() {
  item_->forgetFrame();
  client_.surfaceChanged();
}

void WaylandBar::closedByDisplay() { client_.surfaceClosed(); }

void WaylandBar::inputConfigured() {
  // Nothing to see: one clear pixel, or as many as it takes without viewports.
  const std::vector<uint32_t> clear(static_cast<size_t>(input_->height()), 0);
  input_->fill(clear, 1);
}

double WaylandBar::scale() const {
  if (connections_.shown.viewporter() == nullptr) {
    const WaylandOutput* output = connections_.shown.outputNamed(monitor_.name);
    return output != nullptr ? output->wholeScale() : 1;
  }
  return preferredScale_ > 0 ? preferredScale_ : monitor_.scale;
}

int WaylandBar::pixelGrid() const {
  // Surfaces stand on whole points, which only some pixels are.
  const int scale = static_cast<int>(std::lround(this->scale() * ScaleSteps));
  return scale / std::gcd(scale, ScaleSteps);
}

void WaylandBar::preferredScale(wp_fractional_scale_v1*, uint32_t scale) {
  preferredScale_ = static_cast<double>(scale) / ScaleSteps;
  changed();
}

void WaylandBar::setBackground(std::span<const uint32_t> rows) {
  bar_->fill(rows, scale());
  connections_.shown.flush();
}

void WaylandBar::presentItem(const PixelPicture& picture, int x, PixelRect changed) {
  item_->present(picture, x, scale(), changed);
  connections_.shown.flush();
  if (NSRunLoop::mainRunLoop().now() > attentiveUntil_ && !wantsFrame_) {
    connections_.shown.setWatched(false);
  }
}

void WaylandBar::inputCame() {
  attentiveUntil_ = NSRunLoop::mainRunLoop().now() + Attention;
  connections_.shown.readEvents();
  connections_.shown.setWatched(true);
}

void WaylandBar::requestFrame() {
  wantsFrame_ = true;
  if (item_ && item_->isAwaitingFrame()) connections_.shown.readEvents();
  if (!item_ || !wantsFrame_) return;
  if (item_->isAwaitingFrame()) {
    connections_.shown.setWatched(true);
  } else {
    scheduleFrame();
  }
}

void WaylandBar::frameShown() {
  if (wantsFrame_) scheduleFrame();
}

void WaylandBar::scheduleFrame() {
  wantsFrame_ = false;
  if (frame_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  frame_ = loop.scheduleAt(loop.now(), [this] {
    frame_.reset();
    client_.frameReady();
  });
}
