// What rows draw, in every theme.

#include <gtest/gtest.h>

#include <cmath>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/CaseTable.h"

namespace {

void setTheme(bool isDark, bool isContrastRaised = false) {
  ZEVPreferences_Time::cleanup();
  setPreferenceOverride("increaseContrast", isContrastRaised ? PropertyList(true) : PropertyList(),
                        "com.apple.universalaccess");
  ZEVPreferences_Time::begin();
  ZEVSetIntegerForKey("DropdownTheme", isDark ? 1 : 0);
  NSNotificationCenter::defaultCenter().postNotification("DropdownThemeChanged");
}

std::vector<DrawingRecord> drawn(NSView& view) {
  RecordingGraphicsContext context;
  const NSCurrentGraphicsContext current(context);
  if (view.isFlipped()) context.flip(view.bounds().size.height);
  view.drawRect(view.bounds());
  return context.records();
}

NSColor grey(double level) { return NSColor::colorWithDeviceWhite(level, 1); }

TEST(DropdownTheme, ReachesTextsInOpenAndReopenedMenus) {
  const auto menu = createMenu();
  const auto value = createTextMenuItem("value", 0, 15, true);
  const auto label = createLabelMenuItem("label", 0, 15);
  const auto button = createButtonMenuItem("button", nullptr, {}, 0, 15);
  const auto later = createLabelMenuItem("later", 0, 15);
  menu->addItem(value);
  menu->addItem(label);
  for (const auto& [isDark, isRaised, background, valueGrey, labelGrey] :
       casesIn<bool, bool, double, double, double>("Targets/Shared/Cases/dropdown-themes.txt")) {
    setTheme(isDark, isRaised);
    EXPECT_EQ(menu->backgroundColor(), grey(background));
    EXPECT_EQ(value->field()->textColor(), grey(valueGrey));
    EXPECT_EQ(value->field()->font().weight(), isDark ? NSFontWeight::Regular : NSFontWeight::Bold);
    EXPECT_EQ(label->field()->textColor(), grey(labelGrey));
    EXPECT_EQ(button->button()->textColor(), grey(labelGrey));
    menu->addItem(later);
    EXPECT_EQ(later->field()->textColor(), grey(labelGrey)) << "put in after the change";
    menu->removeItem(*later);
    value->view()->setMenuItemHighlighted(true);
    setTheme(isDark, isRaised);
    EXPECT_EQ(value->field()->textColor(), NSColor::whiteColor()) << "changed while highlighted";
    value->field()->setNormalTextColor(grey(0.3));
    EXPECT_EQ(value->field()->textColor(), NSColor::whiteColor());
    value->view()->setMenuItemHighlighted(false);
    EXPECT_EQ(value->field()->textColor(), grey(0.3));
  }
}

/// WCAG 2.2, "contrast ratio", of white to a colour.
double ratioToWhite(const NSColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 1.05 / (0.2126 * linear(color.redComponent()) + 0.7152 * linear(color.greenComponent()) +
                 0.0722 * linear(color.blueComponent()) + 0.05);
}

TEST(DropdownTheme, RaisedContrastHasWhiteReadOnTheHighlight) {
  setTheme(false, true);
  EXPECT_GE(ratioToWhite(dropdownHighlightGradient().startingColor()), 4.5);
  EXPECT_GE(ratioToWhite(dropdownHighlightGradient().endingColor()), 4.5);
  EXPECT_GE(ratioToWhite(dropdownHeaderTextColor()), 4.5);
}

const NSColor Light = NSColor::colorWithDeviceRed(0.482, 0.749, 0.878, 1);
const NSColor Deep = NSColor::colorWithDeviceRed(0.447, 0.612, 0.859, 1);

TEST(DropdownRow, DrawsItsHighlightWhereItStands) {
  setTheme(false);
  struct Case {
    bool isHighlightable, isHighlighted, isCustom, isDisabled;
    std::optional<NSRect> highlight;
  };
  for (const auto& [highlightable, highlighted, custom, disabled, highlight] :
       {Case{true, true, false, false, NSMakeRect(2, 0, 96, 20)},
        {true, false, false, false, {}},
        {false, true, false, false, {}},
        {false, false, true, false, NSMakeRect(2, -5, 96, 30)},
        {true, true, true, true, {}}}) {
    const auto upright = std::make_shared<StatInterfaceView_Time>(NSMakeRect(0, 0, 100, 20));
    const auto flipped = std::make_shared<StatInterfaceFlippedView_Time>(NSMakeRect(0, 0, 100, 20));
    for (const auto& view : {upright, std::static_pointer_cast<StatInterfaceView_Time>(flipped)}) {
      view->setHighlightable(highlightable);
      view->setMenuItemHighlighted(highlighted);
      view->setCustomHighlightRect(custom);
      view->setHighlightRect(NSMakeRect(40, -5, 7, 30));
      view->setBackgroundDisabled(disabled);
      const auto records = drawn(*view);
      ASSERT_EQ(records.size(), disabled ? 0 : highlight ? 2 : 1);
      if (!highlight) continue;
      EXPECT_EQ(records[0].rect, NSMakeRect(0, 0, 100, 20));
      NSRect rect = *highlight;  // The records count upwards.
      if (view->isFlipped()) rect.origin.y = 20 - rect.origin.y - rect.size.height;
      EXPECT_EQ(records[1].rect, rect);
      // The gradient goes down the view's own y: the light end is always above.
      EXPECT_EQ(records[1].color, view->isFlipped() ? Deep : Light);
    }
  }
}

}  // namespace
