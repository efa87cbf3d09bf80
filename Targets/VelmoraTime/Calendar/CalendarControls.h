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

/// A button of two pictures, with a name that is read aloud and not seen. Pictures are read when it
/// is first drawn: most clocks are never opened.
class CalendarButton_Time : public WENButton_Time {
 public:
  struct Pictures {
    std::string_view usual;
    std::string_view pressed;
  };

  CalendarButton_Time(NSRect frame, const Pictures& pictures, std::string_view name)
      : WENButton_Time(frame), pictures_(pictures), name_(name) {}

  void drawRect(NSRect rect) override;
  std::string accessibilityLabel() const override { return name_; }
  std::string writtenText() const override { return {}; }

 private:
  Pictures pictures_;
  bool hasPictures_ = false;
  std::string name_;
};

/// At the foot of the days.
class CalendarShadowView_Time : public NSView {
 public:
  using NSView::NSView;

  void drawRect(NSRect rect) override;
};
