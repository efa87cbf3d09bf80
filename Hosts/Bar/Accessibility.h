#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Hosts/Accessibility/AccessibleBar.h"
#include "Hosts/Bar/MenuBar.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/AccessibilityStatus.h"

/// Tells assistive technologies of a bar and its open menus, from when the session has some, and
/// does what they ask for. Several changes within one pass of the loop are told as one. A name that
/// changes by itself, such as a time, is told with the next change of state, and once a minute.
class Accessibility {
 public:
  /// `bar` must outlive this object, which hears its changes from now on.
  explicit Accessibility(MenuBar& bar);
  Accessibility(const Accessibility&) = delete;
  Accessibility& operator=(const Accessibility&) = delete;
  ~Accessibility();

 private:
  void load();
  void schedulePass();
  void pass();
  void press(uint64_t id);
  void update();
  void scheduleMinute();

  MenuBar& bar_;
  std::unique_ptr<AccessibleBar> told_;
  std::vector<uint64_t> presses_;
  NSRunLoop::Timer pass_;
  NSRunLoop::Timer minute_;
  AccessibilityStatus status_;
};
