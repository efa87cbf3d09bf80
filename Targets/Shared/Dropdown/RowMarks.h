#pragma once

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Views/NSImageView.h"
#include "Targets/Shared/Dropdown/DropdownElement.h"

/// A tick, for a row that is switched on.
class TickView_Time : public NSView, public DropdownElement {
 public:
  using NSView::NSView;

  bool isOn() const { return isOn_; }
  void setOn(bool on);
  bool isHighlighted() const { return isHighlighted_; }
  void setMenuItemHighlighted(bool highlighted) override;

  void drawRect(NSRect rect) override;

 private:
  bool isOn_ = false;
  bool isHighlighted_ = false;
};

/// A round mark of any colour, 7 points wide.
class DotView_Time : public NSView {
 public:
  using NSView::NSView;

  const NSColor& color() const { return color_; }
  void setColor(const NSColor& color);

  void drawRect(NSRect rect) override;

 private:
  NSColor color_ = NSColor::blackColor();
};

/// A dot of a legend: the tag, from 1 to 8, picks its colour; any other shows none.
class DotImageView_Time : public NSImageView {
 public:
  using NSImageView::NSImageView;
  void setTag(int64_t tag) override;
};
