#include "Hosts/Display/XkbKeys.h"

#include <xkbcommon/xkbcommon.h>

#include <array>

namespace {

uint16_t keyCodeFromSym(xkb_keysym_t sym) {
  switch (sym) {
    case XKB_KEY_Return:
      return NSKeyCodeReturn;
    case XKB_KEY_KP_Enter:
      return NSKeyCodeKeypadEnter;
    case XKB_KEY_Tab:
    case XKB_KEY_ISO_Left_Tab:
    case XKB_KEY_KP_Tab:
      return NSKeyCodeTab;
    case XKB_KEY_space:
    case XKB_KEY_KP_Space:
      return NSKeyCodeSpace;
    case XKB_KEY_BackSpace:
      return NSKeyCodeBackspace;
    case XKB_KEY_Escape:
      return NSKeyCodeEscape;
    case XKB_KEY_Home:
    case XKB_KEY_KP_Home:
      return NSKeyCodeHome;
    case XKB_KEY_End:
    case XKB_KEY_KP_End:
      return NSKeyCodeEnd;
    case XKB_KEY_Page_Up:
    case XKB_KEY_KP_Page_Up:
      return NSKeyCodePageUp;
    case XKB_KEY_Page_Down:
    case XKB_KEY_KP_Page_Down:
      return NSKeyCodePageDown;
    case XKB_KEY_Left:
    case XKB_KEY_KP_Left:
      return NSKeyCodeLeft;
    case XKB_KEY_Right:
    case XKB_KEY_KP_Right:
      return NSKeyCodeRight;
    case XKB_KEY_Up:
    case XKB_KEY_KP_Up:
      return NSKeyCodeUp;
    case XKB_KEY_Down:
    case XKB_KEY_KP_Down:
      return NSKeyCodeDown;
    default:
      return NSKeyCodeOther;
  }
}

std::string charactersOf(xkb_state* state, xkb_keycode_t key) {
  constexpr size_t Longest = 64;
  std::array<char, Longest> text{};
  const int length = xkb_state_key_get_utf8(state, key, text.data(), text.size());
  if (length <= 0 || static_cast<size_t>(length) >= text.size()) return {};
  // A control character types nothing.
  constexpr unsigned char FirstPrintable = 0x20;
  constexpr unsigned char Delete = 0x7F;
  const auto first = static_cast<unsigned char>(text.front());
  if (first < FirstPrintable || first == Delete) return {};
  return {text.data(), static_cast<size_t>(length)};
}

NSEventModifierFlags flagsOf(xkb_state* state) {
  struct Modifier {
    const char* name;
    NSEventModifierFlags flag;
  };
  NSEventModifierFlags flags = 0;
  for (const Modifier& modifier : {Modifier{XKB_MOD_NAME_SHIFT, NSEventModifierFlagShift},
                                   Modifier{XKB_MOD_NAME_CTRL, NSEventModifierFlagControl},
                                   Modifier{XKB_MOD_NAME_ALT, NSEventModifierFlagOption},
                                   Modifier{XKB_MOD_NAME_LOGO, NSEventModifierFlagCommand}}) {
    // Above 0: it is active. A keymap without it says -1.
    if (xkb_state_mod_name_is_active(state, modifier.name, XKB_STATE_MODS_EFFECTIVE) > 0) {
      flags |= modifier.flag;
    }
  }
  return flags;
}

}  // namespace

void XkbKeys::Unref::operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }

void XkbKeys::Unref::operator()(xkb_state* state) const { xkb_state_unref(state); }

XkbKeys::XkbKeys(xkb_keymap* keymap, xkb_state* state) : keymap_(keymap), state_(state) {}

std::unique_ptr<XkbKeys> XkbKeys::fromText(const std::string& text) {
  // A keymap's text is complete: neither files nor the environment have a say.
  xkb_context* context = xkb_context_new(static_cast<xkb_context_flags>(
      XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (context == nullptr) return nullptr;
  // A keymap holds its context itself.
  xkb_keymap* keymap = xkb_keymap_new_from_string(context, text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                                  XKB_KEYMAP_COMPILE_NO_FLAGS);
  xkb_context_unref(context);
  if (keymap == nullptr) return nullptr;
  return std::make_unique<XkbKeys>(keymap, xkb_state_new(keymap));
}

void XkbKeys::setState(const State& state) {
  xkb_state_update_mask(state_.get(), state.depressedModifiers, state.latchedModifiers,
                        state.lockedModifiers, state.depressedLayout, state.latchedLayout,
                        state.lockedLayout);
}

NSEventModifierFlags XkbKeys::modifierFlags() const { return flagsOf(state_.get()); }

NSEvent XkbKeys::event(uint32_t key, NSEventType type) const {
  const xkb_keysym_t sym = xkb_state_key_get_one_sym(state_.get(), key);
  NSEvent event;
  event.type = type;
  event.keyCode = keyCodeFromSym(sym);
  event.characters = charactersOf(state_.get(), key);
  event.modifierFlags = flagsOf(state_.get());
  // Layouts make this symbol of Shift and Tab.
  if (sym == XKB_KEY_ISO_Left_Tab) event.modifierFlags |= NSEventModifierFlagShift;
  return event;
}

bool XkbKeys::repeats(uint32_t key) const {
  return xkb_keymap_key_repeats(keymap_.get(), key) != 0;
}
