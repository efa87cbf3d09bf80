#pragma once

#include <bitset>
#include <memory>
#include <optional>

#include "Hosts/Display/XkbKeys.h"
#include "Hosts/X11/X11Connection.h"

/// What the keys of the display's keyboard mean. As long as it lives, the server tells of each
/// modifier and of each change of the layouts, so it is there only while keys are awaited.
class X11Keyboard : public X11EventHandler {
 public:
  explicit X11Keyboard(X11Connection& connection);
  ~X11Keyboard() override;

  /// What the press or the release of a key means. Null where the server does not tell its layouts.
  std::optional<NSEvent> keyEvent(xcb_keycode_t key, NSEventType type);

  void handleEvent(const xcb_generic_event_t& event) override;

 private:
  void followChanges(uint16_t events);
  void readState();
  void readLayouts();

  int32_t device_ = -1;
  uint8_t firstEvent_ = 0;
  std::unique_ptr<XkbKeys> keys_;  // Null until it is needed, and after another keymap.
  XkbKeys::State state_;
  std::bitset<256> held_;
};
