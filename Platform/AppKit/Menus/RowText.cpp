#include "Platform/AppKit/Menus/RowText.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "Platform/Foundation/Text/NSString.h"

namespace {

struct PlacedText {
  int64_t line;
  double x;
  std::string text;
};

void collect(const NSView& view, const NSView& row, std::vector<PlacedText>& texts) {
  if (view.isHidden()) return;
  std::string label = view.writtenText();
  if (!label.empty()) {
    constexpr double SameLine = 8;  // Fields of one line need not be level to the point.
    const NSRect place = view.convertRectToView(view.bounds(), &row);
    const double top = row.isFlipped()
                           ? place.origin.y
                           : row.bounds().size.height - place.origin.y - place.size.height;
    const bool isMirrored =
        row.userInterfaceLayoutDirection() == NSUserInterfaceLayoutDirection::RightToLeft;
    texts.push_back({std::llround(top / SameLine),
                     isMirrored ? -place.origin.x - place.size.width : place.origin.x,
                     std::move(label)});
  }
  for (const auto& subview : view.subviews())
    collect(*subview, row, texts);
}

}  // namespace

std::vector<std::string> rowTexts(const NSMenuItem& item) {
  std::vector<PlacedText> placed;
  if (item.view()) collect(*item.view(), *item.view(), placed);
  std::ranges::stable_sort(placed, [](const PlacedText& a, const PlacedText& b) {
    return std::tie(a.line, a.x) < std::tie(b.line, b.x);
  });
  std::vector<std::string> texts;
  texts.reserve(placed.size());
  for (PlacedText& text : placed)
    texts.push_back(std::move(text.text));
  return texts;
}

std::string rowName(const NSMenuItem& item) {
  if (!item.accessibilityLabel().empty()) return item.accessibilityLabel();
  std::string name;
  for (const std::string& text : rowTexts(item))
    name += (name.empty() ? "" : ", ") + text;
  return name.empty() ? item.title() : name;
}

bool rowHasTextBeginning(const NSMenuItem& item, std::string_view beginning) {
  return std::ranges::any_of(rowTexts(item), [&](const std::string& text) {
    return lowercaseString(text).starts_with(beginning);
  });
}
