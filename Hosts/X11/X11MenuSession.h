#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/X11/X11InputGrab.h"
#include "Hosts/X11/X11Keyboard.h"
#include "Hosts/X11/X11MenuWindow.h"

/// Open menus on an X11 display: override-redirect windows, and all input.
class X11MenuSession : public MenuSession, private X11EventHandler {
 public:
  /// `grab` has been taken. `onEnd` is called when this object goes. The others must outlive it.
  X11MenuSession(X11Connection& connection, std::unique_ptr<X11InputGrab> grab,
                 const Monitor& monitor, MenuSessionClient& client, std::function<void()> onEnd);
  ~X11MenuSession() override;

  double scale() const override { return monitor_.scale; }
  int pixelGrid() const override { return 1; }
  bool isComposited() const override { return visual_.isComposited(); }
  std::unique_ptr<MenuWindow> makeWindow() override;

  /// Follows the monitors of the display. To be called by the loop, as `end`; the client may end
  /// this object in both.
  void follow(const std::vector<Monitor>& monitors);
  /// Gives the input back and tells the client.
  void end();

 private:
  void handleEvent(const xcb_generic_event_t& event) override;
  void handlePointer(const xcb_generic_event_t& event);
  void followScreenSaver();

  Monitor monitor_;
  MenuSessionClient& client_;
  std::function<void()> onEnd_;
  std::unique_ptr<X11InputGrab> grab_;  // Null after the end.
  X11MenuVisual visual_;
  X11Keyboard keyboard_;
  std::vector<X11MenuWindow*> windows_;
  bool hasPointer_ = false;
  std::optional<uint8_t> screenSaverEvent_;  // Null without the extension.
};
