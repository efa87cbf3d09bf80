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

  /// The event of a key's press or release. Null where the server does not tell its layouts.
  std::optional<NSEvent> keyEvent(const xcb_key_press_event_t& event);

  void handleEvent(const xcb_generic_event_t& event) override;

 private:
  void followChanges(uint16_t events);
  void noteHeldKeys();
  void readLayouts();

  int32_t device_ = -1;
  uint8_t firstEvent_ = 0;
  std::unique_ptr<XkbKeys> keys_;  // Null until it is needed, and after another keymap.
  std::bitset<256> held_;
};
