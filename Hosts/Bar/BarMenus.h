#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Platform/AppKit/Menus/MenuTracker.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

/// The menus of a bar's item on its display: their windows, their input and their frames.
class BarMenus : private MenuScreen, private MenuSessionClient {
 public:
  /// Both must outlive this object.
  BarMenus(Display& display, NSMenuBarSlot& slot) : display_(display), slot_(slot) {}
  BarMenus(const BarMenus&) = delete;
  BarMenus& operator=(const BarMenus&) = delete;
  ~BarMenus() override;

  /// Opens the menu of the slot's extra, if that has one, below `slotFrame`, in points of the
  /// desktop. Answers whether a menu is open then.
  bool open(const Monitor& monitor, NSRect slotFrame, MenuOpening opening);
  void close() { tracker_.close(); }
  bool isOpen() const { return tracker_.isTracking(); }
  MenuTracker& tracker() { return tracker_; }

  /// Input that the bar itself still gets, as of the press that opened the menu. Places are points
  /// of the desktop.
  void pointerEvent(const PointerEvent& event) { menuPointerEvent(event); }
  void touchEvent(const TouchEvent& event) { menuTouchEvent(event); }

 private:
  class Surface;

  NSRect menuArea() const override;
  std::unique_ptr<MenuSurface> makeSurface(MenuPanel& panel) override;
  void trackingEnded() override;

  void menuFrameReady(MenuWindow& window) override;
  void menuScaleChanged() override;
  void menuPointerEvent(const PointerEvent& event) override;
  void menuTouchEvent(const TouchEvent& event) override;
  void menuKeyEvent(const NSEvent& event) override;
  void menuSessionEnded() override;

  Display& display_;
  NSMenuBarSlot& slot_;
  Monitor monitor_;
  double top_ = 0;  ///< Of what menus may cover.
  std::unique_ptr<MenuSession> session_;
  NSRunLoop::Timer ending_;
  NSRunLoop::Timer resting_;
  std::optional<int32_t> finger_;
  NSPoint fingerPlace_;
  std::vector<Surface*> surfaces_;
  MenuTracker tracker_{*this};  // Last: its surfaces belong to the session.
};
