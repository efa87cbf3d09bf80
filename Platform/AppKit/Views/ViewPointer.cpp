#include "Platform/AppKit/Views/ViewPointer.h"

#include <algorithm>
#include <utility>

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

namespace {

template <typename Message>
void tell(const std::weak_ptr<NSView>& view, const NSEvent& event, Message message) {
  const std::shared_ptr<NSView> kept = view.lock();
  if (!kept) return;
  const NSCurrentEvent current(event);
  NSRunLoop::guarded([&] { ((*kept).*message)(event); });
}

std::weak_ptr<NSView> weak(NSView& view) {
  return std::static_pointer_cast<NSView>(view.shared_from_this());
}

}  // namespace

NSEvent ViewPointer::event(NSEventType type, NSPoint place) const {
  NSEvent event;
  event.type = type;
  event.locationInWindow = place;
  event.modifierFlags = modifiers_;
  event.eventNumber = eventNumber_;
  return event;
}

void ViewPointer::collect(NSView& view, NSPoint place, std::vector<Tracked>& found) {
  if (view.isHidden()) return;
  const NSPoint own = view.convertPointFromView(place, nullptr);
  if (!NSPointInRect(own, view.bounds())) return;
  for (const auto& area : view.trackingAreas()) {
    if (!area->rect() || NSPointInRect(own, *area->rect())) found.push_back({weak(view), area});
  }
  for (const auto& subview : view.subviews())
    collect(*subview, place, found);
}

void ViewPointer::enterAndExit(std::vector<Tracked> now, NSPoint place) {
  const auto holds = [](const std::vector<Tracked>& list, const Tracked& sought) {
    return std::ranges::any_of(list, [&](const Tracked& tracked) {
      return !tracked.area.owner_before(sought.area) && !sought.area.owner_before(tracked.area);
    });
  };
  const std::vector<Tracked> before = std::exchange(under_, std::move(now));
  const std::vector<Tracked> after = under_;
  for (const Tracked& tracked : before) {
    if (!holds(after, tracked)) {
      tell(tracked.view, event(NSEventType::MouseExited, place), &NSView::mouseExited);
    }
  }
  for (const Tracked& tracked : after) {
    if (!holds(before, tracked)) {
      tell(tracked.view, event(NSEventType::MouseEntered, place), &NSView::mouseEntered);
    }
  }
}

void ViewPointer::moveOver(NSView& root, NSPoint place, NSEventModifierFlags modifiers) {
  modifiers_ = modifiers;
  std::vector<Tracked> found;
  collect(root, place, found);
  enterAndExit(std::move(found), place);
}

void ViewPointer::leave() { enterAndExit({}, {}); }

void ViewPointer::press(NSView& view, NSPoint place, NSEventModifierFlags modifiers) {
  modifiers_ = modifiers;
  ++eventNumber_;
  isPressing_ = true;
  pressed_ = weak(view);
  tell(pressed_, event(NSEventType::LeftMouseDown, place), &NSView::mouseDown);
}

void ViewPointer::drag(NSPoint place) {
  tell(pressed_, event(NSEventType::LeftMouseDragged, place), &NSView::mouseDragged);
}

void ViewPointer::release(NSPoint place) {
  isPressing_ = false;
  tell(std::exchange(pressed_, {}), event(NSEventType::LeftMouseUp, place), &NSView::mouseUp);
}

void ViewPointer::cancel() {
  if (!std::exchange(isPressing_, false)) return;
  // A release that hits nothing: the pointer has left the view before it.
  leave();
  tell(std::exchange(pressed_, {}), event(NSEventType::LeftMouseUp, {-1, -1}), &NSView::mouseUp);
}
