#include "Hosts/X11/X11Display.h"

#include <utility>

#include "Hosts/X11/X11Bar.h"
#include "Hosts/X11/X11Connection.h"
#include "Hosts/X11/X11MenuSession.h"
#include "Hosts/X11/X11Monitors.h"
#include "Hosts/X11/X11ScaleSetting.h"

namespace {

class X11Display : public Display {
 public:
  X11Display() {
    connection_.onLost = [this] {
      if (menus_ != nullptr) menus_->end();
      if (onLost) onLost("the X11 display has gone");
    };
    readMonitors();
  }

  std::vector<Monitor> monitors() const override { return monitors_; }
  bool hasCommonPlaces() const override { return true; }

  std::unique_ptr<BarSurface> makeBar(const Monitor& monitor, int height,
                                      SurfaceClient& client) override {
    return std::make_unique<X11Bar>(connection_, x11Monitors_, monitor, height, client);
  }

  std::unique_ptr<MenuSession> beginMenus(const Monitor& monitor,
                                          MenuSessionClient& client) override {
    // The server would let this program take the input twice, but give it back at the first end.
    if (menus_ != nullptr) return nullptr;
    auto grab = std::make_unique<X11InputGrab>(connection_);
    if (!grab->take()) return nullptr;
    auto session = std::make_unique<X11MenuSession>(connection_, std::move(grab), monitor, client,
                                                    [this] { menus_ = nullptr; });
    menus_ = session.get();
    return session;
  }

 private:
  void readMonitors() {
    x11Monitors_.read();
    const double scale = scaleSetting_.read();
    monitors_.clear();
    for (const X11Monitor& monitor : x11Monitors_.known()) {
      const PixelRect& frame = monitor.frame;
      monitors_.push_back({.name = monitor.name,
                           .frame = NSMakeRect(frame.x / scale, frame.y / scale,
                                               frame.width / scale, frame.height / scale),
                           .scale = scale,
                           .isPrimary = monitor.isPrimary});
    }
  }

  void scheduleSettling() {
    if (settling_) return;
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    settling_ = loop.scheduleAt(loop.now(), [this] {
      settling_.reset();
      const std::vector<Monitor> before = monitors_;
      readMonitors();
      if (monitors_ == before) return;
      if (menus_ != nullptr) menus_->follow(monitors_);
      if (onMonitorsChanged) onMonitorsChanged();
    });
  }

  X11Connection connection_;
  X11Monitors x11Monitors_{connection_, [this] { scheduleSettling(); }};
  X11ScaleSetting scaleSetting_{connection_, [this] { scheduleSettling(); }};
  std::vector<Monitor> monitors_;
  X11MenuSession* menus_ = nullptr;  // The open ones.
  NSRunLoop::Timer settling_;
};

}  // namespace

std::unique_ptr<Display> openX11Display() { return std::make_unique<X11Display>(); }
