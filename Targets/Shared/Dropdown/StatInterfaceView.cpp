#include "Targets/Shared/Dropdown/StatInterfaceView.h"

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"

namespace {

// Of the highlight.
constexpr double SideMargin = 2;
constexpr double CornerRadius = 4;

}  // namespace

std::shared_ptr<StatInterfaceView_Time> StatInterfaceView_Time::containerWithFrame(NSRect frame) {
  auto container = std::make_shared<StatInterfaceView_Time>(frame);
  const auto inner = std::make_shared<StatInterfaceView_Time>(container->bounds());
  inner->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
  inner->setBackgroundDisabled(true);
  container->addSubview(inner);
  return container;
}

void StatInterfaceView_Time::setMenuItemHighlighted(bool highlighted) {
  if (highlighted != menuItemHighlighted_) {
    menuItemHighlighted_ = highlighted;
    setNeedsDisplay(true);
  }
  // Also without a change: a view may have been put in meanwhile.
  for (const auto& subview : subviews()) {
    if (auto* element = dynamic_cast<DropdownElement*>(subview.get())) {
      element->setMenuItemHighlighted(highlighted);
    }
  }
}

void StatInterfaceView_Time::setBackgroundDisabled(bool disabled) {
  backgroundDisabled_ = disabled;
  setNeedsDisplay(true);
}

void StatInterfaceView_Time::setCustomHighlightRect(bool custom) {
  if (custom == customHighlightRect_) return;
  customHighlightRect_ = custom;
  setNeedsDisplay(true);
}

void StatInterfaceView_Time::setHighlightRect(NSRect rect) {
  if (rect == highlightRect_) return;
  highlightRect_ = rect;
  setNeedsDisplay(true);
}

void StatInterfaceView_Time::updateColors() {
  for (const auto& subview : subviews())
    updateColorsForView(*subview);
  setNeedsDisplay(true);
}

void StatInterfaceView_Time::updateColorsForView(NSView& view) {
  if (auto* element = dynamic_cast<DropdownElement*>(&view)) element->updateColors();
  // A row hands it down itself.
  if (dynamic_cast<StatInterfaceView_Time*>(&view) != nullptr) return;
  for (const auto& subview : view.subviews())
    updateColorsForView(*subview);
}

void StatInterfaceView_Time::drawRect(NSRect) {
  if (backgroundDisabled_) return;
  dropdownBackgroundColor().setFill();
  NSBezierPath::bezierPathWithRect(bounds()).fill();
  if (customHighlightRect_ || (highlightable_ && menuItemHighlighted_)) drawHighlight();
}

void StatInterfaceView_Time::drawHighlight() const {
  NSRect area = bounds();
  if (customHighlightRect_) {
    area.origin.y = highlightRect_.origin.y;
    area.size.height = highlightRect_.size.height;
  }
  area = NSInsetRect(area, SideMargin, 0);
  const NSGradient down = dropdownHighlightGradient();
  const NSGradient up(down.endingColor(), down.startingColor());
  (isFlipped() ? up : down)
      .drawInBezierPath(NSBezierPath::bezierPathWithRoundedRect(area, CornerRadius), -90);
}
