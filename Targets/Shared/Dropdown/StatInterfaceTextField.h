#pragma once

#include <memory>

#include "Platform/AppKit/Views/NSTextField.h"
#include "Targets/Shared/Dropdown/DropdownElement.h"

/// A text in a row: in its kind's colour, and white while the row is highlighted.
class StatInterfaceTextField_Time : public NSTextField, public DropdownElement {
 public:
  using NSTextField::NSTextField;

  /// The colour of this kind of text in the present theme.
  virtual NSColor defaultColor() const { return NSColor::blackColor(); }
  /// Takes colour and font of this kind from the theme; this one keeps what it has.
  virtual void resetColor() {}
  void updateColors() override;

  /// The colour of a row that is not highlighted.
  const NSColor& normalColor() const { return normalColor_; }
  void setNormalTextColor(const NSColor& color);
  void setDefaultColor() { setNormalTextColor(defaultColor()); }

  bool menuItemHighlighted() const { return menuItemHighlighted_; }
  void setMenuItemHighlighted(bool highlighted) override;

  /// A smaller, heavier font.
  bool alternateFont() const { return alternateFont_; }
  void setAlternateFont(bool alternate) { alternateFont_ = alternate; }
  /// Where the kind knows a bold font.
  bool isBold() const { return bold_; }
  void setBold(bool bold) { bold_ = bold; }

 private:
  bool alternateFont_ = false;
  bool menuItemHighlighted_ = false;
  bool bold_ = true;
  NSColor normalColor_ = NSColor::blackColor();
};

/// What says what a value is.
class StatInterfaceTextFieldLabel_Time : public StatInterfaceTextField_Time {
 public:
  using StatInterfaceTextField_Time::StatInterfaceTextField_Time;
  NSColor defaultColor() const override;
  void resetColor() override;
};

/// A value; bold in the light theme.
class StatInterfaceTextFieldValue_Time : public StatInterfaceTextField_Time {
 public:
  using StatInterfaceTextField_Time::StatInterfaceTextField_Time;
  NSColor defaultColor() const override;
  void resetColor() override;
};

/// The head of a column. It keeps the font that it was given.
class StatInterfaceTextFieldHeader_Time : public StatInterfaceTextField_Time {
 public:
  using StatInterfaceTextField_Time::StatInterfaceTextField_Time;
  NSColor defaultColor() const override;
  void resetColor() override;
};
