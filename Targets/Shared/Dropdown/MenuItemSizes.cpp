#include "Targets/Shared/Dropdown/MenuItemSizes.h"

#include <algorithm>

namespace {

int64_t wholeTextWidth(const std::shared_ptr<StatInterfaceTextField_Time>& field) {
  return field ? static_cast<int64_t>(field->textWidth()) : 0;
}

double leftEdge(const std::shared_ptr<StatInterfaceTextField_Time>& field) {
  return field ? field->frame().origin.x : 0;
}

void setWidth(const std::shared_ptr<NSView>& view, int64_t width) {
  if (view) view->setFrameSize({static_cast<double>(width), view->frame().size.height});
}

/// After the row's width is set: what is in a row follows that by itself.
void setPlace(const std::shared_ptr<NSView>& view, double x, int64_t width) {
  if (!view) return;
  const NSRect& frame = view->frame();
  view->setFrame(NSMakeRect(x, frame.origin.y, static_cast<double>(width), frame.size.height));
}

}  // namespace

int64_t resizeMenuItems(const ZEVMenuItems& items, int64_t minimumWidth, int64_t fieldWidth) {
  constexpr int64_t Gap = 10;  // Behind labels, and behind fields.
  int64_t longestLabel = 0;
  for (const auto& item : items)
    longestLabel = std::max(longestLabel, wholeTextWidth(item->label()));
  int64_t width = minimumWidth;
  for (const auto& item : items) {
    const double labelEdge = leftEdge(item->label());
    const double needed = labelEdge + static_cast<double>(longestLabel + fieldWidth + Gap);
    width = std::max(width, static_cast<int64_t>(needed));
    setWidth(item->shownView(), width);
    setPlace(item->label(), labelEdge, longestLabel + Gap);
    setPlace(item->field(), static_cast<double>(width - Gap - fieldWidth), fieldWidth);
  }
  return width;
}

int64_t resizeMenuItem(const std::shared_ptr<ZEVMenuItem_Time>& item, int64_t minimumWidth,
                       int64_t fieldWidth) {
  return resizeMenuItems({item}, minimumWidth, fieldWidth);
}

int64_t resizeMenuItemToContent(const ZEVMenuItem_Time& item, int64_t minimumWidth) {
  constexpr int64_t TextMargin = 30;
  constexpr int64_t LabelGap = 20;
  constexpr int64_t RightMargin = 8;
  const int64_t labelWidth = wholeTextWidth(item.label());
  const int64_t fieldWidth = wholeTextWidth(item.field()) + TextMargin;
  const double labelEdge = leftEdge(item.label());
  const double needed =
      labelEdge + static_cast<double>(labelWidth + LabelGap + fieldWidth + RightMargin);
  int64_t width = std::max(minimumWidth, static_cast<int64_t>(needed));
  const auto view = item.shownView();
  if (view) width = std::max(width, static_cast<int64_t>(view->frame().size.width));
  setWidth(view, width);
  setPlace(item.label(), labelEdge, labelWidth + TextMargin);
  setPlace(item.field(), static_cast<double>(width - fieldWidth - RightMargin), fieldWidth);
  return width;
}
