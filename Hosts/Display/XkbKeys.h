#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/AppKit/Events/NSEvent.h"

struct xkb_keymap;
struct xkb_state;

/// Makes key events of the numbers that a keyboard sends: its layouts and what is held down just
/// now. Keys are named by XKB's codes, which are those of the kernel and 8.
class XkbKeys {
 public:
  /// Takes over one reference to each; `state` is of `keymap`.
  XkbKeys(xkb_keymap* keymap, xkb_state* state);

  /// From a keymap in XKB's text format. Null if it cannot be understood.
  static std::unique_ptr<XkbKeys> fromText(const std::string& text);

  /// Modifiers as bit masks of the keymap, and layouts by their index.
  struct State {
    uint32_t depressedModifiers = 0;
    uint32_t latchedModifiers = 0;
    uint32_t lockedModifiers = 0;
    uint32_t depressedLayout = 0;
    uint32_t latchedLayout = 0;
    uint32_t lockedLayout = 0;
  };
  /// Tells what the server says that is held down. Keys alone do not change it.
  void setState(const State& state);

  /// `type` is `KeyDown` or `KeyUp`. The characters are those of the one key: accents typed before
  /// it do not join it.
  NSEvent event(uint32_t key, NSEventType type) const;

  /// The modifiers that are held.
  NSEventModifierFlags modifierFlags() const;

  /// Whether a key that is held goes on typing.
  bool repeats(uint32_t key) const;

 private:
  struct Unref {
    void operator()(xkb_keymap* keymap) const;
    void operator()(xkb_state* state) const;
  };
  std::unique_ptr<xkb_keymap, Unref> keymap_;
  std::unique_ptr<xkb_state, Unref> state_;
};
