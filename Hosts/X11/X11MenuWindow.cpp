#include "Hosts/X11/X11MenuWindow.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

using namespace std::string_view_literals;

X11MenuVisual::X11MenuVisual(X11Connection& connection)
    : connection_(connection), visual_(rootVisual(connection.screen())) {
  const auto owner =
      connection.waitFor(xcb_get_selection_owner_reply,
                         xcb_get_selection_owner(
                             connection.get(), connection.atom(X11Atom::NetWmCompositorSelection)));
  const auto withAlpha = alphaVisual(connection.screen());
  if (!owner || owner->owner == XCB_WINDOW_NONE || !withAlpha) return;
  visual_ = *withAlpha;
  colormap_ = xcb_generate_id(connection.get());
  xcb_create_colormap(connection.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, connection.root(),
                      visual_.type->visual_id);
}

X11MenuVisual::~X11MenuVisual() {
  if (isComposited()) xcb_free_colormap(connection_.get(), colormap_);
}

X11MenuWindow::X11MenuWindow(X11Connection& connection, const X11MenuVisual& visual,
                             const PixelRect& monitor, MenuSessionClient& client,
                             std::vector<X11MenuWindow*>& list)
    : connection_(connection),
      monitor_(monitor),
      client_(client),
      list_(list),
      depth_(visual.visual().depth),
      id_(create(visual)),
      painter_(connection, id_, visual.visual()) {
  list_.push_back(this);
}

X11MenuWindow::~X11MenuWindow() {
  std::erase(list_, this);
  cancelFrame();
  freePixmap();
  xcb_destroy_window(connection_.get(), id_);
  connection_.flush();
}

xcb_window_t X11MenuWindow::create(const X11MenuVisual& visual) {
  constexpr auto InstanceAndClass = "velmora-menubar\0Velmora-menubar\0"sv;
  constexpr uint8_t Text = 8;
  constexpr uint8_t Words = 32;
  xcb_connection_t* const x11 = connection_.get();
  const xcb_window_t id = xcb_generate_id(x11);
  // A border's colour must be told where the visual is not the parent's, even without a border.
  const std::array<uint32_t, 3> values{0, 1, visual.colormap()};
  xcb_create_window(x11, depth_, id, connection_.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.visual().type->visual_id,
                    XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
                    values.data());
  xcb_change_property(x11, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, Text,
                      InstanceAndClass.size(), InstanceAndClass.data());
  // Compositing managers choose shadows and fading by it.
  const xcb_atom_t type = connection_.atom(X11Atom::NetWmWindowTypeDropdownMenu);
  xcb_change_property(x11, XCB_PROP_MODE_REPLACE, id, connection_.atom(X11Atom::NetWmWindowType),
                      XCB_ATOM_ATOM, Words, 1, &type);
  return id;
}

void X11MenuWindow::present(PixelRect frame, const PixelPicture& picture, PixelRect changed) {
  if (isHidden_) return;
  xcb_connection_t* const x11 = connection_.get();
  const PixelRect before = std::exchange(frame_, frame);
  const bool isResized = frame.width != before.width || frame.height != before.height;
  if (isResized) {
    freePixmap();
    pixmap_ = xcb_generate_id(x11);
    xcb_create_pixmap(x11, depth_, pixmap_, id_, static_cast<uint16_t>(frame.width),
                      static_cast<uint16_t>(frame.height));
    changed = {0, 0, frame.width, frame.height};
  }
  painter_.paintOnto(pixmap_, picture, changed);
  // Again also if it is the same, since a server may have made a copy of it.
  xcb_change_window_attributes(x11, id_, XCB_CW_BACK_PIXMAP, &pixmap_);
  // With another size the server forgets what the window showed, and fills it in this very request.
  if (frame != before) place();
  if (!isResized) painter_.clear(changed);
  if (before.isEmpty()) show();
  connection_.flush();
}

void X11MenuWindow::place() {
  // The values of places are signed where they are read.
  const std::array<uint32_t, 4> values{
      static_cast<uint32_t>(monitor_.x + frame_.x), static_cast<uint32_t>(monitor_.y + frame_.y),
      static_cast<uint32_t>(frame_.width), static_cast<uint32_t>(frame_.height)};
  xcb_configure_window(connection_.get(), id_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
}

void X11MenuWindow::show() {
  const uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  xcb_map_window(connection_.get(), id_);
}

void X11MenuWindow::hide() {
  isHidden_ = true;
  cancelFrame();
  xcb_unmap_window(connection_.get(), id_);
}

void X11MenuWindow::freePixmap() {
  if (pixmap_ != XCB_PIXMAP_NONE) xcb_free_pixmap(connection_.get(), pixmap_);
}

void X11MenuWindow::requestFrame() {
  if (frameTimer_ || isHidden_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  frameTimer_ = loop.scheduleAt(std::max(loop.now(), earliestFrame_), [this] { takeFrame(); });
}

void X11MenuWindow::takeFrame() {
  // X11 does not tell when a picture is on the screen: this is about what a display can show.
  constexpr int64_t Interval = 16'000'000;
  frameTimer_.reset();
  earliestFrame_ = NSRunLoop::mainRunLoop().now() + Interval;
  client_.menuFrameReady(*this);
}

void X11MenuWindow::cancelFrame() { frameTimer_.reset(); }
