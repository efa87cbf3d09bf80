#include "Hosts/Wayland/MenuOverlay.h"

#include <utility>

namespace {

NSPoint sum(NSPoint a, NSPoint b) { return {a.x + b.x, a.y + b.y}; }

}  // namespace

MenuOverlay::MenuOverlay(WaylandConnection& connection, const WaylandOutput& output,
                         MenuSessionClient& client, std::function<void()> onClosed)
    : connection_(connection),
      client_(client),
      onClosed_(std::move(onClosed)),
      outputName_(output.globalName()),
      layer_(connection, output.output(), LayerSurface::Place{.layer = LayerSurface::Layer::Menus},
             LayerSurface::Events{[this] { layer_.fillClear(); }, [this] { closed(); }}) {
  follow(output.monitor());
  wl_surface_set_user_data(layer_.surface(), static_cast<WaylandInputTarget*>(this));
}

MenuOverlay::~MenuOverlay() {
  if (connection_.seat() != nullptr) connection_.seat()->forget(layer_.surface());
}

void MenuOverlay::follow(const Monitor& monitor) {
  origin_ = monitor.frame.origin;
  scale_ = monitor.scale;
}

void MenuOverlay::closed() {
  isClosed_ = true;
  onClosed_();
}

void MenuOverlay::pointerEvent(const PointerEvent& event) {
  PointerEvent onDesktop = event;
  onDesktop.place = sum(origin_, event.place);
  client_.menuPointerEvent(onDesktop);
}

void MenuOverlay::touchEvent(const TouchEvent& event) {
  TouchEvent onDesktop = event;
  onDesktop.place = sum(origin_, event.place);
  client_.menuTouchEvent(onDesktop);
}
