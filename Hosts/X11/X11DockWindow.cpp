#include "Hosts/X11/X11DockWindow.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

namespace {

constexpr uint32_t OnEachDesktop = 0xFFFFFFFF;

constexpr uint32_t EventMask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                               XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_ENTER_WINDOW |
                               XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_POINTER_MOTION |
                               XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;

/// Space is kept free from the edge of the whole desktop. Below another monitor that would take
/// that monitor's space away from windows, so there is none.
bool isBelowAnotherMonitor(const PixelRect& frame, const std::vector<X11Monitor>& monitors) {
  return std::ranges::any_of(monitors, [&](const X11Monitor& monitor) {
    const PixelRect& other = monitor.frame;
    const bool sharesColumns = other.x < frame.x + frame.width && frame.x < other.x + other.width;
    return other.y < frame.y && sharesColumns;
  });
}

}  // namespace

X11DockWindow::X11DockWindow(X11Connection& connection)
    : X11EventHandler(connection), id_(xcb_generate_id(connection.get())) {
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, id_, connection.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &EventMask);
  describe();
}

X11DockWindow::~X11DockWindow() {
  if (id_ == XCB_WINDOW_NONE) return;
  xcb_destroy_window(connection().get(), id_);
  connection().flush();
}

template <typename Value>
void X11DockWindow::setProperty(xcb_atom_t name, xcb_atom_t type, uint8_t format,
                                const Value& values) {
  xcb_change_property(connection().get(), XCB_PROP_MODE_REPLACE, id_, name, type, format,
                      static_cast<uint32_t>(std::size(values)), std::data(values));
}

void X11DockWindow::describe() {
  constexpr std::string_view Title = "Menu bar";
  using namespace std::string_view_literals;
  constexpr std::string_view InstanceAndClass = "velmora-menubar\0Velmora-menubar\0"sv;
  constexpr uint8_t Text = 8;
  constexpr uint8_t Words = 32;
  xcb_connection_t* const x11 = connection().get();
  const auto atom = [this](X11Atom name) { return connection().atom(name); };

  setProperty(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, Text, Title);
  setProperty(atom(X11Atom::NetWmName), atom(X11Atom::Utf8String), Text, Title);
  setProperty(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, Text, InstanceAndClass);
  std::array<char, HOST_NAME_MAX + 1> host{};
  if (gethostname(host.data(), host.size() - 1) == 0) {
    setProperty(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, Text, std::string_view(host.data()));
    // Means something on that machine only.
    const std::array process{static_cast<uint32_t>(getpid())};
    setProperty(atom(X11Atom::NetWmPid), XCB_ATOM_CARDINAL, Words, process);
  }
  setProperty(atom(X11Atom::NetWmWindowType), XCB_ATOM_ATOM, Words,
              std::array{atom(X11Atom::NetWmWindowTypeDock)});
  setProperty(atom(X11Atom::WmProtocols), XCB_ATOM_ATOM, Words,
              std::array{atom(X11Atom::WmDeleteWindow), atom(X11Atom::NetWmPing)});
  xcb_icccm_wm_hints_t hints{};
  xcb_icccm_wm_hints_set_input(&hints, 0);
  xcb_icccm_wm_hints_set_normal(&hints);
  xcb_icccm_set_wm_hints(x11, id_, &hints);
}

void X11DockWindow::place(const PixelRect& frame, const std::vector<X11Monitor>& monitors) {
  frame_ = frame;
  reservedHeight_ =
      isBelowAnotherMonitor(frame, monitors) ? 0 : static_cast<uint32_t>(frame.y + frame.height);
  applyPlace();
}

void X11DockWindow::applyPlace() {
  xcb_connection_t* const x11 = connection().get();
  const auto x = static_cast<uint32_t>(frame_.x);
  const auto y = static_cast<uint32_t>(frame_.y);
  const auto width = static_cast<uint32_t>(frame_.width);
  const auto height = static_cast<uint32_t>(frame_.height);

  // Left, right, top and bottom, then the start and the end of each in that order.
  std::array<uint32_t, 12> strut{};
  if (reservedHeight_ > 0) {
    strut[2] = reservedHeight_;
    strut[8] = x;
    strut[9] = x + width - 1;
  }
  setProperty(connection().atom(X11Atom::NetWmStrut), XCB_ATOM_CARDINAL, 32,
              std::span(strut).first<4>());
  setProperty(connection().atom(X11Atom::NetWmStrutPartial), XCB_ATOM_CARDINAL, 32, strut);

  xcb_size_hints_t hints{};
  xcb_icccm_size_hints_set_position(&hints, 1, frame_.x, frame_.y);
  xcb_icccm_size_hints_set_size(&hints, 1, frame_.width, frame_.height);
  xcb_icccm_size_hints_set_min_size(&hints, frame_.width, frame_.height);
  xcb_icccm_size_hints_set_max_size(&hints, frame_.width, frame_.height);
  xcb_icccm_set_wm_normal_hints(x11, id_, &hints);

  const std::array place{x, y, width, height};
  xcb_configure_window(x11, id_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       place.data());
  connection().flush();
}

void X11DockWindow::show() {
  if (isShown_) return;
  isShown_ = true;
  applyState();
  xcb_map_window(connection().get(), id_);
}

/// What belongs to the window manager once the window is mapped, and may go with it.
void X11DockWindow::applyState() {
  const auto atom = [this](X11Atom name) { return connection().atom(name); };
  setProperty(atom(X11Atom::NetWmState), XCB_ATOM_ATOM, 32,
              std::array{atom(X11Atom::NetWmStateSticky), atom(X11Atom::NetWmStateAbove),
                         atom(X11Atom::NetWmStateSkipTaskbar), atom(X11Atom::NetWmStateSkipPager)});
  setProperty(atom(X11Atom::NetWmDesktop), XCB_ATOM_CARDINAL, 32, std::array{OnEachDesktop});
}

void X11DockWindow::handleEvent(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_MAP_NOTIFY:
      if (eventAs<xcb_map_notify_event_t>(event).window == id_) isMapped_ = true;
      break;
    case XCB_UNMAP_NOTIFY:
      if (eventAs<xcb_unmap_notify_event_t>(event).window != id_) break;
      isMapped_ = false;
      // A window is unmapped for a moment when it gets or loses its frame.
      if (!returning_) {
        NSRunLoop& loop = NSRunLoop::mainRunLoop();
        returning_ = loop.scheduleAt(loop.now(), [this] {
          returning_.reset();
          returnToScreen();
        });
      }
      break;
    case XCB_REPARENT_NOTIFY: {
      const auto& reparenting = eventAs<xcb_reparent_notify_event_t>(event);
      // The window manager has gone. The next one reads these when it takes the window over.
      if (reparenting.window == id_ && reparenting.parent == connection().root()) {
        applyState();
        applyPlace();
      }
      break;
    }
    case XCB_DESTROY_NOTIFY:
      if (eventAs<xcb_destroy_notify_event_t>(event).window != id_) break;
      id_ = XCB_WINDOW_NONE;
      returning_.reset();
      break;
    case XCB_CLIENT_MESSAGE:
      answer(eventAs<xcb_client_message_event_t>(event));
      break;
    default:
      break;
  }
}

void X11DockWindow::answer(const xcb_client_message_event_t& message) {
  if (message.window != id_ || message.type != connection().atom(X11Atom::WmProtocols) ||
      message.data.data32[0] != connection().atom(X11Atom::NetWmPing)) {
    return;
  }
  xcb_client_message_event_t pong = message;
  pong.window = connection().root();
  xcb_send_event(connection().get(), 0, connection().root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&pong));
}

/// Where a window manager runs, the user has hidden the window by it.
void X11DockWindow::returnToScreen() {
  if (isMapped_ || hasWindowManager()) return;
  applyState();
  xcb_map_window(connection().get(), id_);
  applyPlace();
}

/// Only one program may ask to decide about the windows of the root window.
bool X11DockWindow::hasWindowManager() {
  const auto answer =
      connection().waitFor(xcb_get_window_attributes_reply,
                           xcb_get_window_attributes(connection().get(), connection().root()));
  return answer && (answer->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}
