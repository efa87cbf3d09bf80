#pragma once

#include "Platform/AppKit/Events/NSEvent.h"

enum class NSUserInterfaceLayoutDirection { LeftToRight = 0, RightToLeft = 1 };

/// What the process knows of its input and its reader. Main thread only.
class NSApplication {
 public:
  static NSApplication& sharedApplication();

  /// The input being served; null outside of any.
  const NSEvent* currentEvent() const { return currentEvent_; }

  /// Whether menus are laid out from the right. Left to right at the start.
  NSUserInterfaceLayoutDirection userInterfaceLayoutDirection() const { return direction_; }
  void setUserInterfaceLayoutDirection(NSUserInterfaceLayoutDirection direction) {
    direction_ = direction;
  }

 private:
  friend class NSCurrentEvent;

  const NSEvent* currentEvent_ = nullptr;
  NSUserInterfaceLayoutDirection direction_ = NSUserInterfaceLayoutDirection::LeftToRight;
};

/// Makes an event, which must live as long, the application's current one for the life of this
/// object.
class NSCurrentEvent {
 public:
  explicit NSCurrentEvent(const NSEvent& event);
  NSCurrentEvent(const NSCurrentEvent&) = delete;
  NSCurrentEvent& operator=(const NSCurrentEvent&) = delete;
  ~NSCurrentEvent();

 private:
  const NSEvent* previous_;
};
