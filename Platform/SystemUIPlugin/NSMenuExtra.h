#pragma once

#include <memory>
#include <string>

#include "Platform/AppKit/Views/NSView.h"
#include "Platform/Foundation/Files/NSBundle.h"

class NSMenu;

/// The place in a bar that a host gives to one extra: 22 points high, as wide as the extra asks.
class NSMenuExtraSlot {
 public:
  /// How far the background of a selected item reaches beyond it, in points: a host leaves room.
  static constexpr double SelectionMargin = 4;

  virtual ~NSMenuExtraSlot() = default;
  virtual void lengthChanged(double length) = 0;
  virtual void needsDisplay() = 0;
  /// Whether the extra's menu is open.
  virtual bool isMenuDown() const = 0;
  /// The extra wants to be unloaded and loaded anew; not within this call.
  virtual void reloadExtra() = 0;
};

/// What an extra is made of: a list of its family's own kind.
struct NSMenuExtraModules {};

/// One status item. A host makes it from a bundle, draws its view, asks it for a menu on a click
/// and tells it when to unload. Main thread only.
class NSMenuExtra : public NSObject, private NSWindow {
 public:
  static constexpr double Height = 22;

  /// `slot` must outlive the extra.
  void init(NSMenuExtraSlot& slot, const NSBundle& bundle);
  virtual void initWithBundle(const NSBundle& bundle);

  const std::shared_ptr<NSView>& view() const { return view_.root(); }
  void setView(std::shared_ptr<NSView> view);

  double length() const { return length_; }
  /// Sets the slot's width in points.
  void setLength(double length);

  bool isMenuDown() const { return slot_ != nullptr && slot_->isMenuDown(); }

  /// Paints the background of the selected item, if `selected`, over the view's bounds and a margin
  /// around them.
  void drawMenuBackground(bool selected);

  /// Asked for on a click. Null means that nothing opens.
  virtual std::shared_ptr<NSMenu> menu() { return nullptr; }
  virtual void willUnload() {}

  /// Asks the host to unload this extra and to load it anew into the same slot: for a setting that
  /// everything follows from.
  void reload();

  /// Null for an extra without modules.
  virtual const NSMenuExtraModules* modules() const { return nullptr; }

  virtual std::string title() const { return ""; }
  virtual std::string AXTitle() const { return title(); }
  virtual std::string AXDescription() const { return ""; }

 private:
  void viewNeedsDisplay(NSRect rect) override;

  NSMenuExtraSlot* slot_ = nullptr;
  NSShownView view_;
  double length_ = 0;
};

/// The view that a host shows for an extra.
class NSMenuExtraView : public NSView {
 public:
  /// `menuExtra` is not owned: it owns the view.
  NSMenuExtraView(NSRect frame, NSMenuExtra& menuExtra) : NSView(frame), menuExtra_(&menuExtra) {}

  NSMenuExtra& menuExtra() const { return *menuExtra_; }

 private:
  NSMenuExtra* menuExtra_;
};
