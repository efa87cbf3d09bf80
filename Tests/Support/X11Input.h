#pragma once

#include <memory>

#include "Tests/Support/DisplayServers.h"

/// Drives the pointer and the keyboard of an X11 server as devices do. What a call does the server
/// has taken when it returns. Must go before the server.
class X11Input {
 public:
  explicit X11Input(const X11Server& server);
  ~X11Input();

  /// To a pixel of the whole desktop.
  void move(int x, int y);
  /// Buttons by X11's numbers: 1 is the primary one, 3 the secondary.
  void press(unsigned button = 1);
  void release(unsigned button = 1);
  /// A wheel's clicks to the right and down; to the left and up below 0.
  void scroll(int right, int down);

  /// Keys by their symbols, such as `XK_Down`, that the layout has without a modifier.
  void pressKey(unsigned long symbol);
  void releaseKey(unsigned long symbol);
  void key(unsigned long symbol);

  /// Takes the pointer and the keyboard as another program's menu does. False if the server refuses
  /// one of them; then it has neither.
  bool grab();
  void ungrab();

 private:
  void button(unsigned number, bool isPress);
  void key(unsigned long symbol, bool isPress);

  struct Connection;
  std::unique_ptr<Connection> connection_;
};
