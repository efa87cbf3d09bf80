#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/X11/X11Atoms.h"
#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

class X11EventHandler;

/// What xcb hands over to be freed.
template <typename Type>
using XcbPointer = LibraryHandle<Type, std::free>;

/// The kind of an event, whether the server or another program has sent it.
constexpr uint8_t eventType(const xcb_generic_event_t& event) {
  constexpr uint8_t SentByAnotherProgram = 0x80;
  return event.response_type & static_cast<uint8_t>(~SentByAnotherProgram);
}

template <typename Event>
const Event& eventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

/// A connection to an X11 server, served by the main run loop. When it breaks, requests do nothing
/// and answers are null.
class X11Connection {
 public:
  /// Connects to what DISPLAY names. Throws `std::runtime_error` with the reason.
  X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection() = default;

  xcb_connection_t* get() const { return connection_.get(); }
  /// As they were when the connection was made.
  const xcb_setup_t& setup() const { return *setup_; }
  const xcb_screen_t& screen() const { return *screen_; }
  xcb_window_t root() const { return screen_->root; }
  xcb_atom_t atom(X11Atom atom) const { return (*atoms_)[atom]; }

  /// Called once, by the run loop, when the server has gone.
  std::function<void()> onLost;

  /// Sends the requests that have been made. What an event's handler requests is sent without it.
  void flush();

  /// Waits for the answer to a request; null if the server refuses it. `reply` is the function that
  /// xcb has for it.
  template <typename Reply, typename Cookie>
  XcbPointer<Reply> waitFor(Reply* (*reply)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                            Cookie cookie) {
    XcbPointer<Reply> answer(reply(get(), cookie, nullptr));
    noticeReadEvents();
    return answer;
  }

  /// A property in the bytes that the server holds; empty if there is none of this type.
  std::vector<uint8_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);

 private:
  friend X11EventHandler;

  void add(X11EventHandler* handler) { handlers_.push_back(handler); }
  void remove(X11EventHandler* handler);
  void noticeReadEvents();
  void dispatchEvents();
  XcbPointer<xcb_generic_event_t> nextEvent();
  void dispatch(const xcb_generic_event_t& event);
  void reportRefusal(const xcb_generic_error_t& error);
  void schedulePass();

  NSRunLoop& loop_ = NSRunLoop::mainRunLoop();
  LibraryHandle<xcb_connection_t, xcb_disconnect> connection_;
  const xcb_setup_t* setup_ = nullptr;
  const xcb_screen_t* screen_ = nullptr;
  std::optional<X11Atoms> atoms_;
  std::vector<X11EventHandler*> handlers_;
  NSRunLoop::Watch watch_;
  NSRunLoop::Timer pass_;
  XcbPointer<xcb_generic_event_t> readEvent_;
  bool isDispatching_ = false;
  bool hasReportedRefusal_ = false;
  xcb_window_t lastDestroyed_ = XCB_WINDOW_NONE;
};

/// Sees every event of a connection, from the run loop, as long as it lives. It chooses by the
/// window which are its own.
class X11EventHandler {
 public:
  explicit X11EventHandler(X11Connection& connection) : connection_(connection) {
    connection_.add(this);
  }
  X11EventHandler(const X11EventHandler&) = delete;
  X11EventHandler& operator=(const X11EventHandler&) = delete;
  virtual ~X11EventHandler() { connection_.remove(this); }

  virtual void handleEvent(const xcb_generic_event_t& event) = 0;

 protected:
  X11Connection& connection() const { return connection_; }

 private:
  X11Connection& connection_;
};
