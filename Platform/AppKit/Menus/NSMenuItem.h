#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/AppKit/Views/NSView.h"

class NSMenu;

/// One row of a menu: a view, what a click on it does, and the menu that it opens. Main thread
/// only.
class NSMenuItem : public NSObject {
 public:
  using Action = std::function<void()>;

  ~NSMenuItem() override;

  const std::string& title() const { return title_; }
  void setTitle(std::string_view title) { title_ = title; }

  /// The row. An item without a view is not seen.
  const std::shared_ptr<NSView>& view() const { return view_; }
  virtual void setView(std::shared_ptr<NSView> view);

  /// A menu is the submenu of one item at a time: its earlier one loses it.
  const std::shared_ptr<NSMenu>& submenu() const { return submenu_; }
  void setSubmenu(std::shared_ptr<NSMenu> submenu);

  /// Done when the item is chosen, once its menu has closed.
  const Action& action() const { return action_; }
  void setAction(Action action) { action_ = std::move(action); }

  /// Whether the row can be reached. By itself it is what does or opens something.
  bool isEnabled() const;
  /// Has an item without an action of its own count as one that can be reached: its view's controls
  /// are what acts.
  void setHasActingView(bool hasActingView) { hasActingView_ = hasActingView; }

  /// The menu that holds the item; null if none does.
  NSMenu* menu() const { return menu_; }
  bool isHighlighted() const;

  /// What is read aloud for the row; empty has its texts read.
  const std::string& accessibilityLabel() const { return accessibilityLabel_; }
  void setAccessibilityLabel(std::string_view label) { accessibilityLabel_ = label; }

 private:
  friend NSMenu;

  std::string title_;
  std::shared_ptr<NSView> view_;
  std::shared_ptr<NSMenu> submenu_;
  Action action_;
  bool hasActingView_ = false;
  std::string accessibilityLabel_;
  NSMenu* menu_ = nullptr;
};
