#include "Hosts/Wayland/WaylandDisplay.h"

#include "Hosts/Wayland/WaylandBar.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandMenuSession.h"

namespace {

class WaylandDisplay : public Display {
 public:
  WaylandDisplay(std::unique_ptr<WaylandConnection> shown, std::unique_ptr<WaylandConnection> input)
      : shown_(std::move(shown)), input_(std::move(input)) {
    input_->onEvents = [this] {
      if (bar_ != nullptr) bar_->inputCame();
    };
    input_->onOutputsChanged = [this] {
      if (menus_ != nullptr) menus_->outputsChanged();
      scheduleChange();
    };
    shown_->onOutputsChanged = [this] { scheduleChange(); };
    const auto lost = [this](const std::string& reason) {
      if (!std::exchange(isLost_, true) && onLost) onLost(reason);
    };
    shown_->onLost = lost;
    input_->onLost = lost;
    input_->setWatched(true);
    shown_->setWatched(true);
  }

  std::vector<Monitor> monitors() const override {
    std::vector<Monitor> monitors;
    for (const auto& output : input_->outputs()) {
      // An output is of use once both connections know it.
      const Monitor monitor = output->monitor();
      if (shown_->outputNamed(monitor.name) != nullptr) monitors.push_back(monitor);
    }
    return monitors;
  }

  std::unique_ptr<BarSurface> makeBar(const Monitor& monitor, int height,
                                      SurfaceClient& client) override;
  std::unique_ptr<MenuSession> beginMenus(const Monitor& monitor,
                                          MenuSessionClient& client) override;

 private:
  /// Tells the display when the bar has gone.
  class Bar : public WaylandBar {
   public:
    Bar(WaylandDisplay& display, const Monitor& monitor, int height, SurfaceClient& client)
        : WaylandBar({*display.shown_, *display.input_}, monitor, height, client),
          display_(display) {
      display_.bar_ = this;
    }
    ~Bar() override {
      if (display_.bar_ == this) display_.bar_ = nullptr;
    }

   private:
    WaylandDisplay& display_;
  };

  /// Tells the display when the menus have closed.
  class Menus : public WaylandMenuSession {
   public:
    Menus(WaylandDisplay& display, const Monitor& monitor, MenuSessionClient& client)
        : WaylandMenuSession(*display.input_, monitor, client), display_(display) {
      display_.menus_ = this;
    }
    ~Menus() override { display_.menus_ = nullptr; }

   private:
    WaylandDisplay& display_;
  };

  void scheduleChange() {
    if (change_) return;
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    change_ = loop.scheduleAt(loop.now(), [this] {
      change_.reset();
      if (onMonitorsChanged) onMonitorsChanged();
    });
  }

  std::unique_ptr<WaylandConnection> shown_;
  std::unique_ptr<WaylandConnection> input_;
  Bar* bar_ = nullptr;
  Menus* menus_ = nullptr;
  NSRunLoop::Timer change_;
  bool isLost_ = false;
};

std::unique_ptr<BarSurface> WaylandDisplay::makeBar(const Monitor& monitor, int height,
                                                    SurfaceClient& client) {
  return std::make_unique<Bar>(*this, monitor, height, client);
}

std::unique_ptr<MenuSession> WaylandDisplay::beginMenus(const Monitor& monitor,
                                                        MenuSessionClient& client) {
  if (isLost_ || menus_ != nullptr || input_->outputNamed(monitor.name) == nullptr) return nullptr;
  return std::make_unique<Menus>(*this, monitor, client);
}

}  // namespace

WaylandOffer openWaylandDisplay() {
  // Side by side: the compositor answers one while the other is read.
  auto input = WaylandConnection::begin();
  auto shown = WaylandConnection::begin();
  if (!input || !shown) return {};
  input->learnGlobals();
  shown->learnGlobals();
  if (!input->describeGlobals() || !shown->describeGlobals()) return {};
  if (input->layerShell() == nullptr || input->subcompositor() == nullptr) return {nullptr, true};
  return {std::make_unique<WaylandDisplay>(std::move(shown), std::move(input)), false};
}
