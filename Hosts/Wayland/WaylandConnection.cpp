#include "Hosts/Wayland/WaylandConnection.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace {

/// The newest versions whose events are known here.
constexpr uint32_t CompositorVersion = 4;
constexpr uint32_t LayerShellVersion = 4;
constexpr uint32_t OutputManagerVersion = 3;

template <typename Holder>
void bindGlobal(Holder& holder, wl_registry* registry, uint32_t name, const wl_interface& interface,
                uint32_t version) {
  using Type = typename Holder::element_type;
  holder.reset(static_cast<Type*>(wl_registry_bind(registry, name, &interface, version)));
}

}  // namespace

std::unique_ptr<WaylandConnection> WaylandConnection::begin() {
  wl_display* display = wl_display_connect(nullptr);
  if (display == nullptr) return nullptr;
  std::unique_ptr<WaylandConnection> connection(new WaylandConnection(display));
  connection->flush();
  return connection;
}

void WaylandConnection::learnGlobals() {
  roundTrip();
  flush();
}

bool WaylandConnection::describeGlobals() {
  roundTrip();
  return !isLost_ && compositor_ && shm_;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), registry_(wl_display_get_registry(display)) {
  static constexpr wl_registry_listener Listener = {
      &WaylandEvent<&WaylandConnection::globalAdded>::call,
      &WaylandEvent<&WaylandConnection::globalRemoved>::call,
  };
  wl_registry_add_listener(registry_.get(), &Listener, this);
}

WaylandOutput* WaylandConnection::outputNamed(const std::string& name) const {
  const auto found = std::ranges::find_if(
      outputs_, [&](const auto& output) { return output->monitor().name == name; });
  return found != outputs_.end() ? found->get() : nullptr;
}

void WaylandConnection::globalAdded(wl_registry* registry, uint32_t name, const char* interface,
                                    uint32_t version) {
  const std::string_view kind = interface;
  const auto upTo = [version](uint32_t known) { return std::min(version, known); };
  if (kind == wl_compositor_interface.name) {
    bindGlobal(compositor_, registry, name, wl_compositor_interface, upTo(CompositorVersion));
  } else if (kind == wl_subcompositor_interface.name) {
    bindGlobal(subcompositor_, registry, name, wl_subcompositor_interface, 1);
  } else if (kind == wl_shm_interface.name) {
    bindGlobal(shm_, registry, name, wl_shm_interface, 1);
  } else if (kind == zwlr_layer_shell_v1_interface.name) {
    bindGlobal(layerShell_, registry, name, zwlr_layer_shell_v1_interface, upTo(LayerShellVersion));
  } else if (kind == wp_viewporter_interface.name) {
    bindGlobal(viewporter_, registry, name, wp_viewporter_interface, 1);
  } else if (kind == wp_fractional_scale_manager_v1_interface.name) {
    bindGlobal(fractionalScale_, registry, name, wp_fractional_scale_manager_v1_interface, 1);
  } else if (kind == zxdg_output_manager_v1_interface.name) {
    bindGlobal(outputManager_, registry, name, zxdg_output_manager_v1_interface,
               upTo(OutputManagerVersion));
    for (const auto& output : outputs_)
      output->describeWith(outputManager_.get());
  } else if (kind == wl_output_interface.name) {
    outputs_.push_back(std::make_unique<WaylandOutput>(registry, name, version, [this] {
      if (onOutputsChanged) onOutputsChanged();
    }));
    if (outputManager_) outputs_.back()->describeWith(outputManager_.get());
  } else if (kind == wl_seat_interface.name && !seatGlobal_) {
    seatGlobal_ = {name, version};
  }
  makeSeat();
}

void WaylandConnection::makeSeat() {
  // The globals come in any order.
  if (seat_ || !seatGlobal_ || !compositor_ || !shm_) return;
  seat_ = std::make_unique<WaylandSeat>(registry_.get(), seatGlobal_->name, seatGlobal_->version,
                                        compositor_.get(), shm_.get());
}

void WaylandConnection::globalRemoved(wl_registry*, uint32_t name) {
  if (seatGlobal_ && seatGlobal_->name == name) {
    seat_.reset();
    seatGlobal_.reset();
  }
  const auto removed =
      std::erase_if(outputs_, [&](const auto& output) { return output->globalName() == name; });
  if (removed > 0 && onOutputsChanged) onOutputsChanged();
}

void WaylandConnection::setWatched(bool watched) {
  if (watched == isWatched()) return;
  if (!watched) return watch_.reset();
  watch_ = NSRunLoop::mainRunLoop().watchDescriptor(wl_display_get_fd(display_.get()),
                                                    [this] { readEvents(); });
}

void WaylandConnection::readEvents() {
  if (isLost_) return;
  wl_display* const display = display_.get();
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return lose();
  }
  // Returns at once if nothing has arrived.
  if (wl_display_read_events(display) < 0 || wl_display_dispatch_pending(display) < 0) {
    return lose();
  }
  if (onEvents) onEvents();
  flush();
}

void WaylandConnection::flush() {
  if (isLost_) return;
  if (wl_display_flush(display_.get()) >= 0) return;
  if (errno != EAGAIN) {
    // What the compositor has said last may still be there to read: the reason.
    if (errno == EPIPE) return readEvents();
    return lose();
  }
  // The compositor does not read just now, for its own reasons.
  constexpr int64_t Pause = 50'000'000;
  flushAfter(Pause);
}

void WaylandConnection::flushAfter(int64_t pause) {
  if (flushing_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  flushing_ = loop.scheduleAt(loop.now() + pause, [this] {
    flushing_.reset();
    flush();
  });
}

void WaylandConnection::roundTrip() {
  if (!isLost_ && wl_display_roundtrip(display_.get()) < 0) lose();
}

void WaylandConnection::lose() {
  if (isLost_) return;
  isLost_ = true;
  setWatched(false);
  std::string reason = "the Wayland display has gone";
  if (wl_display_get_error(display_.get()) == EPROTO) {
    const wl_interface* interface = nullptr;
    uint32_t object = 0;
    const uint32_t code = wl_display_get_protocol_error(display_.get(), &interface, &object);
    reason = std::string("error: the Wayland display has refused what the bar asked for: ") +
             (interface != nullptr ? interface->name : "an object") + ", error " +
             std::to_string(code);
  }
  if (onLost) onLost(reason);
}
