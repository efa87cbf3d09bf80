#include "Hosts/X11/X11Keyboard.h"

#include <xkbcommon/xkbcommon-x11.h>

#include "Hosts/X11/XkbProtocol.h"

namespace {

constexpr uint16_t Changes = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                             XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;

/// The answer and the event have the same members.
template <typename Told>
XkbKeys::State stateIn(const Told& told) {
  return {.depressedModifiers = told.baseMods,
          .latchedModifiers = told.latchedMods,
          .lockedModifiers = told.lockedMods,
          .depressedLayout = static_cast<uint32_t>(told.baseGroup),
          .latchedLayout = static_cast<uint32_t>(told.latchedGroup),
          .lockedLayout = told.lockedGroup};
}

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
  readState();
}

X11Keyboard::~X11Keyboard() {
  if (device_ >= 0) followChanges(0);
}

void X11Keyboard::followChanges(uint16_t events) {
  constexpr uint16_t MapParts =
      XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
      XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS | XCB_XKB_MAP_PART_KEY_ACTIONS |
      XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
  constexpr uint16_t StateParts = XCB_XKB_STATE_PART_MODIFIER_BASE |
                                  XCB_XKB_STATE_PART_MODIFIER_LATCH |
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

void X11Keyboard::readState() {
  xcb_connection_t* const x11 = connection().get();
  const auto state = connection().waitFor(xcb_xkb_get_state_reply,
                                          xcb_xkb_get_state(x11, static_cast<uint16_t>(device_)));
  if (state) state_ = stateIn(*state);
  constexpr size_t BitsOfByte = 8;
  const auto keymap = connection().waitFor(xcb_query_keymap_reply, xcb_query_keymap(x11));
  if (!keymap) return;
  for (size_t key = 0; key < held_.size(); ++key)
    held_[key] = (keymap->keys[key / BitsOfByte] >> (key % BitsOfByte) & 1) != 0;
}

/// Its many answers take some milliseconds, so it is left until the first key.
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
  keys_ = std::make_unique<XkbKeys>(keymap, xkb_state_new(keymap));
  keys_->setState(state_);
}

std::optional<NSEvent> X11Keyboard::keyEvent(xcb_keycode_t key, NSEventType type) {
  if (!keys_) readLayouts();
  if (!keys_) return std::nullopt;
  NSEvent event = keys_->event(key, type);
  const bool isPress = type == NSEventType::KeyDown;
  event.isARepeat = isPress && held_[key];
  held_[key] = isPress;
  return event;
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
  // Also before the layouts are read: the first key is older than what the server would tell then.
  state_ = stateIn(change);
  if (keys_) keys_->setState(state_);
}
