#include "Hosts/Wayland/WaylandMenuSession.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Hosts/Wayland/WaylandMenuWindow.h"

WaylandMenuSession::WaylandMenuSession(WaylandConnection& connection, const Monitor& monitor,
                                       MenuSessionClient& client)
    : connection_(connection), client_(client), monitor_(monitor) {
  const WaylandOutput* output = connection.outputNamed(monitor.name);
  if (output == nullptr) throw std::runtime_error("the monitor " + monitor.name + " has gone");
  if (WaylandSeat* seat = connection.seat()) seat->listenToKeys(this);
  home_ = makeOverlay(*output);
  surfaceScale_ =
      std::make_unique<SurfaceScale>(connection, home_->surface(), [this] { scheduleUpdate(); });
  scale_ = surfaceScale_->on(monitor_);
  for (const auto& other : connection.outputs()) {
    if (other.get() != output) others_.push_back(makeOverlay(*other));
  }
}

WaylandMenuSession::~WaylandMenuSession() {
  if (WaylandSeat* seat = connection_.seat()) seat->listenToKeys(nullptr);
  surfaceScale_.reset();
  others_.clear();
  home_.reset();
  connection_.flush();
}

std::unique_ptr<MenuOverlay> WaylandMenuSession::makeOverlay(const WaylandOutput& output) {
  return std::make_unique<MenuOverlay>(connection_, output, client_, [this] { scheduleUpdate(); });
}

std::unique_ptr<MenuWindow> WaylandMenuSession::makeWindow() {
  return std::make_unique<WaylandMenuWindow>(connection_, home_->surface(), client_, *this);
}

void WaylandMenuSession::windowShown() {
  surfaceScale_->shown();
  if (surfaceScale_->on(monitor_) != scale_) scheduleUpdate();
}

void WaylandMenuSession::keyboardFocusChanged(bool isHere) {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  keyboardLoss_.reset();
  if (isHere) return;
  // It leaves for a moment when it goes to another overlay and when a keyboard is plugged in.
  constexpr int64_t Moment = 100'000'000;
  keyboardLoss_ = loop.scheduleAt(loop.now() + Moment, [this] {
    keyboardLoss_.reset();
    end();
  });
}

void WaylandMenuSession::end() {
  if (!std::exchange(hasEnded_, true)) client_.menuSessionEnded();
}

void WaylandMenuSession::scheduleUpdate() {
  if (update_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  update_ = loop.scheduleAt(loop.now(), [this] {
    update_.reset();
    update();
  });
}

const WaylandOutput* WaylandMenuSession::outputOf(const MenuOverlay& overlay) const {
  const auto& outputs = connection_.outputs();
  const auto found = std::ranges::find_if(
      outputs, [&](const auto& output) { return output->globalName() == overlay.outputName(); });
  return found != outputs.end() ? found->get() : nullptr;
}

bool WaylandMenuSession::hasOverlay(const WaylandOutput& output) const {
  const uint32_t name = output.globalName();
  return home_->outputName() == name ||
         std::ranges::any_of(others_, [name](const auto& o) { return o->outputName() == name; });
}

void WaylandMenuSession::update() {
  if (hasEnded_) return;
  const WaylandOutput* output = outputOf(*home_);
  if (output == nullptr || home_->isClosed()) return end();
  monitor_ = output->monitor();
  home_->follow(monitor_);
  std::erase_if(others_, [this](const auto& other) { return outputOf(*other) == nullptr; });
  for (const auto& other : others_)
    other->follow(outputOf(*other)->monitor());
  for (const auto& added : connection_.outputs()) {
    if (!hasOverlay(*added)) others_.push_back(makeOverlay(*added));
  }
  const double scale = surfaceScale_->on(monitor_);
  if (scale == scale_) return;
  scale_ = scale;
  client_.menuScaleChanged();
}
