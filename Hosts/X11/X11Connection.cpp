#include "Hosts/X11/X11Connection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Platform/Foundation/Process/NSLog.h"

namespace {

const xcb_screen_t* screenWithNumber(const xcb_setup_t* setup, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
  for (; screens.rem > 1 && number > 0; --number)
    xcb_screen_next(&screens);
  return screens.data;
}

}  // namespace

X11Connection::X11Connection() {
  int screenNumber = 0;
  connection_.reset(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(get()) != 0) {
    const char* name = std::getenv("DISPLAY");
    throw std::runtime_error(name == nullptr || *name == 0
                                 ? "no X11 display is named by DISPLAY"
                                 : "no connection to the X11 display " + std::string(name));
  }
  setup_ = xcb_get_setup(get());
  screen_ = screenWithNumber(setup_, screenNumber);
  atoms_.emplace(get(), screenNumber);
  // The root window's size and RandR's monitors, new managers of the windows and the settings, and
  // the resources.
  const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(get(), root(), XCB_CW_EVENT_MASK, &mask);
  watch_ = loop_.watchDescriptor(xcb_get_file_descriptor(get()), [this] { dispatchEvents(); });
}

void X11Connection::flush() {
  xcb_flush(get());
  // Where the server is slow to read, xcb reads its events while it waits to write.
  noticeReadEvents();
}

std::vector<uint8_t> X11Connection::property(xcb_window_t window, xcb_atom_t name,
                                             xcb_atom_t type) {
  constexpr uint32_t MaximumWords = 1 << 18;
  const auto answer = waitFor(xcb_get_property_reply,
                              xcb_get_property(get(), 0, window, name, type, 0, MaximumWords));
  if (!answer) return {};
  const auto* bytes = static_cast<const uint8_t*>(xcb_get_property_value(answer.get()));
  return {bytes, bytes + xcb_get_property_value_length(answer.get())};
}

void X11Connection::remove(X11EventHandler* handler) {
  // The list may be walked through just now.
  std::ranges::replace(handlers_, handler, nullptr);
  if (!isDispatching_) std::erase(handlers_, nullptr);
}

/// The descriptor says nothing of events that xcb has taken off it already, nor of its end.
void X11Connection::noticeReadEvents() {
  if (isDispatching_ || readEvent_) return;
  readEvent_.reset(xcb_poll_for_queued_event(get()));
  if (readEvent_ || xcb_connection_has_error(get()) != 0) schedulePass();
}

void X11Connection::schedulePass() {
  if (pass_ || !watch_) return;
  pass_ = loop_.scheduleAt(loop_.now(), [this] {
    pass_.reset();
    dispatchEvents();
  });
}

void X11Connection::dispatchEvents() {
  if (!watch_) return;
  isDispatching_ = true;
  while (const auto event = nextEvent())
    dispatch(*event);
  isDispatching_ = false;
  std::erase(handlers_, nullptr);
  flush();
  if (xcb_connection_has_error(get()) == 0) return;
  // A descriptor at its end is always ready: it would be reported again and again.
  watch_.reset();
  if (onLost) onLost();
}

XcbPointer<xcb_generic_event_t> X11Connection::nextEvent() {
  if (readEvent_) return std::move(readEvent_);
  return XcbPointer<xcb_generic_event_t>(xcb_poll_for_event(get()));
}

void X11Connection::dispatch(const xcb_generic_event_t& event) {
  if (event.response_type == 0) {
    reportRefusal(eventAs<xcb_generic_error_t>(event));
    return;
  }
  if (eventType(event) == XCB_DESTROY_NOTIFY) {
    lastDestroyed_ = eventAs<xcb_destroy_notify_event_t>(event).window;
  }
  // NOLINTNEXTLINE(modernize-loop-convert): a handler may add others.
  for (size_t index = 0; index < handlers_.size(); ++index) {
    NSRunLoop::guarded([&] {
      if (handlers_[index] != nullptr) handlers_[index]->handleEvent(event);
    });
  }
}

/// Other programs' windows come and go between a request and its execution, so a refusal ends
/// nothing; one word about it helps to find a mistake.
void X11Connection::reportRefusal(const xcb_generic_error_t& error) {
  // A window that another program closes is drawn to until that is heard of, which is no mistake.
  if (lastDestroyed_ != XCB_WINDOW_NONE && error.resource_id == lastDestroyed_) return;
  if (std::exchange(hasReportedRefusal_, true)) return;
  NSLog("error: the X11 display has refused request " + std::to_string(error.major_code) + "." +
        std::to_string(error.minor_code) + " with error " + std::to_string(error.error_code));
}
