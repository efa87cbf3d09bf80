#pragma once

#include <cstdint>
#include <memory>

#include "Tests/Support/DisplayServers.h"

/// A pointer and a keyboard of a compositor's, moved by a test. Each call returns when the
/// compositor has taken the input; who it was for may still have to hear of it.
class WaylandInput {
 public:
  /// The outputs of `screen` make a desktop of that many points.
  WaylandInput(const WaylandServer& screen, uint32_t width, uint32_t height);
  ~WaylandInput();

  /// Points of the desktop.
  void move(double x, double y);
  /// Buttons and keys have the kernel's codes, such as BTN_LEFT and KEY_ESC.
  void press(uint32_t button);
  void release(uint32_t button);
  void click(uint32_t button);
  /// Points.
  void scroll(double down);

  /// Of a keyboard with the United States' layout. Modifiers act on what follows.
  void keyDown(uint32_t key);
  void keyUp(uint32_t key);
  void type(uint32_t key);

 private:
  struct Connection;

  void button(uint32_t button, uint32_t state);
  void key(uint32_t key, bool isDown);

  std::unique_ptr<Connection> connection_;
  uint32_t width_;
  uint32_t height_;
};
