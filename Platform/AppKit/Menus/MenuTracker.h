#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/AppKit/Events/NSEvent.h"
#include "Platform/AppKit/Menus/MenuPanel.h"
#include "Platform/AppKit/Menus/NSMenu.h"
#include "Platform/AppKit/Views/ViewPointer.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

/// A window that shows a panel as long as it lives.
class MenuSurface {
 public:
  virtual ~MenuSurface() = default;
  /// The panel wants `MenuTracker::prepareFrame` and to be drawn, with the display's next frame.
  virtual void requestFrame() = 0;
};

/// What a host gives to open menus.
class MenuScreen {
 public:
  virtual ~MenuScreen() = default;

  /// The part of the monitor that menus may cover: points of the desktop, y downwards.
  virtual NSRect menuArea() const = 0;
  virtual std::unique_ptr<MenuSurface> makeSurface(MenuPanel& panel) = 0;
  /// All menus have closed. The host may end what it began for them, not within this call.
  virtual void trackingEnded() = 0;
};

/// How a menu was asked for.
enum class MenuOpening {
  Press,    ///< The pointer is down on the slot: its release may choose a row.
  Request,  ///< By a key or a message: the keyboard is on the first row.
};

/// What goes on while menus are open: a state machine fed with input. Places are points of the
/// desktop, y downwards. It has no loop of its own, so timers and ticks go on. Main thread only.
class MenuTracker {
 public:
  explicit MenuTracker(MenuScreen& screen) : screen_(screen) {}
  MenuTracker(const MenuTracker&) = delete;
  MenuTracker& operator=(const MenuTracker&) = delete;
  ~MenuTracker();

  /// Opens a menu below a slot of the bar. One that is open already closes first.
  void open(const std::shared_ptr<NSMenu>& menu, NSRect slot, MenuOpening opening,
            NSUserInterfaceLayoutDirection direction);
  bool isTracking() const { return !levels_.empty(); }
  void close() { closeFrom(0); }

  // Input.

  void pointerMoved(NSPoint place, NSEventModifierFlags modifiers = 0);
  void pointerLeft();
  void pointerPressed(NSPoint place, NSEventModifierFlags modifiers = 0);
  void pointerReleased(NSPoint place);
  /// The press goes on no more, without a release.
  void pointerCancelled();
  void scrolled(NSPoint place, NSPoint delta);
  void touchDown(NSPoint place);
  void touchMoved(NSPoint place);
  void touchUp(NSPoint place);
  void keyPressed(const NSEvent& event);

  /// Lays out and places what has changed, of all panels. A host calls it before it draws one.
  void prepareFrame();

  // What is seen.

  /// From the outermost to the innermost.
  size_t depth() const { return levels_.size(); }
  MenuPanel& panel(size_t depth) const { return *levels_[depth]->panel; }
  NSMenuItem* highlightedItem(const NSMenu& menu) const;
  /// The view that has the keyboard; null if that is the row itself.
  NSView* focusedView() const;
  /// What assistive technologies ask for.
  void highlightByRequest(NSMenuItem& item);
  void performByRequest(NSMenuItem& item);

  /// Called when a menu has opened or closed, rows have come, gone or moved, or another row or
  /// control is highlighted.
  std::function<void()> onStateChanged;

 private:
  friend NSMenu;

  struct Level {
    std::shared_ptr<NSMenu> menu;
    std::unique_ptr<MenuPanel> panel;
    std::unique_ptr<MenuSurface> surface;  // After the panel: it draws that.
    std::shared_ptr<NSMenuItem> highlighted;
    std::shared_ptr<NSMenuItem> owner;  ///< The row that it opened from; null for the first.
    bool isLeft = false;
  };

  /// One thing that will be done unless it is called off.
  class Delay {
   public:
    void start(int64_t nanoseconds, std::function<void()> action);
    void cancel() { timer_.reset(); }
    bool isRunning() const { return static_cast<bool>(timer_); }

   private:
    NSRunLoop::Timer timer_;
  };

  // MenuTracker.cpp: levels.
  void menuChanged(NSMenu& menu);
  void openLevel(const std::shared_ptr<NSMenu>& menu, const std::shared_ptr<NSMenuItem>& owner);
  void closeFrom(size_t depth);
  void place(size_t depth);
  bool openSubmenu(size_t depth, NSMenuItem& item);
  void highlight(size_t depth, NSMenuItem* item);
  bool hasLevel(size_t depth, const NSMenu& menu) const;
  std::optional<size_t> levelAt(NSPoint place) const;
  std::optional<size_t> levelOf(const NSMenu& menu) const;
  void choose(const std::shared_ptr<NSMenuItem>& item);
  void stateChanged() const;

  // MenuTrackerPointer.cpp.
  void hover(NSPoint place, bool mayBeHeading);
  void hoverOver(size_t depth, NSMenuItem* item);
  void settle(size_t depth);
  void leaveRows();
  void updateAutoscroll(size_t depth);
  void autoscroll();
  void click(NSPoint place);

  // MenuTrackerKeys.cpp.
  size_t keyLevel() const;
  void moveHighlight(size_t depth, int64_t from, int step);
  void movePage(size_t depth, int direction);
  void enterSubmenu();
  void leaveSubmenu();
  void perform();
  void moveFocus(bool isBackwards);
  bool enterRow();
  void showKeyboardOn(size_t depth) const;
  void typeAhead(const std::string& characters);
  void setFocus(NSView* view);

  MenuScreen& screen_;
  std::vector<std::unique_ptr<Level>> levels_;
  NSRect slot_;
  NSUserInterfaceLayoutDirection direction_ = NSUserInterfaceLayoutDirection::LeftToRight;

  ViewPointer viewPointer_;
  NSPoint pointer_;
  NSPoint headingFrom_;
  bool isPointerInUse_ = false;  ///< The last input came from it.
  NSEventModifierFlags modifiers_ = 0;
  /// The press that opened the menu is still held, and has left the slot meanwhile.
  bool isOpeningPress_ = false;
  bool hasDraggedAway_ = false;
  std::optional<NSPoint> touchStart_;
  NSPoint touchPlace_;
  bool isTouchScrolling_ = false;

  Delay submenuDelay_;
  Delay headingDelay_;
  Delay autoscrollDelay_;

  std::weak_ptr<NSView> focused_;
  std::string typed_;
  int64_t typedAt_ = 0;
};
