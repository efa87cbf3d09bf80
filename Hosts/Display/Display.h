#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Hosts/Display/InputEvents.h"
#include "Hosts/Display/MenuSession.h"
#include "Hosts/Display/Pixels.h"
#include "Platform/Foundation/NSGeometry.h"

/// One monitor of the desktop.
struct Monitor {
  std::string name;  ///< Its connector, such as "DP-1".
  NSRect frame;      ///< In points of the desktop, y downwards.
  double scale = 1;  ///< Pixels a point.
  bool isPrimary = false;

  bool operator==(const Monitor&) const = default;
};

/// Whoever fills a surface and hears what happens to it. Called on the main thread; must outlive
/// the surface.
class SurfaceClient {
 public:
  virtual ~SurfaceClient() = default;

  /// The surface has another size or scale, or has lost its picture: all of it is to be shown anew.
  virtual void surfaceChanged() = 0;
  /// The display takes the picture that `requestFrame` has asked for.
  virtual void frameReady() = 0;
  virtual void pointerEvent(const PointerEvent& event) = 0;
  virtual void touchEvent(const TouchEvent& event) = 0;
  /// The display has taken the surface away. It shows nothing any more.
  virtual void surfaceClosed() = 0;
};

/// A bar's window along the upper edge of one monitor, `height` points high, with the space below
/// other windows kept free: a background and, somewhere on it, one item. It closes with this
/// object.
class BarSurface {
 public:
  virtual ~BarSurface() = default;

  /// Goes to another monitor, or follows its monitor's new place and size.
  virtual void moveTo(const Monitor& monitor) = 0;

  /// Points; 0 until the display has told it.
  virtual double width() const = 0;
  /// Pixels a point, in steps of 1/120.
  virtual double scale() const = 0;
  /// The grid, in whole pixels, on which the item's picture must lie and of which its size must be
  /// a multiple.
  virtual int pixelGrid() const = 0;

  /// Fills the bar: one colour for each row of pixels from the top down.
  virtual void setBackground(std::span<const uint32_t> rows) = 0;
  /// Shows `picture` with its upper left corner `x` pixels from the bar's left end. `changed` is
  /// where it differs from the picture before, if that had the same place and size.
  virtual void presentItem(const PixelPicture& picture, int x, PixelRect changed) = 0;
  /// Has `frameReady` called once, as soon as the display can show another picture; not while the
  /// bar is out of sight.
  virtual void requestFrame() = 0;
};

/// The connection to a desktop's display. One implementation for each kind of display.
class Display {
 public:
  virtual ~Display() = default;

  virtual std::vector<Monitor> monitors() const = 0;
  /// Whether places on the desktop mean something to other programs: in points times the scale,
  /// they are the pixels of one screen.
  virtual bool hasCommonPlaces() const { return false; }
  /// Called once for each burst of changes of the monitors.
  std::function<void()> onMonitorsChanged;
  /// Called, at most once, when the display has gone; with the reason.
  std::function<void(const std::string& reason)> onLost;

  /// Makes the bar's window on one of `monitors()`. Throws `std::runtime_error` with the reason.
  virtual std::unique_ptr<BarSurface> makeBar(const Monitor& monitor, int height,
                                              SurfaceClient& client) = 0;

  /// Takes the input of the desktop for menus on one of `monitors()`. Null where it cannot be had,
  /// as when another program holds it.
  virtual std::unique_ptr<MenuSession> beginMenus(const Monitor& monitor,
                                                  MenuSessionClient& client) = 0;
};
