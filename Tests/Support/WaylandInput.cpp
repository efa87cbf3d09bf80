#include "Tests/Support/WaylandInput.h"

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include <virtual-keyboard-unstable-v1-client.h>
#include <wlr-virtual-pointer-unstable-v1-client.h>

#include "Platform/Foundation/LibraryHandle.h"

namespace {

uint32_t milliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

struct Globals {
  LibraryHandle<wl_seat, wl_seat_destroy> seat;
  LibraryHandle<zwlr_virtual_pointer_manager_v1, zwlr_virtual_pointer_manager_v1_destroy> pointers;
  LibraryHandle<zwp_virtual_keyboard_manager_v1, zwp_virtual_keyboard_manager_v1_destroy> keyboards;
};

void globalAdded(void* data, wl_registry* registry, uint32_t name, const char* interface,
                 uint32_t) {
  Globals& globals = *static_cast<Globals*>(data);
  const std::string_view kind = interface;
  const auto bind = [&]<typename Handle>(Handle& global, const wl_interface& wanted) {
    if (kind != wanted.name) return;
    global.reset(
        static_cast<typename Handle::pointer>(wl_registry_bind(registry, name, &wanted, 1)));
  };
  bind(globals.seat, wl_seat_interface);
  bind(globals.pointers, zwlr_virtual_pointer_manager_v1_interface);
  bind(globals.keyboards, zwp_virtual_keyboard_manager_v1_interface);
}

void globalRemoved(void*, wl_registry*, uint32_t) {}

}  // namespace

struct WaylandInput::Connection {
  explicit Connection(const std::string& socket) : display(wl_display_connect(socket.c_str())) {
    if (display == nullptr) throw std::runtime_error("no connection to the compositor " + socket);
    registry.reset(wl_display_get_registry(display.get()));
    static constexpr wl_registry_listener Listener = {globalAdded, globalRemoved};
    wl_registry_add_listener(registry.get(), &Listener, &globals);
    wl_display_roundtrip(display.get());
    if (globals.seat == nullptr || globals.pointers == nullptr || globals.keyboards == nullptr) {
      throw std::runtime_error("the compositor takes no input from programs");
    }
    pointer.reset(zwlr_virtual_pointer_manager_v1_create_virtual_pointer(globals.pointers.get(),
                                                                         globals.seat.get()));
    keyboard.reset(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals.keyboards.get(),
                                                                           globals.seat.get()));
    sendKeymap();
    sync();
  }

  void sendKeymap() {
    const LibraryHandle<xkb_context, xkb_context_unref> context(
        xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
    const LibraryHandle<xkb_keymap, xkb_keymap_unref> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (keymap == nullptr) throw std::runtime_error("no keymap");
    state.reset(xkb_state_new(keymap.get()));
    const LibraryHandle<char, free> owned(
        xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1));
    const std::string text = owned.get();
    const int descriptor = memfd_create("keymap", MFD_CLOEXEC);
    const size_t size = text.size() + 1;
    if (write(descriptor, text.c_str(), size) != static_cast<ssize_t>(size)) {
      throw std::runtime_error("no memory for the keymap");
    }
    zwp_virtual_keyboard_v1_keymap(keyboard.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, descriptor,
                                   static_cast<uint32_t>(size));
    wl_display_flush(display.get());
    close(descriptor);
  }

  void sync() const {
    if (wl_display_roundtrip(display.get()) < 0)
      throw std::runtime_error("the compositor has gone");
  }

  LibraryHandle<wl_display, wl_display_disconnect> display;
  LibraryHandle<wl_registry, wl_registry_destroy> registry;
  Globals globals;
  LibraryHandle<zwlr_virtual_pointer_v1, zwlr_virtual_pointer_v1_destroy> pointer;
  LibraryHandle<zwp_virtual_keyboard_v1, zwp_virtual_keyboard_v1_destroy> keyboard;
  LibraryHandle<xkb_state, xkb_state_unref> state;
};

WaylandInput::WaylandInput(const WaylandServer& screen, uint32_t width, uint32_t height)
    : width_(width), height_(height) {
  const Environment environment = screen.environment();
  const std::filesystem::path folder = environment.at("XDG_RUNTIME_DIR").value();
  connection_ = std::make_unique<Connection>(folder / environment.at("WAYLAND_DISPLAY").value());
}

WaylandInput::~WaylandInput() = default;

void WaylandInput::move(double x, double y) {
  constexpr uint32_t StepsPerPoint = 256;
  const auto steps = [](double points) {
    return static_cast<uint32_t>(std::lround(points * StepsPerPoint));
  };
  zwlr_virtual_pointer_v1_motion_absolute(connection_->pointer.get(), milliseconds(), steps(x),
                                          steps(y), width_ * StepsPerPoint,
                                          height_ * StepsPerPoint);
  zwlr_virtual_pointer_v1_frame(connection_->pointer.get());
  connection_->sync();
}

void WaylandInput::press(uint32_t button) { this->button(button, WL_POINTER_BUTTON_STATE_PRESSED); }

void WaylandInput::release(uint32_t button) {
  this->button(button, WL_POINTER_BUTTON_STATE_RELEASED);
}

void WaylandInput::button(uint32_t button, uint32_t state) {
  zwlr_virtual_pointer_v1_button(connection_->pointer.get(), milliseconds(), button, state);
  zwlr_virtual_pointer_v1_frame(connection_->pointer.get());
  connection_->sync();
}

void WaylandInput::click(uint32_t button) {
  press(button);
  release(button);
}

void WaylandInput::scroll(double down) {
  zwlr_virtual_pointer_v1_axis_source(connection_->pointer.get(), WL_POINTER_AXIS_SOURCE_FINGER);
  zwlr_virtual_pointer_v1_axis(connection_->pointer.get(), milliseconds(),
                               WL_POINTER_AXIS_VERTICAL_SCROLL, wl_fixed_from_double(down));
  zwlr_virtual_pointer_v1_frame(connection_->pointer.get());
  connection_->sync();
}

void WaylandInput::key(uint32_t key, bool isDown) {
  constexpr uint32_t XkbOffset = 8;
  zwp_virtual_keyboard_v1_key(
      connection_->keyboard.get(), milliseconds(), key,
      isDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
  xkb_state* const state = connection_->state.get();
  xkb_state_update_key(state, key + XkbOffset, isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
  zwp_virtual_keyboard_v1_modifiers(connection_->keyboard.get(),
                                    xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                                    xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                                    xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                                    xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
  connection_->sync();
}

void WaylandInput::keyDown(uint32_t key) { this->key(key, true); }

void WaylandInput::keyUp(uint32_t key) { this->key(key, false); }

void WaylandInput::type(uint32_t key) {
  keyDown(key);
  keyUp(key);
}
