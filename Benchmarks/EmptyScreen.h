#pragma once

#include <memory>

#include "Platform/AppKit/Menus/MenuTracker.h"

/// A monitor that shows nothing.
class EmptyScreen : public MenuScreen {
 public:
  NSRect menuArea() const override { return {{0, 22}, {1920, 1058}}; }
  std::unique_ptr<MenuSurface> makeSurface(MenuPanel&) override {
    struct Surface : MenuSurface {
      void requestFrame() override {}
    };
    return std::make_unique<Surface>();
  }
  void trackingEnded() override {}
};
