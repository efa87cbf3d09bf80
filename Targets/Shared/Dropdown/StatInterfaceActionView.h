#pragma once

#include <string>
#include <string_view>

#include "Targets/Shared/Dropdown/StatInterfaceView.h"

/// A row of a title that leaves clicks to its menu item.
class StatInterfaceActionView_Time : public StatInterfaceView_Time {
 public:
  using StatInterfaceView_Time::StatInterfaceView_Time;

  const std::string& title() const { return title_; }
  void setTitle(std::string_view title);
  /// In the light theme.
  void setBold(bool bold);
  /// Whether the item does anything; else the title is pale.
  void setActs(bool acts);

  void drawRect(NSRect rect) override;
  bool acceptsFirstMouse() const override { return true; }
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Button; }
  std::string accessibilityLabel() const override { return title_; }
  bool isAccessibilityEnabled() const override { return acts_; }

 private:
  std::string title_;
  bool bold_ = false;
  bool acts_ = false;
};
