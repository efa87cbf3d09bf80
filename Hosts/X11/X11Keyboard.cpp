#include "Hosts/X11/X11Keyboard.h"

#include <xkbcommon/xkbcommon-x11.h>

#include "Hosts/X11/XkbProtocol.h"

namespace {

constexpr uint16_t Changes = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                             XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;

}  // namespace

X11Keyboard::X11Keyboard(X11Connection& connection) : X11EventHandler(connection) {
  xcb_connection_t* const x11 = connection.get();
  if (xkb_x11_setup_xkb_extension(x11, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
                                  &firstEvent_, nullptr) == 0) {
    return;
  }
  device_ = xkb_x11_get_core_keyboard_device_id(x11);
  if (device_ < 0) return;
  // A held key comes as presses without releases between them.
  constexpr uint32_t Flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
  const auto flags =
      xcb_xkb_per_client_flags(x11, static_cast<uint16_t>(device_), Flag, Flag, 0, 0, 0);
  xcb_discard_reply(x11, flags.sequence);
  followChanges(Changes);
  noteHeldKeys();
}

X11Keyboard::~X11Keyboard() {
  if (device_ >= 0) followChanges(0);
}

void X11Keyboard::followChanges(uint16_t events) {
  constexpr uint16_t MapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                XCB_XKB_MAP_PART_MODIFIER_MAP |
                                XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS |
                                XCB_XKB_MAP_PART_KEY_ACTIONS | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
  constexpr uint16_t StateParts =
      XCB_XKB_STATE_PART_MODIFIER_BASE | XCB_XKB_STATE_PART_MODIFIER_LATCH |
      XCB_XKB_STATE_PART_MODIFIER_LOCK | XCB_XKB_STATE_PART_GROUP_BASE |
      XCB_XKB_STATE_PART_GROUP_LATCH | XCB_XKB_STATE_PART_GROUP_LOCK;
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
  details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
  details.affectState = StateParts;
  details.stateDetails = StateParts;
  const auto clear = static_cast<uint16_t>(Changes & ~events);
  xcb_xkb_select_events_aux(connection().get(), static_cast<uint16_t>(device_), Changes, clear, 0,
                            MapParts, MapParts, &details);
}

void X11Keyboard::noteHeldKeys() {
  constexpr size_t BitsOfByte = 8;
  const auto keymap =
      connection().waitFor(xcb_query_keymap_reply, xcb_query_keymap(connection().get()));
  if (!keymap) return;
  for (size_t key = 0; key < held_.size(); ++key)
    held_[key] = (keymap->keys[key / BitsOfByte] >> (key % BitsOfByte) & 1) != 0;
}

/// Its several answers are waited for, so it is left until the first key.
void X11Keyboard::readLayouts() {
  if (device_ < 0) return;
  const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
      xkb_context_new(static_cast<xkb_context_flags>(XKB_CONTEXT_NO_DEFAULT_INCLUDES |
                                                     XKB_CONTEXT_NO_ENVIRONMENT_NAMES)),
      xkb_context_unref);
  if (!context) return;
  xcb_connection_t* const x11 = connection().get();
  xkb_keymap* keymap =
      xkb_x11_keymap_new_from_device(context.get(), x11, device_, XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (keymap == nullptr) return;
  if (xkb_state* state = xkb_x11_state_new_from_device(keymap, x11, device_)) {
    keys_ = std::make_unique<XkbKeys>(keymap, state);
  } else {
    xkb_keymap_unref(keymap);
  }
}

std::optional<NSEvent> X11Keyboard::keyEvent(const xcb_key_press_event_t& event) {
  if (!keys_) readLayouts();
  if (!keys_) return std::nullopt;
  const bool isPress = (event.response_type & 0x7F) == XCB_KEY_PRESS;
  NSEvent told = keys_->event(event.detail, isPress ? NSEventType::KeyDown : NSEventType::KeyUp);
  told.isARepeat = isPress && held_[event.detail];
  held_[event.detail] = isPress;
  return told;
}

void X11Keyboard::handleEvent(const xcb_generic_event_t& event) {
  if (device_ < 0 || eventType(event) != firstEvent_) return;
  const auto& change = eventAs<xcb_xkb_state_notify_event_t>(event);
  if (change.deviceID != device_) return;
  if (change.xkbType != XCB_XKB_STATE_NOTIFY) {
    // All kinds of events of XKB's begin alike. The rest tell of another keymap.
    keys_.reset();
    return;
  }
  if (!keys_) return;
  keys_->setState({.depressedModifiers = change.baseMods,
                   .latchedModifiers = change.latchedMods,
                   .lockedModifiers = change.lockedMods,
                   .depressedLayout = static_cast<uint32_t>(change.baseGroup),
                   .latchedLayout = static_cast<uint32_t>(change.latchedGroup),
                   .lockedLayout = change.lockedGroup});
}
