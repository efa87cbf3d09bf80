#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSShadow.h"
#include "Platform/AppKit/Text/NSFont.h"
#include "Platform/Foundation/NSGeometry.h"

enum class NSTextAlignment { Left = 0, Right = 1, Center = 2 };

/// How a run of text looks.
struct NSTextAttributes {
  NSFont font = NSFont::systemFontOfSize(13);
  NSColor foregroundColor = NSColor::blackColor();
  NSTextAlignment alignment = NSTextAlignment::Left;
  std::optional<NSShadow> shadow;
  friend bool operator==(const NSTextAttributes&, const NSTextAttributes&) = default;
};

/// Draws one line of text in the current graphics context. `point` is the lower left corner of the
/// line box.
void drawAtPointWithAttributes(std::string_view text, NSPoint point,
                               const NSTextAttributes& attributes);

/// The same within a rectangle: the line stands at its upper edge, by the attributes' alignment,
/// and is cut with an ellipsis where it is wider.
void drawInRectWithAttributes(std::string_view text, NSRect rect,
                              const NSTextAttributes& attributes);

/// The text, cut at its end with an ellipsis if it is wider than `width`.
std::string truncatedToWidth(std::string_view text, double width,
                             const NSTextAttributes& attributes);

/// The size of the line box of one line of text. It is the same at every scale.
NSSize sizeWithAttributes(std::string_view text, const NSTextAttributes& attributes);
