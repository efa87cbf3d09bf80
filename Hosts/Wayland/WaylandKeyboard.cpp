#include "Hosts/Wayland/WaylandKeyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string_view>
#include <utility>

namespace {

/// Between the kernel's codes, which the compositor sends, and XKB's.
constexpr uint32_t XkbOffset = 8;

/// Empty if it cannot be read. Closes the descriptor.
std::string textOf(int descriptor, size_t size) {
  void* memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  close(descriptor);
  if (memory == MAP_FAILED) return {};
  const std::string_view whole(static_cast<const char*>(memory), size);
  std::string text(whole.substr(0, whole.find('\0')));
  munmap(memory, size);
  return text;
}

}  // namespace

void WaylandKeyboard::listen(wl_seat* seat, WaylandKeyClient& client) {
  endListening();
  client_ = &client;
  keyboard_.reset(wl_seat_get_keyboard(seat));
  static constexpr wl_keyboard_listener Listener = {
      &WaylandEvent<&WaylandKeyboard::keymap>::call,
      &WaylandEvent<&WaylandKeyboard::enter>::call,
      &WaylandEvent<&WaylandKeyboard::leave>::call,
      &WaylandEvent<&WaylandKeyboard::key>::call,
      &WaylandEvent<&WaylandKeyboard::modifiers>::call,
      &WaylandEvent<&WaylandKeyboard::repeatInfo>::call,
  };
  wl_keyboard_add_listener(keyboard_.get(), &Listener, this);
}

void WaylandKeyboard::endListening() {
  endRepeat();
  keyboard_.reset();
  state_ = {};
  if (keys_) keys_->setState(state_);
}

void WaylandKeyboard::keymap(wl_keyboard*, uint32_t format, int32_t descriptor, uint32_t size) {
  std::string text = textOf(descriptor, size);
  if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) text.clear();
  // Compositors tell it again and again, for instance with each keyboard that is plugged in.
  if (text == keymapText_) return;
  endRepeat();
  keymapText_ = std::move(text);
  keys_.reset();
}

const XkbKeys* WaylandKeyboard::keys() {
  if (!keys_ && !keymapText_.empty()) {
    keys_ = XkbKeys::fromText(keymapText_);
    if (keys_) {
      keys_->setState(state_);
    } else {
      keymapText_.clear();
    }
  }
  return keys_.get();
}

void WaylandKeyboard::enter(wl_keyboard*, uint32_t, wl_surface*, wl_array*) {
  // What was held before was not meant for these surfaces.
  client_->keyboardFocusChanged(true);
}

void WaylandKeyboard::leave(wl_keyboard*, uint32_t, wl_surface*) {
  endRepeat();
  client_->keyboardFocusChanged(false);
}

void WaylandKeyboard::key(wl_keyboard*, uint32_t, uint32_t, uint32_t key, uint32_t state) {
  const XkbKeys* keys = this->keys();
  if (keys == nullptr) return;
  const uint32_t code = key + XkbOffset;
  const bool isDown = state == WL_KEYBOARD_KEY_STATE_PRESSED;
  if (isDown && repeatInterval_ > 0 && keys->repeats(code)) {
    endRepeat();
    repeatedKey_ = code;
    repeatAt(NSRunLoop::mainRunLoop().now() + repeatDelay_);
  } else if (!isDown && code == repeatedKey_) {
    endRepeat();
  }
  client_->keyEvent(keys->event(code, isDown ? NSEventType::KeyDown : NSEventType::KeyUp));
}

void WaylandKeyboard::modifiers(wl_keyboard*, uint32_t, uint32_t depressed, uint32_t latched,
                                uint32_t locked, uint32_t layout) {
  state_ = {.depressedModifiers = depressed,
            .latchedModifiers = latched,
            .lockedModifiers = locked,
            .lockedLayout = layout};
  if (keys_) keys_->setState(state_);
}

NSEventModifierFlags WaylandKeyboard::modifierFlags() {
  if (!isListening() || (state_.depressedModifiers | state_.latchedModifiers) == 0) return 0;
  const XkbKeys* keys = this->keys();
  return keys != nullptr ? keys->modifierFlags() : 0;
}

void WaylandKeyboard::repeatInfo(wl_keyboard*, int32_t rate, int32_t delay) {
  constexpr int64_t Second = 1'000'000'000;
  constexpr int64_t Millisecond = 1'000'000;
  repeatDelay_ = delay * Millisecond;
  repeatInterval_ = rate > 0 ? Second / rate : 0;
  if (repeatInterval_ == 0) endRepeat();
}

void WaylandKeyboard::repeatAt(int64_t moment) {
  repeat_ = NSRunLoop::mainRunLoop().scheduleAt(moment, [this] { repeatNow(); });
}

void WaylandKeyboard::repeatNow() {
  repeatAt(NSRunLoop::mainRunLoop().now() + repeatInterval_);
  NSEvent event = keys_->event(repeatedKey_, NSEventType::KeyDown);
  event.isARepeat = true;
  client_->keyEvent(event);
}

void WaylandKeyboard::endRepeat() {
  repeat_.reset();
  repeatedKey_ = 0;
}
