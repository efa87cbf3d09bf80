#pragma once

#include <memory>

#include "Hosts/Display/InputEvents.h"
#include "Hosts/Display/Pixels.h"
#include "Platform/AppKit/Events/NSEvent.h"

class MenuWindow;

/// Who fills the windows of open menus and hears what the user does. Called on the main thread;
/// must outlive the session. Places are points of the desktop, y downwards.
class MenuSessionClient {
 public:
  virtual ~MenuSessionClient() = default;

  /// The display takes the picture that `requestFrame` has asked for.
  virtual void menuFrameReady(MenuWindow& window) = 0;
  /// The session's scale is another: every window is to be shown anew.
  virtual void menuScaleChanged() = 0;
  virtual void menuPointerEvent(const PointerEvent& event) = 0;
  virtual void menuTouchEvent(const TouchEvent& event) = 0;
  virtual void menuKeyEvent(const NSEvent& event) = 0;
  /// The display has ended the session: the monitor has gone, another program has taken the
  /// keyboard, the screen is being locked. Its windows show nothing any more.
  virtual void menuSessionEnded() = 0;
};

/// One menu's window. It closes with this object, before its session does.
class MenuWindow {
 public:
  virtual ~MenuWindow() = default;

  /// Shows `picture` at `frame`, in pixels from the upper left corner of the session's monitor. Its
  /// place and its size are multiples of the session's pixel grid; it may reach beyond the monitor.
  /// The first call brings the window up. A new place, a new size and the new picture are seen at
  /// once, in one frame. `changed` is where the picture differs from the one before, if that had
  /// its size.
  virtual void present(PixelRect frame, const PixelPicture& picture, PixelRect changed) = 0;

  /// Has `menuFrameReady` called once, as soon as the display can show another picture.
  virtual void requestFrame() = 0;
};

/// While it lives, all input of the pointer, of touch screens and of the keyboard goes to its
/// client, wherever it happens, and nothing of it to other programs; the keyboard goes back to
/// where it was at its end. A press that is being held on the bar when it begins may go on there:
/// its moves and its release come to the bar's client then.
class MenuSession {
 public:
  virtual ~MenuSession() = default;

  /// Pixels a point.
  virtual double scale() const = 0;
  /// See `BarSurface::pixelGrid`.
  virtual int pixelGrid() const = 0;
  /// Whether clear pixels let what is below shine through: only then corners can be round.
  virtual bool isComposited() const = 0;

  /// Makes a window above all that there are.
  virtual std::unique_ptr<MenuWindow> makeWindow() = 0;
};
