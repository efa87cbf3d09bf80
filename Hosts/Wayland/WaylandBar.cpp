#include "Hosts/Wayland/WaylandBar.h"

#include <stdexcept>

namespace {

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
      connections_.shown, shownOn->output(),
      LayerSurface::Place{.height = height_,
                          .space = LayerSurface::Space::Reserved,
                          .input = LayerSurface::Input::Passed},
      LayerSurface::Events{[this] { changed(); }, [this] { closedByDisplay(); }});
  item_ = std::make_unique<PictureSurface>(connections_.shown, bar_->surface(),
                                           [this] { frameShown(); });
  scale_ =
      std::make_unique<SurfaceScale>(connections_.shown, bar_->surface(), [this] { changed(); });
  input_ = std::make_unique<LayerSurface>(
      connections_.input, inputOn->output(), LayerSurface::Place{.height = height_},
      LayerSurface::Events{[this] { input_->fillClear(); }, [] {}});
  wl_surface_set_user_data(input_->surface(), static_cast<WaylandInputTarget*>(this));
  inputCame();
}

void WaylandBar::close() {
  frame_.reset();
  wantsFrame_ = false;
  if (input_ && connections_.input.seat() != nullptr) {
    connections_.input.seat()->forget(input_->surface());
  }
  input_.reset();
  item_.reset();
  scale_.reset();
  bar_.reset();
}

void WaylandBar::moveTo(const Monitor& monitor) {
  const bool isElsewhere = monitor.name != monitor_.name;
  monitor_ = monitor;
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

double WaylandBar::scale() const { return scale_ ? scale_->on(monitor_) : monitor_.scale; }

int WaylandBar::pixelGrid() const { return pixelGridAt(scale()); }

void WaylandBar::setBackground(std::span<const uint32_t> rows) {
  bar_->fill(rows, scale());
  connections_.shown.flush();
}

void WaylandBar::presentItem(const PixelPicture& picture, int x, PixelRect changed) {
  item_->present(picture, x, 0, scale(), changed);
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
  const double before = scale();
  scale_->shown();
  if (scale() != before) return changed();
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
