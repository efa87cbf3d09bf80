#include "Platform/AppKit/Menus/MenuAccessibility.h"

#include <algorithm>

#include "Platform/AppKit/Menus/RowText.h"

namespace {

template <typename Thing>
uint64_t idOf(const Thing& thing) {
  return reinterpret_cast<uintptr_t>(&thing);
}

std::optional<AccessibleElement::Role> roleOf(NSAccessibilityRole role) {
  using Role = AccessibleElement::Role;
  switch (role) {
    case NSAccessibilityRole::None:
      return std::nullopt;
    case NSAccessibilityRole::StaticText:
      return Role::StaticText;
    case NSAccessibilityRole::Image:
      return Role::Image;
    case NSAccessibilityRole::Button:
      return Role::Button;
    case NSAccessibilityRole::Table:
      return Role::Table;
    case NSAccessibilityRole::Row:
      return Role::Row;
    case NSAccessibilityRole::Cell:
      return Role::Cell;
  }
  return std::nullopt;
}

NSRect onDesktop(NSRect rect, const MenuPanel& panel) {
  rect.origin.x += panel.frame().origin.x;
  rect.origin.y += panel.frame().origin.y;
  return rect;
}

class Describer {
 public:
  explicit Describer(const MenuTracker& tracker) : tracker_(tracker) {}

  AccessibleElement menu(size_t depth) const {
    const MenuPanel& panel = tracker_.panel(depth);
    AccessibleElement element;
    element.id = idOf(*panel.menu());
    element.role = AccessibleElement::Role::Menu;
    if (const NSMenuItem* owner = panel.menu()->parentItem()) element.name = rowName(*owner);
    element.frame = panel.frame();
    for (const auto& item : panel.menu()->itemArray()) {
      if (!item->view() || item->view()->isHidden()) continue;
      AccessibleElement described = row(*item, panel, depth);
      // A gap between rows says nothing.
      if (item->isEnabled() || !described.name.empty() || !described.children.empty()) {
        element.children.push_back(std::move(described));
      }
    }
    return element;
  }

 private:
  AccessibleElement row(const NSMenuItem& item, const MenuPanel& panel, size_t depth) const {
    AccessibleElement element;
    element.id = idOf(item);
    element.role =
        item.isEnabled() ? AccessibleElement::Role::MenuItem : AccessibleElement::Role::StaticText;
    element.name = rowName(item);
    element.isEnabled = item.isEnabled();
    element.isSelected = item.isHighlighted();
    element.isFocused =
        element.isSelected && tracker_.focusedView() == nullptr && depth + 1 == focusedDepth();
    element.hasMenu = item.submenu() != nullptr;
    element.canPress = item.action() || item.submenu();
    element.frame = onDesktop(panel.rowFrame(item), panel);
    for (const auto& subview : item.view()->subviews())
      collect(*subview, panel, false, element.children);
    if (item.submenu() && depth + 1 < tracker_.depth() &&
        tracker_.panel(depth + 1).menu() == item.submenu()) {
      element.children.push_back(menu(depth + 1));
    }
    return element;
  }

  /// Plain texts of a row are in its name already; those of a table are its cells'.
  void collect(const NSView& view, const MenuPanel& panel, bool withTexts,
               std::vector<AccessibleElement>& into) const {
    if (view.isHidden()) return;
    const auto role = roleOf(view.accessibilityRole());
    const std::string label = view.accessibilityLabel();
    const bool isText = role == AccessibleElement::Role::StaticText;
    const bool isSilent = label.empty() && (isText || role == AccessibleElement::Role::Image);
    const bool isTold = role && !isSilent && (withTexts || !isText);
    AccessibleElement element;
    const bool isTable = role == AccessibleElement::Role::Table;
    for (const auto& subview : view.subviews())
      collect(*subview, panel, withTexts || isTable, isTold ? element.children : into);
    if (!isTold) return;
    element.id = idOf(view);
    element.role = *role;
    element.name = label;
    element.isEnabled = view.isAccessibilityEnabled();
    element.isSelected = view.isAccessibilitySelected();
    element.isFocused = tracker_.focusedView() == &view;
    element.canPress = view.canAccessibilityPerformPress();
    NSRect frame = view.convertRectToView(view.bounds(), nullptr);
    frame.origin.y -= panel.pointInColumn({}).y;
    element.frame = onDesktop(frame, panel);
    into.push_back(std::move(element));
  }

  /// One more than the depth of the innermost menu with a highlighted row; 0 for none.
  size_t focusedDepth() const {
    for (size_t depth = tracker_.depth(); depth > 0; --depth) {
      if (tracker_.highlightedItem(*tracker_.panel(depth - 1).menu()) != nullptr) return depth;
    }
    return 0;
  }

  const MenuTracker& tracker_;
};

std::shared_ptr<NSView> viewWithId(NSView& view, uint64_t id) {
  if (idOf(view) == id) return std::static_pointer_cast<NSView>(view.shared_from_this());
  for (const auto& subview : view.subviews()) {
    if (auto found = viewWithId(*subview, id)) return found;
  }
  return nullptr;
}

}  // namespace

std::optional<AccessibleElement> accessibleMenu(const MenuTracker& tracker) {
  if (!tracker.isTracking()) return std::nullopt;
  return Describer(tracker).menu(0);
}

bool pressAccessibleElement(MenuTracker& tracker, uint64_t id) {
  for (size_t depth = 0; depth < tracker.depth(); ++depth) {
    const MenuPanel& panel = tracker.panel(depth);
    for (const auto& item : panel.menu()->itemArray()) {
      if (idOf(*item) != id) continue;
      if (!item->isEnabled()) return false;
      tracker.performByRequest(*item);
      return true;
    }
    if (const auto view = viewWithId(panel.column(), id)) {
      bool isDone = false;
      NSRunLoop::guarded([&] { isDone = view->accessibilityPerformPress(); });
      return isDone;
    }
  }
  return false;
}
