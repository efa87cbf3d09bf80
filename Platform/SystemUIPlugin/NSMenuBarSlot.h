#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/SystemUIPlugin/NSMenuExtra.h"
#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"

/// What every host does for one extra, without a toolkit: loads and unloads it, keeps the slot's
/// width and state and draws the extra's view.
///
/// A host is told nothing of an extra until that has started and its width is known. While one
/// extra takes another's place, what the host shows stays as it is.
class NSMenuBarSlot : public NSObject, public NSMenuExtraSlot {
 public:
  /// Called when the slot wants to be drawn, and with a new width when that changed.
  std::function<void()> onNeedsDisplay;
  std::function<void()> onLengthChanged;
  /// Called before the extra goes, whose menu goes with it.
  std::function<void()> onMenuShouldClose;

  /// Makes the bundle's extra, which starts with the next pass of the run loop.
  void load(NSMenuExtraBundle bundle);
  /// Closes the extra's menu, tells the extra that it goes and drops it.
  void unload();

  void setExtra(std::shared_ptr<NSMenuExtra> extra) { extra_ = std::move(extra); }
  const std::shared_ptr<NSMenuExtra>& extra() const { return extra_; }

  /// An extra has been made and has not started: what it draws and how wide it is means nothing.
  bool isStarting() const { return startingLength_.has_value(); }

  double length() const { return length_; }
  void setMenuDown(bool isDown);

  /// Draws the extra's view with its lower left corner at the context's origin. An exception of the
  /// drawing code is reported and ends this pass only.
  void draw(NSGraphicsContext& context) const;

  void lengthChanged(double length) override;
  void needsDisplay() override;
  bool isMenuDown() const override { return isMenuDown_; }
  void reloadExtra() override;

 private:
  void makeExtra();
  void showOnceStarted();

  std::optional<NSMenuExtraBundle> bundle_;
  std::shared_ptr<NSMenuExtra> extra_;
  double length_ = 0;
  /// The width of an extra that has not started yet; nothing once it has.
  std::optional<double> startingLength_;
  bool isMenuDown_ = false;
};

/// The bar behind the items.
NSColor menuBarBackgroundColor(bool isDark);

/// Whether the desktop asks for dark bars.
bool isMenuBarDark();
