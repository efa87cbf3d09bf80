#pragma once

#include <filesystem>
#include <memory>

#include "Platform/AppKit/Menus/MenuTracker.h"

/// Open menus without a display: what a user would see of them, as a file.
class MenuSnapshot : private MenuScreen {
 public:
  /// `menuArea` is the part of an imagined monitor that menus keep within, y downwards.
  explicit MenuSnapshot(NSRect menuArea) : menuArea_(menuArea) {}

  /// Opens and drives the menus.
  MenuTracker& tracker() { return tracker_; }

  /// Draws all open menus, with what stands around them, on a clear ground. Throws
  /// `std::runtime_error` if the file cannot be written, `std::logic_error` if no menu is open.
  /// Returns the size in pixels.
  NSSize writePng(const std::filesystem::path& file, double scale);

 private:
  class Surface;

  NSRect menuArea() const override { return menuArea_; }
  std::unique_ptr<MenuSurface> makeSurface(MenuPanel& panel) override;
  void trackingEnded() override {}

  NSRect menuArea_;
  MenuTracker tracker_{*this};
};
