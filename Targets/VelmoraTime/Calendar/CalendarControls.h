#pragma once

#include <string>
#include <string_view>

#include "Shared/WENButton.h"
#include "Targets/Shared/Dropdown/HeaderView.h"

/// The strip above the days, on which the month's name, the buttons and the weekdays stand in
/// white.
class CalendarHeaderView_Time : public HeaderView_Time {
 public:
  using HeaderView_Time::HeaderView_Time;

  void drawRect(NSRect rect) override;
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::None; }
};

/// A button of two pictures, with a name that is read aloud and not seen.
class CalendarButton_Time : public WENButton_Time {
 public:
  using WENButton_Time::WENButton_Time;

  void setName(std::string_view name) { name_ = name; }

  std::string accessibilityLabel() const override { return name_; }
  std::string writtenText() const override { return {}; }

 private:
  std::string name_;
};
