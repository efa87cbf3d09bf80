#include "Hosts/X11/X11Bar.h"

#include <algorithm>
#include <cmath>
#include <utility>

X11Bar::X11Bar(X11Connection& connection, const X11Monitors& monitors, const Monitor& monitor,
               int height, SurfaceClient& client)
    : X11EventHandler(connection),
      monitors_(monitors),
      height_(height),
      client_(client),
      window_(connection),
      painter_(connection, window_.id(), rootVisual(connection.screen())),
      pointer_(client) {
  X11Bar::moveTo(monitor);
}

void X11Bar::moveTo(const Monitor& monitor) {
  scale_ = monitor.scale;
  PixelRect frame = pixelFrame(monitor);
  frame.height = static_cast<int>(std::lround(height_ * scale_));
  widthInPixels_ = frame.width;
  window_.place(frame, monitors_.known());
}

void X11Bar::setBackground(std::span<const uint32_t> rows) {
  if (!std::ranges::equal(rows, background_)) {
    background_.assign(rows.begin(), rows.end());
    painter_.setBackground(rows);
    // The item has its own background, and is shown anew in the next frame.
    painter_.clearAround({0, 0, widthInPixels_, static_cast<int>(rows.size())}, itemFrame_);
  }
  window_.show();
  connection().flush();
}

void X11Bar::presentItem(const PixelPicture& picture, int x, PixelRect changed) {
  const PixelRect before = std::exchange(itemFrame_, {x, 0, picture.width, picture.height});
  if (itemFrame_ != before) {
    changed = {0, 0, picture.width, picture.height};
    itemPixels_.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    painter_.clearAround(before, itemFrame_);
  }
  for (int y = changed.y; y < changed.y + changed.height; ++y) {
    std::copy_n(picture.row(y) + changed.x, changed.width,
                itemPixels_.begin() + static_cast<ptrdiff_t>(y) * picture.width + changed.x);
  }
  painter_.paint(picture, changed, x);
  connection().flush();
}

void X11Bar::requestFrame() {
  isFrameWanted_ = true;
  if (!isInSight_ || frame_) return;
  // X11 does not tell when a picture is on the screen: any time is as good.
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  frame_ = loop.scheduleAt(loop.now(), [this] {
    frame_.reset();
    takeFrame();
  });
}

void X11Bar::takeFrame() {
  frame_.reset();
  if (std::exchange(isFrameWanted_, false)) client_.frameReady();
}

void X11Bar::handleEvent(const xcb_generic_event_t& event) {
  const auto isOwn = [this](xcb_window_t window) { return window == window_.id(); };
  switch (eventType(event)) {
    case XCB_EXPOSE:
      if (isOwn(eventAs<xcb_expose_event_t>(event).window)) {
        repaint(eventAs<xcb_expose_event_t>(event));
      }
      break;
    case XCB_VISIBILITY_NOTIFY: {
      const auto& visibility = eventAs<xcb_visibility_notify_event_t>(event);
      if (isOwn(visibility.window)) {
        setInSight(visibility.state != XCB_VISIBILITY_FULLY_OBSCURED);
      }
      break;
    }
    case XCB_UNMAP_NOTIFY:
      if (isOwn(eventAs<xcb_unmap_notify_event_t>(event).window)) {
        setInSight(false);
        pointer_.loseWindow();
      }
      break;
    case XCB_CONFIGURE_NOTIFY: {
      const auto& configuration = eventAs<xcb_configure_notify_event_t>(event);
      if (isOwn(configuration.window)) adoptWidth(configuration.width);
      break;
    }
    case XCB_DESTROY_NOTIFY:
      if (isOwn(eventAs<xcb_destroy_notify_event_t>(event).window)) client_.surfaceClosed();
      break;
    default:
      pointer_.handleEvent(event, window_.id(), scale_);
      break;
  }
}

/// A window manager may give another width than it was asked for.
void X11Bar::adoptWidth(int width) {
  if (width == widthInPixels_) return;
  widthInPixels_ = width;
  client_.surfaceChanged();
}

void X11Bar::setInSight(bool isInSight) {
  if (std::exchange(isInSight_, isInSight) == isInSight) return;
  if (!isInSight) {
    frame_.reset();
    return;
  }
  client_.surfaceChanged();
  // At once, so that the exposure that follows shows the present picture and no past one.
  takeFrame();
}

void X11Bar::repaint(const xcb_expose_event_t& exposed) {
  const int left = std::max<int>(exposed.x, itemFrame_.x);
  const int top = std::max<int>(exposed.y, itemFrame_.y);
  const int right = std::min(exposed.x + exposed.width, itemFrame_.x + itemFrame_.width);
  const int bottom = std::min(exposed.y + exposed.height, itemFrame_.y + itemFrame_.height);
  painter_.paint(keptPicture(), {left - itemFrame_.x, top, right - left, bottom - top},
                 itemFrame_.x);
}

PixelPicture X11Bar::keptPicture() const {
  return {itemPixels_, itemFrame_.width, itemFrame_.height, itemFrame_.width};
}
