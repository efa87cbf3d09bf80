#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Platform/AppKit/Views/NSView.h"
#include "Shared/WENTargetItem.h"

/// A button of pictures and a text, for rows of menus. It acts when the pointer is released over
/// it. A picture that it lacks draws nothing; without an action a click does nothing. Main thread
/// only.
class WENButton_Time : public NSView {
 public:
  explicit WENButton_Time(NSRect frame = NSZeroRect);

  const std::string& title() const { return title_; }
  void setTitle(std::string_view title);
  virtual NSFont font() const { return font_; }
  void setFont(const NSFont& font);
  virtual NSColor textColor() const { return textColor_; }
  void setTextColor(const NSColor& color);
  /// While it is pressed; the usual one if there is none.
  virtual std::optional<NSColor> alternateTextColor() const { return alternateTextColor_; }
  void setAlternateTextColor(const NSColor& color) { alternateTextColor_ = color; }
  NSTextAlignment alignment() const { return alignment_; }
  void setAlignment(NSTextAlignment alignment);
  /// Whole points beside the text.
  void setTextMargins(int64_t left, int64_t right);
  /// Added to the text's place.
  NSPoint textOffset() const { return textOffset_; }
  void setTextOffset(NSPoint offset);
  /// Has the text begin at the upper edge instead of standing in the middle.
  virtual bool useFullHeight() const { return useFullHeight_; }
  void setUseFullHeight(bool fullHeight);

  void setImage(std::shared_ptr<NSImage> image);
  /// While it is pressed; without one the usual picture at `highlightedOpacity`.
  void setAlternateImage(std::shared_ptr<NSImage> image);
  void setSelectedImage(std::shared_ptr<NSImage> image);
  void setHighlightedOpacity(float opacity) { highlightedOpacity_ = opacity; }
  /// Has pictures stretched between caps of `leftSize` points at either end.
  void setStretchable(bool stretchable) { stretchable_ = stretchable; }
  void setLeftSize(int64_t points) { leftSize_ = points; }

  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);
  bool isSelected() const { return selected_; }
  void setSelected(bool selected);
  /// Has a selected button look the same while it is pressed.
  void setSelectedDisabledAlternate(bool disabled) { selectedDisabledAlternate_ = disabled; }
  bool isHighlighted() const { return isHighlighted_; }

  const std::optional<WENTargetItem_Time>& tapaction() const { return tapaction_; }
  void setTapaction(std::optional<WENTargetItem_Time> action) { tapaction_ = std::move(action); }
  /// The key that presses it wherever the keyboard rests; 0 for none.
  int64_t keyEquivilentCode() const { return keyEquivilentCode_; }
  void setKeyEquivilentCode(int64_t code) { keyEquivilentCode_ = code; }
  int64_t tag() const { return tag_; }
  void setTag(int64_t tag) { tag_ = tag; }

  void drawRect(NSRect rect) override;
  bool tracksMouse() const override { return true; }
  bool acceptsFirstMouse() const override { return true; }
  bool acceptsFirstResponder() const override { return enabled_ && tapaction_.has_value(); }
  void mouseDown(const NSEvent& event) override;
  void mouseUp(const NSEvent& event) override;
  void mouseEntered(const NSEvent& event) override;
  void mouseExited(const NSEvent& event) override;
  bool performKeyEquivalent(const NSEvent& event) override;

  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Button; }
  std::string accessibilityLabel() const override { return title_; }
  bool isAccessibilitySelected() const override { return selected_; }
  bool isAccessibilityEnabled() const override { return enabled_; }
  bool accessibilityPerformPress() override;

 protected:
  virtual void drawTitle(NSRect bounds);
  /// Ends a press; answers whether it ended over the button.
  bool endPress();
  void act() const;

 private:
  /// Whether it is held with the pointer over it.
  bool isHeld() const { return isHighlighted_ && isMouseInView_; }
  bool looksPressed() const { return isHeld() && !(selected_ && selectedDisabledAlternate_); }
  void drawImage() const;
  void drawStretchedImage() const;

  std::string title_;
  NSFont font_ = NSFont::systemFontOfSize(15);
  NSColor textColor_ = NSColor::blackColor();
  std::optional<NSColor> alternateTextColor_;
  NSTextAlignment alignment_ = NSTextAlignment::Center;
  int64_t leftMargin_ = 0;
  int64_t rightMargin_ = 0;
  NSPoint textOffset_;
  bool useFullHeight_ = false;
  std::shared_ptr<NSImage> image_;
  std::shared_ptr<NSImage> alternateImage_;
  std::shared_ptr<NSImage> selectedImage_;
  float highlightedOpacity_ = 0.5F;
  bool stretchable_ = false;
  int64_t leftSize_ = 0;
  bool enabled_ = true;
  bool selected_ = false;
  bool selectedDisabledAlternate_ = false;
  bool isHighlighted_ = false;
  bool isMouseInView_ = false;
  std::optional<WENTargetItem_Time> tapaction_;
  int64_t keyEquivilentCode_ = 0;
  int64_t tag_ = 0;
};
