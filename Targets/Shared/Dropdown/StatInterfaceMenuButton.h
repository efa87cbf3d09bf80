#pragma once

#include "Shared/WENButton.h"
#include "Targets/Shared/Dropdown/DropdownElement.h"

/// A row's button: its text stands where those of other rows do. It acts on the release of the
/// press that began on it.
class StatInterfaceMenuButton_Time : public WENButton_Time, public DropdownElement {
 public:
  explicit StatInterfaceMenuButton_Time(NSRect frame = NSZeroRect);

  bool menuItemHighlighted() const { return menuItemHighlighted_; }
  void setMenuItemHighlighted(bool highlighted) override;
  void updateColors() override { setNeedsDisplay(true); }

  NSFont font() const override;
  NSColor textColor() const override;
  std::optional<NSColor> alternateTextColor() const override;
  bool useFullHeight() const override { return true; }
  void mouseDown(const NSEvent& event) override;
  void mouseUp(const NSEvent& event) override;

 private:
  bool menuItemHighlighted_ = false;
  int64_t lastEventNumber_ = 0;
};
