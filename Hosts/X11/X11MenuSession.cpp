#include "Hosts/X11/X11MenuSession.h"

#include <xcb/screensaver.h>

#include <algorithm>
#include <utility>

#include "Hosts/X11/X11Monitors.h"
#include "Hosts/X11/X11Pointer.h"

X11MenuSession::X11MenuSession(X11Connection& connection, std::unique_ptr<X11InputGrab> grab,
                               const Monitor& monitor, MenuSessionClient& client,
                               std::function<void()> onEnd)
    : X11EventHandler(connection),
      monitor_(monitor),
      client_(client),
      onEnd_(std::move(onEnd)),
      grab_(std::move(grab)),
      visual_(connection),
      keyboard_(connection) {
  followScreenSaver();
  connection.flush();
}

X11MenuSession::~X11MenuSession() {
  if (screenSaverEvent_) {
    xcb_screensaver_select_input(connection().get(), connection().root(), 0);
    connection().flush();
  }
  onEnd_();
}

/// Programs that lock the screen cannot do so while another one has the input, but try for a while.
void X11MenuSession::followScreenSaver() {
  const xcb_query_extension_reply_t* extension =
      xcb_get_extension_data(connection().get(), &xcb_screensaver_id);
  if (extension == nullptr || extension->present == 0) return;
  screenSaverEvent_ = static_cast<uint8_t>(extension->first_event + XCB_SCREENSAVER_NOTIFY);
  xcb_screensaver_select_input(connection().get(), connection().root(),
                               XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
}

std::unique_ptr<MenuWindow> X11MenuSession::makeWindow() {
  auto window = std::make_unique<X11MenuWindow>(connection(), visual_, pixelFrame(monitor_),
                                                client_, windows_);
  if (!grab_) window->hide();
  return window;
}

void X11MenuSession::follow(const std::vector<Monitor>& monitors) {
  const auto found = std::ranges::find(monitors, monitor_.name, &Monitor::name);
  if (found == monitors.end() || pixelFrame(*found) != pixelFrame(monitor_)) {
    end();
    return;
  }
  if (std::exchange(monitor_, *found).scale != monitor_.scale) client_.menuScaleChanged();
}

void X11MenuSession::end() {
  if (!grab_) return;
  for (X11MenuWindow* window : windows_)
    window->hide();
  grab_.reset();
  client_.menuSessionEnded();
}

void X11MenuSession::handleEvent(const xcb_generic_event_t& event) {
  if (!grab_) return;
  switch (eventType(event)) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE: {
      const auto& key = eventAs<xcb_key_press_event_t>(event);
      if (key.event != grab_->window()) break;
      const bool isPress = eventType(event) == XCB_KEY_PRESS;
      const auto told =
          keyboard_.keyEvent(key.detail, isPress ? NSEventType::KeyDown : NSEventType::KeyUp);
      if (told) client_.menuKeyEvent(*told);
      break;
    }
    case XCB_UNMAP_NOTIFY:
      if (eventAs<xcb_unmap_notify_event_t>(event).window == grab_->window()) end();
      break;
    case XCB_DESTROY_NOTIFY:
      if (eventAs<xcb_destroy_notify_event_t>(event).window == grab_->window()) end();
      break;
    default:
      if (eventType(event) == screenSaverEvent_) {
        const auto& change = eventAs<xcb_screensaver_notify_event_t>(event);
        if (change.state == XCB_SCREENSAVER_STATE_ON) end();
        break;
      }
      handlePointer(event);
      break;
  }
}

void X11MenuSession::handlePointer(const xcb_generic_event_t& event) {
  const auto told = pointerEventOf(event, monitor_.scale);
  // All of the pointer's events name their window alike.
  if (!told || eventAs<xcb_button_press_event_t>(event).event != grab_->window()) return;
  // Each way from a menu's window enters this one again.
  if (told->kind == PointerEvent::Kind::Enter && std::exchange(hasPointer_, true)) return;
  client_.menuPointerEvent(*told);
}
