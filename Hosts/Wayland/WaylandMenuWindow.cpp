#include "Hosts/Wayland/WaylandMenuWindow.h"

#include "Hosts/Wayland/WaylandMenuSession.h"

WaylandMenuWindow::WaylandMenuWindow(WaylandConnection& connection, wl_surface* overlay,
                                     MenuSessionClient& client, WaylandMenuSession& session)
    : connection_(connection),
      client_(client),
      session_(session),
      picture_(connection, overlay, [this] { frameShown(); }) {}

WaylandMenuWindow::~WaylandMenuWindow() { connection_.flushSoon(); }

void WaylandMenuWindow::present(PixelRect frame, const PixelPicture& picture, PixelRect changed) {
  picture_.present(picture, frame.x, frame.y, session_.scale(), changed);
  connection_.flushSoon();
}

void WaylandMenuWindow::requestFrame() {
  wantsFrame_ = true;
  if (!picture_.isAwaitingFrame()) scheduleFrame();
}

void WaylandMenuWindow::frameShown() {
  session_.windowShown();
  if (wantsFrame_) scheduleFrame();
}

void WaylandMenuWindow::scheduleFrame() {
  wantsFrame_ = false;
  if (frame_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  frame_ = loop.scheduleAt(loop.now(), [this] {
    frame_.reset();
    client_.menuFrameReady(*this);
  });
}
