#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Platform/AppKit/Menus/NSMenu.h"

/// A menu for tests of hosts. Its rows, 20 points high and grey in turn with a text, are "Row 1"
/// and so on; the second opens a menu of "Sub 1" to "Sub 3", the third has a button "Press" at its
/// right end. A highlighted row is blue. Each row and the button tell what was done: "act:Row 1",
/// "press".
class TestExtraMenu : private NSMenuDelegate {
 public:
  using Log = std::function<void(const std::string&)>;

  /// Tells of opening, closing and highlighting, too: "open", "close", "light:Row 1".
  TestExtraMenu(int rows, Log log);
  TestExtraMenu(const TestExtraMenu&) = delete;
  TestExtraMenu& operator=(const TestExtraMenu&) = delete;
  ~TestExtraMenu() override;

  const std::shared_ptr<NSMenu>& menu() const { return menu_; }
  void setRows(int rows);
  /// Of the first row, in points.
  void setWidth(double width);
  /// What is read aloud for the first row.
  void setName(const std::string& name);

 private:
  std::shared_ptr<NSMenuItem> makeRow(const std::string& title);
  void menuWillOpen(NSMenu& menu) override;
  void menuDidClose(NSMenu& menu) override;
  void menuWillHighlightItem(NSMenu& menu, NSMenuItem* item) override;

  Log log_;
  std::shared_ptr<NSMenu> menu_ = std::make_shared<NSMenu>();
};
