#include "Targets/Shared/Views/ZEVMenuExtraView.h"

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/AppKit/Views/NSScreen.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/Shared/FakeExtra.h"

namespace {

using Lengths = std::vector<double>;

/// What a host draws into for the bars of other screens.
class SnapshotContext : public RecordingGraphicsContext {
 public:
  std::string_view className() const override { return "NSBitmapGraphicsContext"; }
};

class MenuExtraView : public FakeExtraTest {
 protected:
  /// Starts the extra with one module for each width, numbered from 1.
  void start(std::initializer_list<int64_t> widths) {
    for (const int64_t width : widths) {
      FakeModule& module = add("module");
      module.content->width = width;
      module.setMenubar(true);
      module.setKey(static_cast<int64_t>(extra->prepared.size()));
    }
    FakeExtraTest::start();
  }

  FakeContent& content(size_t index) { return *module(index).content; }

  std::vector<DrawingRecord> draw(RecordingGraphicsContext&& context = {}) {
    slot.draw(context);
    return context.records();
  }
};

TEST_F(MenuExtraView, FitsTheSlotThroughZeroAndOnlyWhenTheWidthChanges) {
  start({0, 0});
  draw();
  EXPECT_EQ(slot.lengths, (Lengths{0, 4})) << "nothing drawn keeps 4 points";
  draw();
  EXPECT_EQ(slot.lengths, (Lengths{0, 4})) << "an unchanged width makes no call";
  content(0).width = 50;
  draw();
  EXPECT_EQ(slot.lengths, (Lengths{0, 4, 0, 50}));
  EXPECT_EQ(extra->view()->frame().size, (NSSize{50, 22}));
  const int redraws = slot.redraws;
  extra->disableZero();
  EXPECT_EQ(slot.redraws, redraws + 1);
  content(1).width = 10;
  draw();
  EXPECT_EQ(slot.lengths, (Lengths{0, 4, 0, 50, 60}));
  EXPECT_EQ(content(1).drawnAt, 50) << "modules follow each other without a gap";
}

TEST_F(MenuExtraView, AnOpenMenuPaintsTheSelectionFirst) {
  start({30});
  draw();
  EXPECT_FALSE(content(0).wasMenuDown);
  slot.setMenuDown(true);
  const auto records = draw();
  ASSERT_EQ(records.size(), 1);
  EXPECT_EQ(records[0].kind, DrawingRecord::Kind::Path);
  // The item and four points around it.
  EXPECT_EQ(records[0].rect, NSMakeRect(-4, -4, 38, 30));
  EXPECT_EQ(records[0].color, NSColor::selectedMenuItemColor());
  EXPECT_TRUE(content(0).wasMenuDown);
}

TEST_F(MenuExtraView, ASnapshotForOtherScreensIsHalfAsStrong) {
  start({30});
  draw();
  slot.lengths.clear();
  slot.setMenuDown(true);
  content(0).width = 40;
  NSScreen::setScreens({{}, {}});
  const auto snapshot = draw(SnapshotContext());
  ASSERT_EQ(snapshot.size(), 1) << "no background, whatever the menu";
  EXPECT_EQ(snapshot[0].kind, DrawingRecord::Kind::Image);
  EXPECT_EQ(snapshot[0].rect, NSMakeRect(0, 0, 30, 22));
  EXPECT_EQ(snapshot[0].fraction, 0.5);
  EXPECT_FALSE(content(0).wasMenuDown);

  // Not a snapshot: the same context with one screen, and a screen's own with two.
  draw();
  EXPECT_EQ(slot.lengths, (Lengths{0, 40})) << "the width of the snapshot was not remembered";
  content(0).width = 41;
  NSScreen::setScreens({{}});
  draw(SnapshotContext());
  EXPECT_EQ(slot.lengths.back(), 41);
  EXPECT_TRUE(content(0).wasMenuDown);
}

TEST_F(MenuExtraView, ACombinedExtraDrawsTheListedModules) {
  extra->isCombined = true;
  start({30, 12, 7});
  ZEVSetObjectForKey("CombinedMenubarDisplayMode", "3,9,1");
  draw();
  EXPECT_EQ(content(2).drawnAt, 0);
  EXPECT_EQ(content(0).drawnAt, 11) << "4 points between modules";
  EXPECT_EQ(content(1).drawnAt, -1) << "not listed";
  EXPECT_EQ(slot.lengths.back(), 41);

  extra->prepared[0]->setMenubar(false);
  draw();
  EXPECT_EQ(slot.lengths.back(), 7);
  ZEVSetObjectForKey("CombinedMenubarDisplayMode", "9");
  draw();
  EXPECT_EQ(slot.lengths.back(), 20) << "the icon's place";
  ZEVRemoveObjectForKey("CombinedMenubarDisplayMode");
  draw();
  EXPECT_EQ(slot.lengths.back(), 20);
}

class TextAttributes : public testing::Test {
 protected:
  TextAttributes() {
    content.addTextConfig("text", {"Time_TextSize", "Time_TextColor", "Time_TextShadowColor"});
    content.addTextConfig("plain", {"Time_TextSize", "Time_TextColor", ""});
  }
  const NSFont& font() { return content.percentageAttributes("text").font; }
  const std::optional<NSShadow>& shadow(const char* style = "text") {
    return content.percentageAttributes(style).shadow;
  }

  FakeContent content;
};

TEST_F(TextAttributes, SizesOutsideTheRangeGiveThirteenPoints) {
  for (const auto& [size, points] : {std::pair{7, 13.0}, {8, 8.0}, {16, 16.0}, {17, 13.0}}) {
    ZEVSetIntegerForKey("Time_TextSize", size);
    content.resetTextConfig();
    EXPECT_EQ(font().pointSize(), points);
    EXPECT_TRUE(font().hasMonospacedNumbers()) << "digits of unequal width make the clock jitter";
  }
}

TEST_F(TextAttributes, AreBuiltOnceForEachState) {
  ZEVSetIntegerForKey("Time_TextSize", 9);
  EXPECT_EQ(font().pointSize(), 9);
  EXPECT_EQ(content.percentageAttributes("text").alignment, NSTextAlignment::Center);
  ZEVSetIntegerForKey("Time_TextSize", 10);
  EXPECT_EQ(font().pointSize(), 9);
  content.setIsMenuDown(true);
  EXPECT_EQ(font().pointSize(), 10);
  content.setIsMenuDown(false);
  content.resetTextConfig();
  EXPECT_EQ(font().pointSize(), 10);
  EXPECT_THROW(content.percentageAttributes("no such style"), std::invalid_argument);
}

TEST_F(TextAttributes, AShadowWithoutStrengthIsNone) {
  EXPECT_EQ(shadow(), (NSShadow{{0, -1}, NSColor::colorWithDeviceRed(1, 1, 1, 0.5)}));
  EXPECT_EQ(shadow("plain"), std::nullopt);
  ZEVSetObjectForKey("Time_TextShadowColor", "1 0 0 0");
  content.resetTextConfig();
  EXPECT_EQ(shadow(), std::nullopt);
}

TEST_F(TextAttributes, FollowTheBar) {
  for (const auto& [isDark, hasContrast, isSelected, color] :
       casesIn<bool, bool, bool, std::string>("Targets/Shared/Cases/text-colors.txt")) {
    ZEVPreferences_Time::cleanup();
    setPreferenceOverride("AppleInterfaceStyle", isDark ? "Dark" : "", ".GlobalPreferences");
    setPreferenceOverride("increaseContrast", hasContrast, "com.apple.universalaccess");
    ZEVPreferences_Time::begin();
    ZEVSetObjectForKey("Time_TextColor", "0 0 1 1");
    ZEVSetObjectForKey("Time_TextColor-Dark", "0 1 0 1");
    content.resetTextConfig();
    content.setIsMenuDown(isSelected);
    EXPECT_EQ(content.percentageAttributes("text").foregroundColor, colorFromString(color + " 1"));
    EXPECT_EQ(shadow().has_value(), !isDark && !isSelected);
  }
}

}  // namespace
