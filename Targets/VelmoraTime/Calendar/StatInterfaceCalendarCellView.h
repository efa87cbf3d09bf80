#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"

/// What a cell of the month shows behind its number: the ground, the mark of today or of the chosen
/// day, and a row of dots for the day's calendars. Clicks are the month's.
class StatInterfaceCalendarCellView_Time : public StatInterfaceView_Time {
 public:
  explicit StatInterfaceCalendarCellView_Time(NSRect frame);

  bool isToday() const { return today_; }
  void setToday(bool today);
  bool isSelected() const { return selected_; }
  void setSelected(bool selected);
  /// Whether the day has events.
  bool drawDot() const { return drawDot_; }
  void setDrawDot(bool drawDot);
  /// What the cell stands for, a `MonthDayType`.
  int64_t mode() const { return mode_; }
  void setMode(int64_t mode);
  /// Of the day's calendars; the first five have dots.
  const std::vector<NSColor>& eventColors() const { return eventColors_; }
  void setEventColors(std::vector<NSColor> colors);

  /// Makes what is read aloud for the day; a cell without this is not told of.
  std::function<std::string()> accessibleName;
  /// Whether the keyboard comes to this cell, of all days.
  void setTakesKeyboard(bool takes) { takesKeyboard_ = takes; }
  /// A key that was pressed on the cell; answers whether it means anything.
  std::function<bool(const NSEvent&)> onKeyDown;
  /// The day is chosen without the pointer.
  std::function<void()> onPress;

  void drawRect(NSRect rect) override;
  bool acceptsFirstMouse() const override { return true; }
  bool acceptsFirstResponder() const override { return takesKeyboard_; }
  bool isEnteredByArrowKeys() const override { return takesKeyboard_; }
  bool keyDown(const NSEvent& event) override { return onKeyDown && onKeyDown(event); }
  NSAccessibilityRole accessibilityRole() const override {
    return accessibleName ? NSAccessibilityRole::Cell : NSAccessibilityRole::None;
  }
  std::string accessibilityLabel() const override {
    return accessibleName ? accessibleName() : std::string();
  }
  std::string writtenText() const override { return {}; }
  bool isAccessibilitySelected() const override { return selected_; }
  bool canAccessibilityPerformPress() const override { return static_cast<bool>(onPress); }
  bool accessibilityPerformPress() override;

 private:
  void drawMark() const;
  void drawDots() const;

  bool today_ = false;
  bool selected_ = false;
  bool drawDot_ = false;
  int64_t mode_ = 0;
  std::vector<NSColor> eventColors_;
  bool takesKeyboard_ = false;
};

/// The number in a cell. At the origin 0 it stands as far above the cell's middle as a row of dots
/// wants, at -3 in the middle.
class CalendarCellLabel_Time : public StatInterfaceTextField_Time {
 public:
  using StatInterfaceTextField_Time::StatInterfaceTextField_Time;

  void drawRect(NSRect rect) override;
  /// The cell has a name of its own.
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::None; }
};
