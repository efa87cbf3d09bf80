#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/MenuOverlay.h"
#include "Hosts/Wayland/SurfaceScale.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandKeyboard.h"

/// Menus over everything: an overlay on each output takes the input. The connection must be watched
/// and outlive the session.
class WaylandMenuSession : public MenuSession, private WaylandKeyClient {
 public:
  /// Throws `std::runtime_error` if the monitor has gone.
  WaylandMenuSession(WaylandConnection& connection, const Monitor& monitor,
                     MenuSessionClient& client);
  WaylandMenuSession(const WaylandMenuSession&) = delete;
  WaylandMenuSession& operator=(const WaylandMenuSession&) = delete;
  ~WaylandMenuSession() override;

  double scale() const override { return scale_; }
  int pixelGrid() const override { return pixelGridAt(scale_); }
  bool isComposited() const override { return true; }
  std::unique_ptr<MenuWindow> makeWindow() override;

  /// An output has come, gone or changed.
  void outputsChanged() { scheduleUpdate(); }
  /// A window, and so its overlay, has been seen.
  void windowShown();

 private:
  void keyEvent(const NSEvent& event) override { client_.menuKeyEvent(event); }
  void keyboardFocusChanged(bool isHere) override;
  std::unique_ptr<MenuOverlay> makeOverlay(const WaylandOutput& output);
  void scheduleUpdate();
  void update();
  const WaylandOutput* outputOf(const MenuOverlay& overlay) const;
  bool hasOverlay(const WaylandOutput& output) const;
  void end();

  WaylandConnection& connection_;
  MenuSessionClient& client_;
  Monitor monitor_;
  double scale_ = 1;
  bool hasEnded_ = false;
  NSRunLoop::Timer update_;
  NSRunLoop::Timer keyboardLoss_;
  std::unique_ptr<MenuOverlay> home_;  ///< On the session's monitor.
  std::vector<std::unique_ptr<MenuOverlay>> others_;
  std::unique_ptr<SurfaceScale> surfaceScale_;
};
