#pragma once

#include <functional>
#include <memory>

/// Hears when the session first has assistive technologies: a screen reader, for one. Main thread
/// only.
///
/// | what happens                                       | heard                              |
/// |----------------------------------------------------|------------------------------------|
/// | they are on when this object is made               | yes, soon after                    |
/// | they are turned on later                           | yes                                |
/// | their bus is not even running                      | it is not started for this, but    |
/// |                                                    | heard of when it starts            |
/// | the environment says NO_AT_BRIDGE=1                | never                              |
class AccessibilityStatus {
 public:
  /// `onEnabled` is called at most once, never from here.
  explicit AccessibilityStatus(std::function<void()> onEnabled);
  AccessibilityStatus(const AccessibilityStatus&) = delete;
  AccessibilityStatus& operator=(const AccessibilityStatus&) = delete;
  ~AccessibilityStatus();

 private:
  class Watch;
  std::shared_ptr<Watch> watch_;
};
