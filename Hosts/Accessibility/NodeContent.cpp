#include "Hosts/Accessibility/NodeContent.h"

#include <cmath>

namespace {

constexpr uint64_t BarId = ~AccessibleBar::ItemId;

constexpr NodeStates OnScreen = stateBit(ATK_STATE_VISIBLE) | stateBit(ATK_STATE_SHOWING);
constexpr NodeStates Usable = stateBit(ATK_STATE_ENABLED) | stateBit(ATK_STATE_SENSITIVE);

AtkRole roleOf(AccessibleElement::Role role) {
  using Role = AccessibleElement::Role;
  switch (role) {
    case Role::Menu:
      return ATK_ROLE_MENU;
    case Role::MenuItem:
      return ATK_ROLE_MENU_ITEM;
    case Role::StaticText:
      return ATK_ROLE_LABEL;
    case Role::Image:
      return ATK_ROLE_IMAGE;
    case Role::Button:
      return ATK_ROLE_PUSH_BUTTON;
    case Role::Table:
      return ATK_ROLE_TABLE;
    case Role::Row:
      return ATK_ROLE_TABLE_ROW;
    case Role::Cell:
      return ATK_ROLE_TABLE_CELL;
  }
  return ATK_ROLE_UNKNOWN;
}

const char* actionOf(const AccessibleElement& element) {
  if (!element.canPress || !element.isEnabled) return nullptr;
  if (element.role != AccessibleElement::Role::MenuItem) return "press";
  return element.hasMenu ? "open" : "click";
}

class Describer {
 public:
  explicit Describer(std::optional<double> pixelsPerPoint) : pixelsPerPoint_(pixelsPerPoint) {}

  NodeContent bar(const AccessibleItem& item, const std::optional<AccessibleElement>& menu) const {
    NodeContent content = placed(item.barFrame, item.barFrame);
    content.id = BarId;
    content.role = ATK_ROLE_MENU_BAR;
    content.name = "Menu bar";
    content.states = Usable | OnScreen;

    NodeContent button = placed(item.frame, item.barFrame);
    button.id = AccessibleBar::ItemId;
    button.role = ATK_ROLE_MENU;
    button.name = item.name;
    button.description = item.description;
    button.action = "click";
    button.states = Usable | OnScreen | stateBit(ATK_STATE_EXPANDABLE);
    if (menu) {
      button.states |= stateBit(ATK_STATE_EXPANDED);
      button.children.push_back(element(*menu, menu->frame));
    }
    content.children.push_back(std::move(button));
    return content;
  }

 private:
  NodeContent placed(const NSRect& frame, const NSRect& window) const {
    NodeContent content;
    content.frame = inPixels(frame);
    content.window = inPixels(window);
    content.hasScreenPlace = pixelsPerPoint_.has_value();
    return content;
  }

  AtkRectangle inPixels(const NSRect& rect) const {
    const auto pixel = [&](double points) {
      return static_cast<int>(std::lround(points * pixelsPerPoint_.value_or(1)));
    };
    const int x = pixel(rect.origin.x);
    const int y = pixel(rect.origin.y);
    return {x, y, pixel(rect.origin.x + rect.size.width) - x,
            pixel(rect.origin.y + rect.size.height) - y};
  }

  NodeContent element(const AccessibleElement& element, const NSRect& outerWindow) const {
    using Role = AccessibleElement::Role;
    const NSRect& window = element.role == Role::Menu ? element.frame : outerWindow;
    NodeContent content = placed(element.frame, window);
    content.id = element.id;
    content.role = roleOf(element.role);
    content.name = element.name;
    content.action = actionOf(element);
    content.states = stateBit(ATK_STATE_VISIBLE);
    const auto add = [&](bool isSo, AtkStateType state) {
      if (isSo) content.states |= stateBit(state);
    };
    const bool isRow = element.role == Role::MenuItem;
    add(!NSIsEmptyRect(NSIntersectionRect(element.frame, window)), ATK_STATE_SHOWING);
    add(element.isEnabled, ATK_STATE_ENABLED);
    add(element.isEnabled, ATK_STATE_SENSITIVE);
    add(isRow || content.action != nullptr, ATK_STATE_FOCUSABLE);
    add(element.isFocused, ATK_STATE_FOCUSED);
    add(isRow || element.role == Role::Cell || element.isSelected, ATK_STATE_SELECTABLE);
    add(element.isSelected, ATK_STATE_SELECTED);
    add(element.hasMenu, ATK_STATE_EXPANDABLE);
    for (const AccessibleElement& child : element.children) {
      add(element.hasMenu && child.role == Role::Menu, ATK_STATE_EXPANDED);
      content.children.push_back(this->element(child, window));
    }
    return content;
  }

  std::optional<double> pixelsPerPoint_;
};

}  // namespace

NodeContent barContent(const AccessibleItem& item, const std::optional<AccessibleElement>& menu) {
  return Describer(item.pixelsPerPoint).bar(item, menu);
}
