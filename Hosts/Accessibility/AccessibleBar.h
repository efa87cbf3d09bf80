#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/AppKit/Menus/AccessibleElement.h"
#include "Platform/Foundation/NSGeometry.h"

/// What assistive technologies are told of a bar's item. Frames are in points of the desktop, y
/// downwards.
struct AccessibleItem {
  std::string name;
  std::string description;
  NSRect frame;
  NSRect barFrame;
  /// Of the screen; nothing where other programs do not know places on the screen.
  std::optional<double> pixelsPerPoint;

  bool operator==(const AccessibleItem&) const = default;
};

/// What assistive technologies are told of a bar: that it is there, with one item and that item's
/// open menu. It is a plug-in of the bar's program, because nothing of it is wanted in a session
/// without them.
class AccessibleBar {
 public:
  /// Of the item itself, as if it were an element; none has this.
  static constexpr uint64_t ItemId = 0;

  virtual ~AccessibleBar() = default;

  /// Each tells what differs from before, and only that.
  virtual void setItem(const AccessibleItem& item) = 0;
  virtual void setMenu(const std::optional<AccessibleElement>& menu) = 0;

  /// The element, or the item, is to do what a click on it does. Called from within a request of
  /// another program: nothing may change before it returns.
  std::function<void(uint64_t id)> onPress;
};

/// The plug-in's one function. It takes the process's own place in the session's tree, so it is
/// called once.
using MakeAccessibleBarFunction = void (*)(std::unique_ptr<AccessibleBar>& bar);
constexpr const char* MakeAccessibleBarSymbol = "VelmoraMakeAccessibleBar";
