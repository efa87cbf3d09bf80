#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/AppKit/Menus/MenuPlacement.h"
#include "Platform/AppKit/Menus/MenuTracker.h"

namespace {

constexpr int64_t Millisecond = 1'000'000;
/// For as long the pointer rests on a row before its submenu opens, or the one of another closes.
constexpr int64_t SubmenuDelay = 200 * Millisecond;
/// For as long a pointer on its way into a submenu may stand still.
constexpr int64_t HeadingDelay = 300 * Millisecond;
constexpr int64_t AutoscrollInterval = 16 * Millisecond;
constexpr double AutoscrollStep = 4;
/// Points that a finger may tremble.
constexpr double TouchTremor = 8;

}  // namespace

// --- The pointer --------------------------------------------------------------------------------

void MenuTracker::pointerMoved(NSPoint place, NSEventModifierFlags modifiers) {
  modifiers_ = modifiers;
  pointer_ = place;
  if (!isTracking()) return;
  if (isOpeningPress_ && !NSPointInRect(place, slot_)) hasDraggedAway_ = true;
  // A pointer that lies anywhere else takes nothing from the keyboard.
  if (!isPointerInUse_ && !isOpeningPress_ && !levelAt(place)) return;
  isPointerInUse_ = true;
  hover(place, true);
}

void MenuTracker::hover(NSPoint place, bool mayBeHeading) {
  const std::optional<size_t> depth = levelAt(place);
  if (!depth) {
    if (viewPointer_.isPressing()) {
      viewPointer_.leave();
      viewPointer_.drag({-1, -1});
      return;
    }
    leaveRows();
    return;
  }
  MenuPanel& panel = *levels_[*depth]->panel;
  const NSPoint inPanel = panel.pointFromDesktop(place);
  viewPointer_.moveOver(panel.column(), panel.pointInColumn(inPanel), modifiers_);
  if (viewPointer_.isPressing()) {
    viewPointer_.drag(panel.pointInColumn(inPanel));
    return;
  }
  updateAutoscroll(*depth);
  NSMenuItem* item = panel.itemAtPoint(inPanel);
  if (item != nullptr && !item->isEnabled()) item = nullptr;
  const NSPoint from = std::exchange(headingFrom_, place);
  const bool hasSubmenu = levels_.size() > *depth + 1;
  if (mayBeHeading && hasSubmenu && levels_[*depth + 1]->owner.get() != item &&
      isHeadingTo(levels_[*depth + 1]->panel->frame(), from, place)) {
    // On its diagonal way into the submenu the pointer crosses other rows.
    headingDelay_.start(HeadingDelay, [this] { hover(pointer_, false); });
    return;
  }
  headingDelay_.cancel();
  hoverOver(*depth, item);
}

void MenuTracker::hoverOver(size_t depth, NSMenuItem* item) {
  const std::shared_ptr<NSMenu> menu = levels_[depth]->menu;
  // The rows on the way here are those that lead here; further in none is highlighted any more.
  for (size_t outer = 0; outer < depth && outer + 1 < levels_.size(); ++outer)
    highlight(outer, levels_[outer + 1]->owner.get());
  for (size_t inner = depth + 1; inner < levels_.size(); ++inner)
    highlight(inner, nullptr);
  // Any message may have changed everything.
  if (!hasLevel(depth, *menu) || (item != nullptr && item->menu() != menu.get())) return;
  const bool isNew = levels_[depth]->highlighted.get() != item;
  const NSMenuItem* open = levels_.size() > depth + 1 ? levels_[depth + 1]->owner.get() : nullptr;
  highlight(depth, item);
  if (!hasLevel(depth, *menu)) return;
  if (focusedView() == nullptr) showKeyboardOn(depth);
  if (item != nullptr && item == open) {
    submenuDelay_.cancel();
  } else if (isNew && (open != nullptr || (item != nullptr && item->submenu()))) {
    submenuDelay_.start(SubmenuDelay, [this, depth] { settle(depth); });
  }
}

/// The pointer has rested: what is open beside the menu is what its highlighted row leads to.
void MenuTracker::settle(size_t depth) {
  if (depth >= levels_.size()) return;
  const std::shared_ptr<NSMenuItem> item = levels_[depth]->highlighted;
  if (item && item->submenu()) {
    openSubmenu(depth, *item);
  } else {
    closeFrom(depth + 1);
  }
}

void MenuTracker::pointerLeft() {
  if (isTracking() && !viewPointer_.isPressing()) leaveRows();
}

void MenuTracker::leaveRows() {
  viewPointer_.leave();
  autoscrollDelay_.cancel();
  headingDelay_.cancel();
  submenuDelay_.cancel();
  if (!isTracking()) return;
  // A row whose submenu is open stays highlighted.
  for (size_t outer = 0; outer + 1 < levels_.size(); ++outer)
    highlight(outer, levels_[outer + 1]->owner.get());
  if (isTracking()) highlight(levels_.size() - 1, nullptr);
}

void MenuTracker::pointerPressed(NSPoint place, NSEventModifierFlags modifiers) {
  pointerMoved(place, modifiers);
  if (!isTracking() || viewPointer_.isPressing()) return;
  const std::optional<size_t> depth = levelAt(place);
  if (!depth) {
    // Beside all menus, or on the slot for the second time.
    close();
    return;
  }
  MenuPanel& panel = *levels_[*depth]->panel;
  const NSPoint inPanel = panel.pointFromDesktop(place);
  if (NSView* view = panel.trackingViewAtPoint(inPanel)) {
    viewPointer_.press(*view, panel.pointInColumn(inPanel), modifiers);
    return;
  }
  NSMenuItem* item = panel.itemAtPoint(inPanel);
  if (item != nullptr && item->submenu()) openSubmenu(*depth, *item);
}

void MenuTracker::pointerReleased(NSPoint place) {
  pointer_ = place;
  if (!isTracking()) return;
  if (viewPointer_.isPressing()) {
    const std::optional<size_t> depth = levelAt(place);
    const MenuPanel* panel = depth ? levels_[*depth]->panel.get() : nullptr;
    viewPointer_.release(panel != nullptr ? panel->pointInColumn(panel->pointFromDesktop(place))
                                          : NSPoint{-1, -1});
    if (isTracking()) hover(place, false);
    return;
  }
  if (std::exchange(isOpeningPress_, false) && !levelAt(place)) {
    // A click opens the menu; a pull that ends nowhere was a look at it.
    if (hasDraggedAway_) close();
    return;
  }
  click(place);
}

void MenuTracker::click(NSPoint place) {
  const std::optional<size_t> depth = levelAt(place);
  if (!depth) return;
  const MenuPanel& panel = *levels_[*depth]->panel;
  NSMenuItem* item = panel.itemAtPoint(panel.pointFromDesktop(place));
  if (item == nullptr || !item->isEnabled()) return;
  const auto kept = std::static_pointer_cast<NSMenuItem>(item->shared_from_this());
  if (!openSubmenu(*depth, *kept)) choose(kept);
}

void MenuTracker::pointerCancelled() {
  isOpeningPress_ = false;
  viewPointer_.cancel();
}

// --- Scrolling ----------------------------------------------------------------------------------

void MenuTracker::scrolled(NSPoint place, NSPoint delta) {
  pointer_ = place;
  const std::optional<size_t> depth = levelAt(place);
  if (!depth) return;
  MenuPanel& panel = *levels_[*depth]->panel;
  const NSPoint inColumn = panel.pointInColumn(panel.pointFromDesktop(place));
  NSEvent event;
  event.type = NSEventType::ScrollWheel;
  event.locationInWindow = inColumn;
  event.scrollingDelta = delta;
  const NSCurrentEvent current(event);
  for (NSView* view = panel.column().hitTest(inColumn); view != nullptr;) {
    const auto kept = std::static_pointer_cast<NSView>(view->shared_from_this());
    bool isUsed = false;
    NSRunLoop::guarded([&] { isUsed = kept->scrollWheel(event); });
    if (isUsed) return;
    view = kept->superview();
  }
  if (!hasLevel(*depth, *panel.menu()) || !panel.scrollBy(delta.y)) return;
  closeFrom(*depth + 1);  // Its row has moved away from it.
  if (isTracking()) hover(place, false);
}

void MenuTracker::updateAutoscroll(size_t depth) {
  const MenuPanel& panel = *levels_[depth]->panel;
  if (panel.arrowAtPoint(panel.pointFromDesktop(pointer_)) == 0) {
    autoscrollDelay_.cancel();
  } else if (!autoscrollDelay_.isRunning()) {
    autoscrollDelay_.start(AutoscrollInterval, [this] { autoscroll(); });
  }
}

void MenuTracker::autoscroll() {
  const std::optional<size_t> depth = levelAt(pointer_);
  if (!depth) return;
  MenuPanel& panel = *levels_[*depth]->panel;
  const int side = panel.arrowAtPoint(panel.pointFromDesktop(pointer_));
  if (side == 0 || !panel.scrollBy(side * AutoscrollStep)) return;
  closeFrom(*depth + 1);
  if (isTracking()) hover(pointer_, false);
}

// --- Touch --------------------------------------------------------------------------------------

void MenuTracker::touchDown(NSPoint place) {
  if (!levelAt(place)) {
    pointerPressed(place);
    return;
  }
  touchStart_ = place;
  touchPlace_ = place;
  isTouchScrolling_ = false;
  pointerMoved(place);
  const std::optional<size_t> depth = levelAt(place);
  if (!depth) return;
  MenuPanel& panel = *levels_[*depth]->panel;
  const NSPoint inPanel = panel.pointFromDesktop(place);
  if (NSView* view = panel.trackingViewAtPoint(inPanel)) {
    viewPointer_.press(*view, panel.pointInColumn(inPanel), 0);
  }
}

void MenuTracker::touchMoved(NSPoint place) {
  if (!touchStart_) {
    pointerMoved(place);
    return;
  }
  const double step = std::exchange(touchPlace_, place).y - place.y;
  if (!isTouchScrolling_ && std::abs(place.y - touchStart_->y) > TouchTremor) {
    isTouchScrolling_ = true;
    viewPointer_.cancel();
  }
  const std::optional<size_t> depth = levelAt(*touchStart_);
  const bool hasScrolled = isTouchScrolling_ && depth && levels_[*depth]->panel->scrollBy(step);
  if (hasScrolled) closeFrom(*depth + 1);
  if (!isTouchScrolling_) pointerMoved(place);
}

void MenuTracker::touchUp(NSPoint place) {
  if (!std::exchange(touchStart_, std::nullopt)) {
    pointerReleased(place);
    return;
  }
  if (!std::exchange(isTouchScrolling_, false)) pointerReleased(place);
  if (isTracking()) pointerLeft();  // A finger that is lifted is nowhere.
}
