// Buttons in rows: which presses act, and which picture is seen.

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Targets/Shared/Dropdown/StatInterfaceMenuButton.h"

namespace {

class Pressed : public testing::Test {
 protected:
  /// "e" and "x": the pointer enters and leaves; "d" and "u": it goes down and up; "o": up after a
  /// press elsewhere.
  void play(WENButton_Time& button, const char* events) {
    for (; *events != '\0'; ++events) {
      NSEvent event;
      event.eventNumber = *events == 'o' ? 8 : 7;
      if (*events == 'e') button.mouseEntered(event);
      if (*events == 'x') button.mouseExited(event);
      if (*events == 'd') button.mouseDown(event);
      if (*events == 'u' || *events == 'o') button.mouseUp(event);
    }
  }
  WENTargetItem_Time action() {
    return {target, [this](NSObject*) { ++presses; }};
  }

  std::shared_ptr<NSObject> target = std::make_shared<NSObject>();
  int presses = 0;
};

TEST_F(Pressed, ActsOnTheReleaseOverItself) {
  struct Case {
    const char* events;
    int presses, ofMenuButton;
  };
  for (const auto& [events, expected, ofMenuButton] :
       {Case{"edu", 1, 1}, {"edxu", 0, 0}, {"edxeu", 1, 1}, {"du", 0, 0}, {"edo", 1, 0}}) {
    WENButton_Time button;
    StatInterfaceMenuButton_Time menuButton;
    for (auto [pressed, count] :
         {std::pair<WENButton_Time*, int>(&button, expected), {&menuButton, ofMenuButton}}) {
      presses = 0;
      pressed->setTapaction(action());
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
  struct Case {
    bool isEnabled, isSelected, isHeld, keepsSelected, hasAlternate;
    const char* name;
    double fraction;
  };
  for (const auto& [enabled, selected, held, keeps, hasAlternate, name, fraction] :
       {Case{true, false, false, false, true, "usual", 1},
        {false, true, true, false, true, "usual", 0.5},
        {true, false, true, false, true, "alternate", 1},
        {true, false, true, false, false, "usual", 0.25},
        {true, true, true, true, true, "selected", 1},
        {true, true, true, false, true, "alternate", 1}}) {
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
