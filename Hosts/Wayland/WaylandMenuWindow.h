#pragma once

#include <optional>

#include "Hosts/Display/MenuSession.h"
#include "Hosts/Wayland/PictureSurface.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

class WaylandMenuSession;

/// A menu's window: a picture on the overlay of its session's output.
class WaylandMenuWindow : public MenuWindow {
 public:
  WaylandMenuWindow(WaylandConnection& connection, wl_surface* overlay, MenuSessionClient& client,
                    WaylandMenuSession& session);
  WaylandMenuWindow(const WaylandMenuWindow&) = delete;
  WaylandMenuWindow& operator=(const WaylandMenuWindow&) = delete;
  ~WaylandMenuWindow() override;

  void present(PixelRect frame, const PixelPicture& picture, PixelRect changed) override;
  void requestFrame() override;

 private:
  void frameShown();
  void scheduleFrame();

  WaylandConnection& connection_;
  MenuSessionClient& client_;
  WaylandMenuSession& session_;
  bool wantsFrame_ = false;
  NSRunLoop::Timer frame_;
  PictureSurface picture_;
};
