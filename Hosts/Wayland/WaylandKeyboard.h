#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Hosts/Display/XkbKeys.h"
#include "Hosts/Wayland/WaylandObject.h"
#include "Platform/AppKit/Events/NSEvent.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

/// Who gets the keys. It may have that end when it is told of one.
class WaylandKeyClient {
 public:
  virtual ~WaylandKeyClient() = default;

  virtual void keyEvent(const NSEvent& event) = 0;
  /// Keys go to a surface of this connection from now on, or no more.
  virtual void keyboardFocusChanged(bool isHere) = 0;
};

/// A seat's keyboard. A held key is repeated here, as often as the user wishes.
class WaylandKeyboard {
 public:
  WaylandKeyboard() = default;
  WaylandKeyboard(const WaylandKeyboard&) = delete;
  WaylandKeyboard& operator=(const WaylandKeyboard&) = delete;
  ~WaylandKeyboard() { endListening(); }

  bool isListening() const { return keyboard_ != nullptr; }
  /// Tells `client` of the keyboard of `seat`, which must have one.
  void listen(wl_seat* seat, WaylandKeyClient& client);
  void endListening();

  /// What is held down, as far as this is told: while it listens and has the keys.
  NSEventModifierFlags modifierFlags();

 private:
  void keymap(wl_keyboard*, uint32_t format, int32_t descriptor, uint32_t size);
  void enter(wl_keyboard*, uint32_t serial, wl_surface* surface, wl_array* held);
  void leave(wl_keyboard*, uint32_t serial, wl_surface* surface);
  void key(wl_keyboard*, uint32_t serial, uint32_t time, uint32_t key, uint32_t state);
  void modifiers(wl_keyboard*, uint32_t serial, uint32_t depressed, uint32_t latched,
                 uint32_t locked, uint32_t layout);
  void repeatInfo(wl_keyboard*, int32_t rate, int32_t delay);

  const XkbKeys* keys();
  void repeatAt(int64_t moment);
  void repeatNow();
  void endRepeat();

  WaylandObject<wl_keyboard> keyboard_;
  WaylandKeyClient* client_ = nullptr;
  // Both stay when nobody listens: to understand a keymap takes milliseconds.
  std::string keymapText_;
  std::unique_ptr<XkbKeys> keys_;  ///< Null until the first key, as most menus get none.
  XkbKeys::State state_;
  int64_t repeatDelay_ = 0;     ///< In nanoseconds, as the next.
  int64_t repeatInterval_ = 0;  ///< 0: no key is repeated.
  uint32_t repeatedKey_ = 0;
  NSRunLoop::Timer repeat_;
};
