#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Platform/AppKit/Drawing/NSColor.h"

/// One of the user's calendars. Immutable, so safe from any thread.
class EKCalendar {
 public:
  EKCalendar(std::string calendarIdentifier, std::string title, std::string colorString = {},
             std::optional<NSColor> color = {})
      : identifier_(std::move(calendarIdentifier)),
        title_(std::move(title)),
        colorString_(std::move(colorString)),
        color_(color) {}

  /// Unique in the store, and the same at each start.
  const std::string& calendarIdentifier() const { return identifier_; }
  const std::string& title() const { return title_; }
  /// Nothing where the calendar has none, or one that does not read.
  const std::optional<NSColor>& color() const { return color_; }
  /// The colour as its source writes it, mostly "#RRGGBB"; empty where there is none.
  const std::string& colorString() const { return colorString_; }

 private:
  std::string identifier_;
  std::string title_;
  std::string colorString_;
  std::optional<NSColor> color_;
};
