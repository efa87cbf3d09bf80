#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"

#include <algorithm>
#include <utility>

#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/HeaderView.h"
#include "Targets/Shared/Dropdown/MenuItemHighlight.h"
#include "Targets/Shared/Dropdown/SpacerView.h"

namespace {

constexpr int64_t RowWidth = 225;
/// What rows of one text are laid out around.
constexpr int64_t LineHeight = 15;
constexpr double TextSize = 12;

/// Around the text of a row whose width is measured.
constexpr int64_t LabelMargin = 20;
constexpr int64_t TextMargin = 30;
constexpr int64_t ButtonMargin = 40;

constexpr int64_t FieldLeft = 8;
constexpr int64_t LabelInset = 16;
constexpr int64_t TextInset = 20;

int64_t wholeTextWidth(std::string_view text, const NSFont& font) {
  NSTextAttributes attributes;
  attributes.font = font;
  return static_cast<int64_t>(sizeWithAttributes(text, attributes).width);
}

std::shared_ptr<ZEVMenuItem_Time> itemWithRow(const std::shared_ptr<StatInterfaceView_Time>& row) {
  row->setHighlightable(true);
  row->setAutoresizingMask(NSViewWidthSizable);
  auto item = std::make_shared<ZEVMenuItem_Time>();
  item->setView(row);
  return item;
}

/// What the owner keeps under the key, else what `make` makes, which it keeps from then on.
template <typename Make>
std::shared_ptr<ZEVMenuItem_Time> keptItem(ZEVMenu_Time* owner, std::string_view key, Make make) {
  const bool isKept = owner != nullptr && !key.empty();
  if (isKept) {
    if (auto known = owner->cachedItem(key)) return known;
  }
  std::shared_ptr<ZEVMenuItem_Time> item = make();
  if (isKept) owner->cacheItem(key, item);
  return item;
}

std::shared_ptr<ZEVMenuItem_Time> headerItem(std::string_view title, int64_t type, int64_t width,
                                             int64_t height) {
  const auto header = std::make_shared<HeaderView_Time>(ZEVMakeRect(0, 0, width, height));
  header->setTitle(title);
  header->setType(type);
  return itemWithRow(header);
}

/// A row of one text; `inset` is what the field lacks of the row's width.
std::shared_ptr<ZEVMenuItem_Time> textItem(
    const std::shared_ptr<StatInterfaceTextField_Time>& field, std::string_view text, int64_t width,
    int64_t height, int64_t margin, int64_t inset) {
  if (width == 0) width = wholeTextWidth(text, zevBoldFont(TextSize)) + margin;
  const auto row =
      std::make_shared<StatInterfaceFlippedView_Time>(ZEVMakeRect(0, 0, width, height));
  field->setFrame(ZEVMakeRect(FieldLeft, (height - LineHeight) / 2, width - inset, height));
  field->setAutoresizingMask(NSViewWidthSizable);
  field->setStringValue(text);
  field->updateColors();
  row->addSubview(field);
  auto item = itemWithRow(row);
  item->setField(field);
  return item;
}

template <typename Field>
std::shared_ptr<Field> bareField(NSTextAlignment alignment, NSRect frame) {
  auto field = std::make_shared<Field>(frame);
  field->updateColors();
  field->setAlignment(alignment);
  field->setAutoresizingMask(NSViewWidthSizable);
  return field;
}

}  // namespace

NSRect ZEVMakeRect(int64_t x, int64_t y, int64_t width, int64_t height) {
  return {{static_cast<double>(x), static_cast<double>(y)}, ZEVMakeSize(width, height)};
}

NSSize ZEVMakeSize(int64_t width, int64_t height) {
  return {static_cast<double>(width), static_cast<double>(height)};
}

std::shared_ptr<ZEVMenu_Time> createMenu() {
  auto menu = std::make_shared<ZEVMenu_Time>();
  menu->setHasPadding(false);
  return menu;
}

std::shared_ptr<ZEVMenuItem_Time> createMenuItem() {
  return createMenuItemWithView(
      std::make_shared<StatInterfaceFlippedView_Time>(ZEVMakeRect(0, 0, RowWidth, 0)));
}

std::shared_ptr<ZEVMenuItem_Time> createMenuItemWithView(
    const std::shared_ptr<StatInterfaceView_Time>& view) {
  return itemWithRow(view);
}

std::shared_ptr<ZEVMenuItem_Time> createSpacerItem(ZEVMenu_Time* owner, std::string_view key,
                                                   int64_t width, int64_t height) {
  return keptItem(owner, key, [&] {
    const NSRect frame = ZEVMakeRect(0, 0, width == 0 ? 1 : width, height == 0 ? 1 : height);
    const auto row = std::make_shared<SpacerView_Time>(frame);
    auto item = itemWithRow(row);
    row->setHighlightable(false);
    return item;
  });
}

std::shared_ptr<ZEVMenuItem_Time> createFillerItem(ZEVMenu_Time* owner, std::string_view key,
                                                   int64_t width, int64_t height) {
  return keptItem(owner, key, [&] {
    const NSRect frame = ZEVMakeRect(0, 0, width == 0 ? 1 : width, height == 0 ? 1 : height);
    return itemWithRow(std::make_shared<StatInterfaceView_Time>(frame));
  });
}

std::shared_ptr<ZEVMenuItem_Time> createHeaderItem(ZEVMenu_Time* owner, std::string_view key,
                                                   std::string_view title) {
  constexpr double TitleSize = 10;
  constexpr int64_t Margin = 24;
  constexpr int64_t Height = 20;
  return keptItem(owner, key, [&] {
    const std::string capitals = uppercaseString(title);
    const int64_t width = wholeTextWidth(capitals, zevMediumFont(TitleSize)) + Margin;
    return headerItem(capitals, HeaderView_Time::Section, width, Height);
  });
}

std::shared_ptr<ZEVMenuItem_Time> createMainHeaderItem(ZEVMenu_Time* owner, std::string_view key,
                                                       std::string_view title, int64_t width) {
  constexpr int64_t Height = 23;
  return keptItem(owner, key,
                  [&] { return headerItem(title, HeaderView_Time::MainSection, width, Height); });
}

std::shared_ptr<ZEVMenuItem_Time> createLabelMenuItem(std::string_view text, int64_t width,
                                                      int64_t height) {
  return textItem(std::make_shared<StatInterfaceTextFieldLabel_Time>(), text, width, height,
                  LabelMargin, LabelInset);
}

std::shared_ptr<ZEVMenuItem_Time> createCenteredLabel(std::string_view text, int64_t width,
                                                      int64_t height) {
  auto item = createLabelMenuItem(text, width, height);
  item->field()->setAlignment(NSTextAlignment::Center);
  return item;
}

std::shared_ptr<ZEVMenuItem_Time> createTextMenuItem(std::string_view text, int64_t width,
                                                     int64_t height, bool bold) {
  const auto field = std::make_shared<StatInterfaceTextFieldValue_Time>();
  field->setBold(bold);
  return textItem(field, text, width, height, TextMargin, TextInset);
}

std::shared_ptr<ZEVMenuItem_Time> createButtonMenuItem(std::string_view title,
                                                       const std::shared_ptr<NSObject>& target,
                                                       WENTargetItem_Time::Action action,
                                                       int64_t width, int64_t height) {
  if (width == 0) width = wholeTextWidth(title, zevBoldFont(TextSize)) + ButtonMargin;
  const auto row =
      std::make_shared<StatInterfaceFlippedView_Time>(ZEVMakeRect(0, 0, width, height));
  const auto button = std::make_shared<StatInterfaceMenuButton_Time>(
      ZEVMakeRect(0, (height - LineHeight) / 2, width, height));
  button->setTitle(title);
  button->setAlignment(NSTextAlignment::Left);
  button->setAutoresizingMask(NSViewWidthSizable);
  row->addSubview(button);
  auto item = itemWithRow(row);
  item->setButton(button);
  if (target) {
    item->setHasActingView(true);
    button->setTapaction(WENTargetItem_Time(target, std::move(action), button));
  }
  if (height == LineHeight) menuItemResizeHightlight(*item);
  return item;
}

std::shared_ptr<StatInterfaceTextFieldValue_Time> createValueField(NSTextAlignment alignment,
                                                                   NSRect frame) {
  return bareField<StatInterfaceTextFieldValue_Time>(alignment, frame);
}

std::shared_ptr<StatInterfaceTextFieldLabel_Time> createLabelField(NSTextAlignment alignment,
                                                                   NSRect frame) {
  return bareField<StatInterfaceTextFieldLabel_Time>(alignment, frame);
}
