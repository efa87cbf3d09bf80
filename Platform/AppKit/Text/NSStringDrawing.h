#pragma once

#include <optional>
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

/// The size of the line box of one line of text. It is the same at every scale.
NSSize sizeWithAttributes(std::string_view text, const NSTextAttributes& attributes);
