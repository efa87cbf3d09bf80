#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Platform/AppKit/Views/NSView.h"

/// What a text field draws: one line at the upper edge of its frame, cut with an ellipsis where it
/// does not fit. It wraps nothing.
class NSTextFieldCell {
 public:
  virtual ~NSTextFieldCell() = default;

  const std::string& stringValue() const { return text_; }
  void setStringValue(std::string_view text);
  const NSTextAttributes& attributes() const { return attributes_; }
  void setFont(const NSFont& font);
  void setTextColor(const NSColor& color) { attributes_.foregroundColor = color; }
  void setAlignment(NSTextAlignment alignment) { attributes_.alignment = alignment; }

  virtual void drawInterior(NSRect frame, NSUserInterfaceLayoutDirection direction);

  /// Draws one line at the upper edge of a rectangle as fields do, without their inset: lines of
  /// one size stand level in every font, and left is where a line of the reader's language begins.
  static void drawLine(std::string_view text, NSRect line, NSTextAttributes attributes,
                       NSUserInterfaceLayoutDirection direction);

 private:
  std::string text_;
  NSTextAttributes attributes_;
  /// What of the text fits a width; worked out once.
  struct Fitted {
    double width;
    std::string text;
  };
  std::optional<Fitted> fitted_;
};

/// A text in a row. Left is where a line of the reader's language begins: in a window laid out from
/// the right, that is right.
class NSTextField : public NSView {
 public:
  explicit NSTextField(NSRect frame = NSZeroRect)
      : NSTextField(frame, std::make_unique<NSTextFieldCell>()) {}

  const std::string& stringValue() const { return cell_->stringValue(); }
  virtual void setStringValue(std::string_view text);
  const NSFont& font() const { return cell_->attributes().font; }
  void setFont(const NSFont& font);
  const NSColor& textColor() const { return cell_->attributes().foregroundColor; }
  void setTextColor(const NSColor& color);
  NSTextAlignment alignment() const { return cell_->attributes().alignment; }
  void setAlignment(NSTextAlignment alignment);

  /// The width of the text in the field's font, in points.
  double textWidth() const;

  void drawRect(NSRect rect) override;
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::StaticText; }
  std::string accessibilityLabel() const override { return stringValue(); }

 protected:
  NSTextField(NSRect frame, std::unique_ptr<NSTextFieldCell> cell)
      : NSView(frame), cell_(std::move(cell)) {}

 private:
  std::unique_ptr<NSTextFieldCell> cell_;
};
