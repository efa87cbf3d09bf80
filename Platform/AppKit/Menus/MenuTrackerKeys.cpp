#include <algorithm>
#include <utility>

#include "Platform/AppKit/Menus/MenuTracker.h"
#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

/// For as long letters that follow each other are one word.
constexpr int64_t WordTime = 1'000'000'000;

/// The controls of a row that the keyboard can rest on, in reading order.
void collectControls(NSView& view, std::vector<NSView*>& controls) {
  if (view.isHidden()) return;
  if (view.acceptsFirstResponder()) controls.push_back(&view);
  for (const auto& subview : view.subviews())
    collectControls(*subview, controls);
}

std::vector<NSView*> controlsOf(const NSMenuItem* item) {
  std::vector<NSView*> controls;
  if (item != nullptr && item->view()) collectControls(*item->view(), controls);
  return controls;
}

}  // namespace

/// The keyboard acts on the innermost menu in which a row is highlighted.
size_t MenuTracker::keyLevel() const {
  for (size_t depth = levels_.size(); depth-- > 0;) {
    if (levels_[depth]->highlighted) return depth;
  }
  return levels_.size() - 1;
}

void MenuTracker::keyPressed(const NSEvent& event) {
  if (!isTracking()) return;
  isPointerInUse_ = false;
  const NSCurrentEvent current(event);
  const size_t depth = keyLevel();
  if (const auto focused = focused_.lock()) {
    bool isUsed = false;
    NSRunLoop::guarded([&] { isUsed = focused->keyDown(event); });
    if (isUsed || !isTracking()) return;
  }
  {
    const std::shared_ptr<NSMenu> menu = levels_[depth]->menu;
    bool isUsed = false;
    NSRunLoop::guarded(
        [&] { isUsed = levels_[depth]->panel->column().performKeyEquivalent(event); });
    if (isUsed || !hasLevel(depth, *menu)) return;
  }
  const bool isMirrored = direction_ == NSUserInterfaceLayoutDirection::RightToLeft;
  const auto count = static_cast<int64_t>(levels_[depth]->menu->numberOfItems());
  switch (event.keyCode) {
    case NSKeyCodeDown:
    case NSKeyCodeUp: {
      if (event.keyCode == NSKeyCodeDown && enterRow()) break;
      const int step = event.keyCode == NSKeyCodeDown ? 1 : -1;
      const auto& highlighted = levels_[depth]->highlighted;
      const int64_t from =
          highlighted ? static_cast<int64_t>(levels_[depth]->menu->indexOfItem(*highlighted))
          : step > 0  ? -1
                      : count;
      moveHighlight(depth, from, step);
      break;
    }
    case NSKeyCodeHome:
      moveHighlight(depth, -1, 1);
      break;
    case NSKeyCodeEnd:
      moveHighlight(depth, count, -1);
      break;
    case NSKeyCodePageDown:
      movePage(depth, 1);
      break;
    case NSKeyCodePageUp:
      movePage(depth, -1);
      break;
    case NSKeyCodeRight:
      isMirrored ? leaveSubmenu() : enterSubmenu();
      break;
    case NSKeyCodeLeft:
      isMirrored ? enterSubmenu() : leaveSubmenu();
      break;
    case NSKeyCodeReturn:
    case NSKeyCodeKeypadEnter:
      perform();
      break;
    case NSKeyCodeSpace:
      // In the middle of a word it is a letter.
      typed_.empty() || NSRunLoop::mainRunLoop().now() - typedAt_ > WordTime ? perform()
                                                                             : typeAhead(" ");
      break;
    case NSKeyCodeEscape:
      closeFrom(levels_.size() - 1);
      break;
    case NSKeyCodeTab:
      moveFocus((event.modifierFlags & NSEventModifierFlagShift) != 0);
      break;
    default:
      typeAhead(event.characters);
      break;
  }
}

void MenuTracker::moveHighlight(size_t depth, int64_t from, int step) {
  const std::shared_ptr<NSMenu> menu = levels_[depth]->menu;
  const auto count = static_cast<int64_t>(menu->numberOfItems());
  for (int64_t tried = 0, index = from; tried < count; ++tried) {
    // Round at the ends.
    index = ((index + step) % count + count) % count;
    const std::shared_ptr<NSMenuItem> item = menu->itemArray()[static_cast<size_t>(index)];
    if (!item->isEnabled() || !item->view() || item->view()->isHidden()) continue;
    closeFrom(depth + 1);
    if (!hasLevel(depth, *menu)) return;
    levels_[depth]->panel->scrollToItem(*item);
    highlight(depth, item.get());
    if (hasLevel(depth, *menu)) showKeyboardOn(depth);
    return;
  }
}

/// To the last row that lies within a panel's height of the highlighted one.
void MenuTracker::movePage(size_t depth, int direction) {
  const Level& level = *levels_[depth];
  const auto& items = level.menu->itemArray();
  const auto count = static_cast<int64_t>(items.size());
  if (!level.highlighted) {
    moveHighlight(depth, direction > 0 ? -1 : count, direction);
    return;
  }
  const double start = level.panel->rowFrame(*level.highlighted).origin.y;
  const auto from = static_cast<int64_t>(level.menu->indexOfItem(*level.highlighted));
  int64_t last = from;
  for (int64_t index = from + direction; index >= 0 && index < count; index += direction) {
    const NSMenuItem& item = *items[static_cast<size_t>(index)];
    const double way = (level.panel->rowFrame(item).origin.y - start) * direction;
    if (way > level.panel->frame().size.height) break;
    if (item.isEnabled() && item.view() && !item.view()->isHidden()) last = index;
  }
  if (last != from) moveHighlight(depth, last - direction, direction);
}

void MenuTracker::enterSubmenu() {
  const size_t depth = keyLevel();
  const std::shared_ptr<NSMenuItem> item = levels_[depth]->highlighted;
  if (item && openSubmenu(depth, *item)) moveHighlight(depth + 1, -1, 1);
}

void MenuTracker::leaveSubmenu() {
  const size_t depth = keyLevel();
  if (depth > 0) {
    closeFrom(depth);
  } else {
    closeFrom(1);
  }
}

void MenuTracker::perform() {
  const std::shared_ptr<NSMenuItem> item = levels_[keyLevel()]->highlighted;
  if (!item) return;
  if (const auto focused = focused_.lock()) {
    NSRunLoop::guarded([&] { focused->accessibilityPerformPress(); });
  } else if (item->submenu()) {
    enterSubmenu();
  } else if (item->action()) {
    choose(item);
  } else if (const auto controls = controlsOf(item.get()); controls.size() == 1) {
    const auto control = controls.front()->shared_from_this();
    NSRunLoop::guarded(
        [&] { std::static_pointer_cast<NSView>(control)->accessibilityPerformPress(); });
  }
}

void MenuTracker::moveFocus(bool isBackwards) {
  const std::vector<NSView*> controls = controlsOf(levels_[keyLevel()]->highlighted.get());
  if (controls.empty()) return;
  const auto place = std::ranges::find(controls, focusedView());
  const auto count = static_cast<int64_t>(controls.size());
  const int64_t step = isBackwards ? -1 : 1;
  const int64_t next = place == controls.end() ? (isBackwards ? count - 1 : 0)
                                               : (place - controls.begin() + step + count) % count;
  setFocus(controls[static_cast<size_t>(next)]);
  stateChanged();
}

/// From a highlighted row into the view in it that arrows enter.
bool MenuTracker::enterRow() {
  if (focusedView() != nullptr) return false;
  const std::vector<NSView*> controls = controlsOf(levels_[keyLevel()]->highlighted.get());
  const auto entered = std::ranges::find_if(controls, &NSView::isEnteredByArrowKeys);
  if (entered == controls.end()) return false;
  setFocus(*entered);
  stateChanged();
  return true;
}

/// A row of several controls has no one highlight: it is shown like a control.
void MenuTracker::showKeyboardOn(size_t depth) const {
  const NSMenuItem* item = levels_[depth]->highlighted.get();
  const bool isWanted = !isPointerInUse_ && item != nullptr && controlsOf(item).size() > 1;
  levels_[depth]->panel->setFocusedView(isWanted ? item->view().get() : nullptr);
}

void MenuTracker::setFocus(NSView* view) {
  if (view != nullptr && view == focusedView()) return;
  focused_ = view != nullptr ? std::static_pointer_cast<NSView>(view->shared_from_this())
                             : std::weak_ptr<NSView>();
  for (const auto& level : levels_) {
    const bool isHere = view != nullptr && view->isDescendantOf(level->panel->column());
    level->panel->setFocusedView(isHere ? view : nullptr);
  }
}

void MenuTracker::typeAhead(const std::string& characters) {
  if (characters.empty()) return;
  const int64_t now = NSRunLoop::mainRunLoop().now();
  if (now - std::exchange(typedAt_, now) > WordTime) typed_.clear();
  typed_ += lowercaseString(characters);
  const size_t depth = keyLevel();
  const std::shared_ptr<NSMenu> menu = levels_[depth]->menu;
  const auto& items = menu->itemArray();
  const auto& highlighted = levels_[depth]->highlighted;
  // One letter goes on to the next row that begins with it; a word stays where it still fits.
  const size_t start = highlighted ? menu->indexOfItem(*highlighted) : items.size();
  const size_t skipped = stringLength(typed_) == 1 || !highlighted ? 1 : 0;
  for (size_t tried = 0; tried < items.size(); ++tried) {
    const size_t index = (start + skipped + tried) % items.size();
    const NSMenuItem& item = *items[highlighted ? index : tried];
    if (!item.isEnabled() || !item.view() || item.view()->isHidden()) continue;
    if (!rowHasTextBeginning(item, typed_)) continue;
    moveHighlight(depth, static_cast<int64_t>(menu->indexOfItem(item)) - 1, 1);
    return;
  }
}

// --- Assistive technologies ---------------------------------------------------------------------

void MenuTracker::highlightByRequest(NSMenuItem& item) {
  const std::optional<size_t> depth = item.menu() != nullptr ? levelOf(*item.menu()) : std::nullopt;
  if (!depth || !item.isEnabled()) return;
  isPointerInUse_ = false;
  moveHighlight(*depth, static_cast<int64_t>(item.menu()->indexOfItem(item)) - 1, 1);
}

void MenuTracker::performByRequest(NSMenuItem& item) {
  const auto kept = std::static_pointer_cast<NSMenuItem>(item.shared_from_this());
  highlightByRequest(*kept);
  if (isTracking() && kept->isHighlighted()) perform();
}
