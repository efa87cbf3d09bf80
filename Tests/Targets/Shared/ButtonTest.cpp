// Buttons in rows: which presses act, and which picture is seen.

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Targets/Shared/Dropdown/StatInterfaceMenuButton.h"
#include "Tests/Platform/Support/CaseTable.h"

namespace {

class Pressed : public testing::Test {
 protected:
  static void play(WENButton_Time& button, std::string_view events) {
    for (const char action : events) {
      NSEvent event;
      event.eventNumber = action == 'o' ? 8 : 7;
      if (action == 'e') button.mouseEntered(event);
      if (action == 'x') button.mouseExited(event);
      if (action == 'd') button.mouseDown(event);
      if (action == 'u' || action == 'o') button.mouseUp(event);
    }
  }
  WENTargetItem_Time action() {
    return {target, [this](NSObject*) { ++presses; }};
  }

  std::shared_ptr<NSObject> target = std::make_shared<NSObject>();
  int presses = 0;
};

TEST_F(Pressed, ActsOnTheReleaseOverItself) {
  for (const auto& [events, expected, ofMenuButton] :
       casesIn<std::string, int, int>("Targets/Shared/Cases/button-presses.txt")) {
    WENButton_Time button;
    StatInterfaceMenuButton_Time menuButton;
    for (auto [pressed, count] :
         {std::pair<WENButton_Time*, int>(&button, expected), {&menuButton, ofMenuButton}}) {
      presses = 0;
      pressed->setTapaction(action());
      play(*pressed, "ed");
      EXPECT_TRUE(pressed->isHighlighted());
      play(*pressed, "xu");
      play(*pressed, events);
      EXPECT_EQ(presses, count) << events;
      EXPECT_FALSE(pressed->isHighlighted());
      EXPECT_TRUE(pressed->accessibilityPerformPress());
      pressed->setEnabled(false);
      play(*pressed, "xedu");
      EXPECT_FALSE(pressed->accessibilityPerformPress());
      EXPECT_EQ(presses, count + 1) << "disabled";
    }
  }
  WENButton_Time orphaned;
  play(orphaned, "edux");  // Without an action.
  orphaned.setTapaction(action());
  target.reset();
  presses = 0;
  play(orphaned, "edu");
  EXPECT_EQ(presses, 0) << "its target has gone";
}

TEST_F(Pressed, KeysReachWhatIsSeen) {
  struct Shown : NSWindow {
    void viewNeedsDisplay(NSRect) override {}
  } window;
  const auto row = std::make_shared<NSView>();
  const auto button = std::make_shared<WENButton_Time>();
  row->addSubview(button);
  button->setTapaction(action());
  const auto reaches = [&](uint16_t code) {
    NSEvent key;
    key.type = NSEventType::KeyDown;
    key.keyCode = code;
    return button->performKeyEquivalent(key);
  };
  const NSShownView shown(row, window);
  EXPECT_FALSE(reaches(0)) << "0 is no key";
  button->setKeyEquivilentCode(NSKeyCodeLeft);
  EXPECT_TRUE(reaches(NSKeyCodeLeft));
  EXPECT_FALSE(reaches(NSKeyCodeRight));
  row->setHidden(true);
  EXPECT_FALSE(reaches(NSKeyCodeLeft)) << "hidden with its row";
  EXPECT_EQ(presses, 1);
}

TEST_F(Pressed, ShowsThePictureOfItsState) {
  const auto picture = [](const char* name) {
    auto image = NSImage::imageWithSize({10, 10});
    image->setName(name);
    return image;
  };
  for (const auto& [enabled, selected, held, keeps, hasAlternate, name, fraction] :
       casesIn<bool, bool, bool, bool, bool, std::string, double>(
           "Targets/Shared/Cases/button-pictures.txt")) {
    WENButton_Time button(NSMakeRect(0, 0, 20, 10));
    button.setImage(picture("usual"));
    button.setSelectedImage(picture("selected"));
    if (hasAlternate) button.setAlternateImage(picture("alternate"));
    button.setHighlightedOpacity(0.25F);
    button.setEnabled(enabled);
    button.setSelected(selected);
    button.setSelectedDisabledAlternate(keeps);
    if (held) play(button, "ed");
    RecordingGraphicsContext context;
    const NSCurrentGraphicsContext current(context);
    button.drawRect(button.bounds());
    ASSERT_EQ(context.records().size(), 1);
    EXPECT_EQ(context.records()[0].name, name);
    EXPECT_EQ(context.records()[0].fraction, fraction);
    EXPECT_EQ(context.records()[0].rect, button.bounds());
  }
}

}  // namespace
