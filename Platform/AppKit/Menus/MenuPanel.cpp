#include "Platform/AppKit/Menus/MenuPanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

namespace {

constexpr double Padding = 4;
constexpr double ArrowHeight = 16;

class MenuColumn : public NSView {
 public:
  bool isFlipped() const override { return true; }
  /// The panel places the rows.
  void resizeSubviewsWithOldSize(NSSize) override {}
};

bool isLight(const NSColor& color) { return color.greenComponent() > 0.5; }

NSBezierPath triangle(NSPoint middle, int side) {
  constexpr double HalfWidth = 5;
  constexpr double HalfHeight = 3;
  NSBezierPath path;
  path.moveToPoint({middle.x - HalfWidth, middle.y - side * HalfHeight});
  path.lineToPoint({middle.x + HalfWidth, middle.y - side * HalfHeight});
  path.lineToPoint({middle.x, middle.y + side * HalfHeight});
  path.closePath();
  return path;
}

/// Fills what lies between two insets of a rectangle.
void fillRing(NSRect rect, double outerInset, double innerInset, const NSColor& color) {
  constexpr double Radius = 3;
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  const NSSavedGraphicsState saved(*context);
  const NSRect outer = NSInsetRect(rect, outerInset, outerInset);
  const NSRect inner = NSInsetRect(rect, innerInset, innerInset);
  NSBezierPath ring = NSBezierPath::bezierPathWithRoundedRect(outer, Radius + 1);
  ring.appendBezierPath(NSBezierPath::bezierPathWithRoundedRect(inner, Radius));
  context->clipToPath(ring);
  color.setFill();
  NSBezierPath::bezierPathWithRect(outer).fill();
}

/// Of two colours, one of which is seen on every ground.
void drawFocusRing(NSRect rect) {
  fillRing(rect, -1, 1, NSColor::selectedMenuItemColor());
  fillRing(rect, 1, 2, NSColor::whiteColor());
}

}  // namespace

MenuPanel::MenuPanel(std::shared_ptr<NSMenu> menu, NSUserInterfaceLayoutDirection direction)
    : menu_(std::move(menu)),
      direction_(direction),
      column_(std::make_shared<MenuColumn>(), *this) {}

MenuPanel::~MenuPanel() {
  for (const Row& row : rows_)
    row.view->removeFromSuperview();
}

// --- Layout -------------------------------------------------------------------------------------

double MenuPanel::topPadding() const { return menu_->hasPadding() ? Padding : 0; }

void MenuPanel::setNeedsLayout() {
  if (std::exchange(needsLayout_, true)) return;
  if (onNeedsFrame) onNeedsFrame();
}

void MenuPanel::takeRows() {
  std::vector<Row> rows;
  for (const auto& item : menu_->itemArray()) {
    const auto& view = item->view();
    if (!view || view->isHidden()) continue;
    const auto known = std::ranges::find_if(
        rows_, [&](const Row& row) { return row.item == item && row.view == view; });
    rows.push_back(known != rows_.end() ? *known : Row{item, view});
  }
  for (const Row& row : rows_) {
    const bool stays = std::ranges::any_of(rows, [&](const Row& r) { return r.view == row.view; });
    if (!stays && row.view->superview() == &column()) row.view->removeFromSuperview();
  }
  rows_ = std::move(rows);
  for (const Row& row : rows_) {
    if (row.view->superview() != &column()) column().addSubview(row.view);
  }
}

bool MenuPanel::layOutIfNeeded() {
  if (!needsLayout_) return false;
  isLayingOut_ = true;
  takeRows();
  double width = 1;
  for (Row& row : rows_) {
    // Whoever has given a row another width than it was stretched to means its own.
    const double own = row.view->frame().size.width;
    if (own != row.laidOutWidth) row.naturalWidth = own;
    width = std::max(width, std::ceil(row.naturalWidth));
  }
  double y = topPadding();
  for (Row& row : rows_) {
    const bool stretches = (row.view->autoresizingMask() & NSViewWidthSizable) != 0;
    row.laidOutWidth = stretches ? width : row.naturalWidth;
    const double height = row.view->frame().size.height;
    row.view->setFrame(NSMakeRect(0, y, row.laidOutWidth, height));
    y += height;
  }
  const NSSize before = std::exchange(contentSize_, {width, std::ceil(y + topPadding())});
  column().setFrame({{0, 0}, contentSize_});
  isLayingOut_ = false;
  needsLayout_ = false;
  addDirty({{0, 0}, frame_.size});
  scroll_ = std::clamp(scroll_, 0.0, furthestScroll());
  return before != contentSize_;
}

void MenuPanel::setFrame(NSRect frame) {
  if (frame.size != frame_.size) addDirty({{0, 0}, frame.size});
  frame_ = frame;
  scroll_ = std::clamp(scroll_, 0.0, furthestScroll());
  if (onNeedsFrame) onNeedsFrame();
}

// --- Where things are ---------------------------------------------------------------------------

NSMenuItem* MenuPanel::itemAtPoint(NSPoint point) const {
  if (!NSPointInRect(point, {{0, 0}, frame_.size}) || arrowAtPoint(point) != 0) return nullptr;
  const NSPoint inColumn = pointInColumn(point);
  for (const Row& row : rows_) {
    const NSRect& frame = row.view->frame();
    // The row is its whole width, also where its view is narrower.
    if (inColumn.y >= frame.origin.y && inColumn.y < frame.origin.y + frame.size.height) {
      return row.item.get();
    }
  }
  return nullptr;
}

NSView* MenuPanel::trackingViewAtPoint(NSPoint point) const {
  if (itemAtPoint(point) == nullptr) return nullptr;
  NSView* view = column().hitTest(pointInColumn(point));
  while (view != nullptr && !view->tracksMouse())
    view = view->superview();
  return view;
}

NSRect MenuPanel::rowFrame(const NSMenuItem& item) const {
  for (const Row& row : rows_) {
    if (row.item.get() != &item) continue;
    const NSRect& frame = row.view->frame();
    return NSMakeRect(0, frame.origin.y - scroll_, contentSize_.width, frame.size.height);
  }
  return NSZeroRect;
}

// --- Scrolling ----------------------------------------------------------------------------------

double MenuPanel::furthestScroll() const {
  return std::max(0.0, contentSize_.height - frame_.size.height);
}

int MenuPanel::arrowAtPoint(NSPoint point) const {
  if (!isScrolled()) return 0;
  if (scroll_ > 0 && point.y < ArrowHeight) return -1;
  return scroll_ < furthestScroll() && point.y >= frame_.size.height - ArrowHeight ? 1 : 0;
}

bool MenuPanel::scrollBy(double points) {
  const double before = std::exchange(scroll_, std::clamp(scroll_ + points, 0.0, furthestScroll()));
  if (scroll_ == before) return false;
  addDirty({{0, 0}, frame_.size});
  return true;
}

void MenuPanel::scrollToItem(const NSMenuItem& item) {
  if (!isScrolled()) return;
  const NSRect row = rowFrame(item);
  const double low = row.origin.y + row.size.height;
  // Clear of the arrows; at an end of the column there is none.
  if (row.origin.y < ArrowHeight) scrollBy(row.origin.y - ArrowHeight);
  if (low > frame_.size.height - ArrowHeight) scrollBy(low - frame_.size.height + ArrowHeight);
}

// --- Drawing ------------------------------------------------------------------------------------

void MenuPanel::viewNeedsDisplay(NSRect rect) {
  rect.origin.y -= scroll_;
  addDirty(rect);
}

void MenuPanel::viewFrameChanged(NSView& view) {
  if (!isLayingOut_ && (view.superview() == &column())) setNeedsLayout();
}

void MenuPanel::viewWillGo(NSView& view) {
  if (focusedView_ != nullptr && focusedView_->isDescendantOf(view)) focusedView_ = nullptr;
  if (onViewWillGo) onViewWillGo(view);
}

void MenuPanel::makeFirstResponder(NSView& view) {
  if (onFirstResponder) onFirstResponder(view);
}

void MenuPanel::setFocusedView(const NSView* view) {
  constexpr double RingMargin = 3;
  for (const NSView* changed : {std::exchange(focusedView_, view), view}) {
    if (changed == nullptr) continue;
    const NSRect place = changed->convertRectToView(changed->bounds(), nullptr);
    viewNeedsDisplay(NSInsetRect(place, -RingMargin, -RingMargin));
  }
}

void MenuPanel::addDirty(NSRect rect) {
  rect = NSIntersectionRect(rect, {{0, 0}, frame_.size});
  if (NSIsEmptyRect(rect)) return;
  const bool isFirst = NSIsEmptyRect(dirty_);
  dirty_ = NSUnionRect(dirty_, rect);
  if (isFirst && onNeedsFrame) onNeedsFrame();
}

NSRect MenuPanel::takeDirtyRect() { return std::exchange(dirty_, NSZeroRect); }

void MenuPanel::displayRect(NSRect rect) const {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  {
    const NSSavedGraphicsState saved(*context);
    context->translateBy({0, -scroll_});
    rect.origin.y += scroll_;
    column().displayRect(rect);
    if (focusedView_ != nullptr) {
      // A ring around a whole row would lie outside on three sides and look like a stray line.
      const NSRect place = focusedView_->convertRectToView(focusedView_->bounds(), nullptr);
      drawFocusRing(NSIntersectionRect(place, NSInsetRect(column().bounds(), 1, 1)));
    }
  }
  if (!isScrolled()) return;
  if (scroll_ > 0) drawArrow(-1);
  if (scroll_ < furthestScroll()) drawArrow(1);
}

void MenuPanel::drawArrow(int side) const {
  const double y = side < 0 ? 0 : frame_.size.height - ArrowHeight;
  const NSRect band = NSMakeRect(0, y, frame_.size.width, ArrowHeight);
  menu_->backgroundColor().setFill();
  NSBezierPath::bezierPathWithRect(band).fill();
  NSColor::colorWithDeviceWhite(isLight(menu_->backgroundColor()) ? 0.25 : 0.8, 1).setFill();
  triangle({band.size.width / 2, y + ArrowHeight / 2}, side).fill();
}
