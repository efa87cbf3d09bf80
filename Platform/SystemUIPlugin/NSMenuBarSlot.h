#pragma once

#include <functional>
#include <memory>

#include "Platform/AppKit/NSColor.h"
#include "Platform/AppKit/NSGraphicsContext.h"
#include "Platform/SystemUIPlugin/NSMenuExtra.h"

/// What every host does for one extra, without a toolkit: keeps the slot's width and state and
/// draws the extra's view.
class NSMenuBarSlot : public NSMenuExtraSlot {
 public:
  /// Called when the slot wants to be drawn, and with a new width when that changed.
  std::function<void()> onNeedsDisplay;
  std::function<void()> onLengthChanged;

  void setExtra(std::shared_ptr<NSMenuExtra> extra) { extra_ = std::move(extra); }
  const std::shared_ptr<NSMenuExtra>& extra() const { return extra_; }

  double length() const { return length_; }
  void setMenuDown(bool isDown);

  /// Draws the extra's view with its lower left corner at the context's origin. An exception of the
  /// drawing code is reported and ends this pass only.
  void draw(NSGraphicsContext& context) const;

  void lengthChanged(double length) override;
  void needsDisplay() override;
  bool isMenuDown() const override { return isMenuDown_; }

 private:
  std::shared_ptr<NSMenuExtra> extra_;
  double length_ = 0;
  bool isMenuDown_ = false;
};

/// The bar behind the items.
NSColor menuBarBackgroundColor(bool isDark);

/// Whether the desktop asks for dark bars.
bool menuBarIsDark();
