#include "Platform/AppKit/Views/NSView.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

NSShownView::NSShownView(std::shared_ptr<NSView> root, NSWindow& window) : root_(std::move(root)) {
  root_->window_ = &window;
}

NSShownView& NSShownView::operator=(NSShownView&& other) noexcept {
  end();
  root_ = std::move(other.root_);
  return *this;
}

void NSShownView::end() {
  if (root_) root_->window_ = nullptr;
  root_.reset();
}

NSView::~NSView() {
  for (const auto& subview : subviews_)
    subview->superview_ = nullptr;
}

// --- Geometry -----------------------------------------------------------------------------------

void NSView::setFrame(NSRect frame) {
  if (frame == frame_) return;
  // Of a root the window itself knows what it shows.
  const bool isSubview = superview_ != nullptr;
  if (isSubview) setNeedsDisplay(true);
  const NSSize old = std::exchange(frame_, frame).size;
  if (frame.size != old) resizeSubviewsWithOldSize(old);
  if (isSubview) setNeedsDisplay(true);
  if (NSWindow* shownIn = window()) shownIn->viewFrameChanged(*this);
}

void NSView::resizeSubviewsWithOldSize(NSSize old) {
  // A copy, as a view may take others out while it is resized.
  for (const auto& subview : std::vector(subviews_))
    subview->resizeWithOldSuperviewSize(old);
}

void NSView::resizeWithOldSuperviewSize(NSSize old) {
  if (autoresizingMask_ == 0 || superview_ == nullptr) return;
  const auto give = [](double change, NSAutoresizingMask mask, double& start, double& length) {
    // What is flexible shares the change: the margin before, the length, the margin behind.
    const int shares = std::popcount(mask & 7U);
    if (shares == 0) return;
    const double share = change / shares;
    if ((mask & 1U) != 0) start += share;
    if ((mask & 2U) != 0) length = std::max(0.0, length + share);
  };
  NSRect frame = frame_;
  const NSSize size = superview_->frame_.size;
  give(size.width - old.width, autoresizingMask_, frame.origin.x, frame.size.width);
  give(size.height - old.height, autoresizingMask_ >> 3, frame.origin.y, frame.size.height);
  setFrame(frame);
}

NSUserInterfaceLayoutDirection NSView::userInterfaceLayoutDirection() const {
  const NSWindow* shownIn = window();
  return shownIn != nullptr ? shownIn->userInterfaceLayoutDirection()
                            : NSUserInterfaceLayoutDirection::LeftToRight;
}

NSRect NSView::placedFrame() const {
  if (superview_ == nullptr || !superview_->mirrorsSubviews() ||
      userInterfaceLayoutDirection() == NSUserInterfaceLayoutDirection::LeftToRight) {
    return frame_;
  }
  NSRect placed = frame_;
  placed.origin.x = superview_->frame_.size.width - frame_.origin.x - frame_.size.width;
  return placed;
}

NSPoint NSView::pointInSuperview(NSPoint point) const {
  const NSRect placed = placedFrame();
  const bool isTurned = isFlipped() != superview_->isFlipped();
  const double y = isTurned ? placed.size.height - point.y : point.y;
  return {placed.origin.x + point.x, placed.origin.y + y};
}

NSPoint NSView::pointFromSuperview(NSPoint point) const {
  const NSRect placed = placedFrame();
  const bool isTurned = isFlipped() != superview_->isFlipped();
  const double y = point.y - placed.origin.y;
  return {point.x - placed.origin.x, isTurned ? placed.size.height - y : y};
}

NSPoint NSView::pointInWindow(NSPoint point) const {
  if (superview_ != nullptr) return superview_->pointInWindow(pointInSuperview(point));
  return {point.x, isFlipped() ? point.y : frame_.size.height - point.y};
}

NSPoint NSView::pointFromWindow(NSPoint point) const {
  if (superview_ != nullptr) return pointFromSuperview(superview_->pointFromWindow(point));
  return {point.x, isFlipped() ? point.y : frame_.size.height - point.y};
}

NSPoint NSView::convertPointFromView(NSPoint point, const NSView* view) const {
  return pointFromWindow(view != nullptr ? view->pointInWindow(point) : point);
}

NSPoint NSView::convertPointToView(NSPoint point, const NSView* view) const {
  const NSPoint inWindow = pointInWindow(point);
  return view != nullptr ? view->pointFromWindow(inWindow) : inWindow;
}

NSRect NSView::convertRectToView(NSRect rect, const NSView* view) const {
  const NSPoint end{rect.origin.x + rect.size.width, rect.origin.y + rect.size.height};
  const NSPoint a = convertPointToView(rect.origin, view);
  const NSPoint b = convertPointToView(end, view);
  return NSMakeRect(std::min(a.x, b.x), std::min(a.y, b.y), rect.size.width, rect.size.height);
}

// --- The tree -----------------------------------------------------------------------------------

void NSView::addSubview(std::shared_ptr<NSView> view) {
  if (view->superview_ != nullptr) view->removeFromSuperview();
  view->superview_ = this;
  subviews_.push_back(std::move(view));
  subviews_.back()->setNeedsDisplay(true);
}

void NSView::removeFromSuperview() {
  if (superview_ == nullptr) return;
  setNeedsDisplay(true);
  if (NSWindow* shownIn = window()) shownIn->viewWillGo(*this);
  auto& siblings = std::exchange(superview_, nullptr)->subviews_;
  const auto place = std::ranges::find(siblings, this, &std::shared_ptr<NSView>::get);
  const std::shared_ptr<NSView> kept = *place;  // Until this call is over.
  siblings.erase(place);
}

bool NSView::isDescendantOf(const NSView& view) const {
  const NSView* ancestor = this;
  while (ancestor != nullptr && ancestor != &view)
    ancestor = ancestor->superview_;
  return ancestor != nullptr;
}

NSWindow* NSView::window() const {
  const NSView* root = this;
  while (root->superview_ != nullptr)
    root = root->superview_;
  return root->window_;
}

void NSView::setHidden(bool hidden) {
  if (hidden == isHidden_) return;
  setNeedsDisplay(true);
  isHidden_ = hidden;
  setNeedsDisplay(true);
  if (NSWindow* shownIn = window()) shownIn->viewFrameChanged(*this);
}

NSView* NSView::hitTest(NSPoint point) {
  if (isHidden_) return nullptr;
  const NSPoint own = superview_ != nullptr ? pointFromSuperview(point) : point;
  if (!NSPointInRect(own, bounds())) return nullptr;
  // The one in front first. Clang 14 does not compile the views of the library's ranges.
  for (size_t index = subviews_.size(); index > 0; --index) {
    if (NSView* hit = subviews_[index - 1]->hitTest(own)) return hit;
  }
  return this;
}

// --- Drawing ------------------------------------------------------------------------------------

void NSView::setNeedsDisplay(bool needsDisplay) {
  if (needsDisplay) setNeedsDisplayInRect(bounds());
}

void NSView::setNeedsDisplayInRect(NSRect rect) {
  const NSView* root = this;
  for (; root->superview_ != nullptr; root = root->superview_) {
    rect = NSIntersectionRect(rect, root->bounds());
    if (root->isHidden_ || NSIsEmptyRect(rect)) return;
    rect = root->convertRectToView(rect, root->superview_);
  }
  // An empty root may be about to get a size.
  if (root->window_ != nullptr) {
    root->window_->viewNeedsDisplay(root->convertRectToView(rect, nullptr));
  }
}

void NSView::displayRect(NSRect rect) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  rect = NSIntersectionRect(rect, bounds());
  if (context == nullptr || isHidden_ || NSIsEmptyRect(rect)) return;
  {
    const NSSavedGraphicsState saved(*context);
    NSRunLoop::guarded([&] { drawRect(rect); });
  }
  for (const auto& subview : std::vector(subviews_)) {
    const NSRect placed = subview->placedFrame();
    const NSRect part = NSIntersectionRect(rect, placed);
    if (subview->isHidden_ || NSIsEmptyRect(part)) continue;
    const NSSavedGraphicsState saved(*context);
    context->clipToPath(NSBezierPath::bezierPathWithRect(part));
    context->translateBy(placed.origin);
    if (subview->isFlipped() != isFlipped()) context->flip(placed.size.height);
    const NSPoint end{part.origin.x + part.size.width, part.origin.y + part.size.height};
    const NSPoint a = subview->pointFromSuperview(part.origin);
    const NSPoint b = subview->pointFromSuperview(end);
    subview->displayRect(
        NSMakeRect(std::min(a.x, b.x), std::min(a.y, b.y), part.size.width, part.size.height));
  }
}

// --- Input --------------------------------------------------------------------------------------

bool NSView::performKeyEquivalent(const NSEvent& event) {
  return std::ranges::any_of(std::vector(subviews_), [&](const auto& subview) {
    return subview->performKeyEquivalent(event);
  });
}

void NSView::addTrackingArea(std::shared_ptr<NSTrackingArea> area) {
  trackingAreas_.push_back(std::move(area));
}

void NSView::removeTrackingArea(const NSTrackingArea& area) {
  std::erase_if(trackingAreas_, [&](const auto& known) { return known.get() == &area; });
}
