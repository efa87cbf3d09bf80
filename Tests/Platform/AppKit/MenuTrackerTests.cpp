#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <utility>

#include "Platform/AppKit/Menus/MenuTracker.h"
#include "Platform/AppKit/Views/NSTextField.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/VirtualTime.h"

namespace {

constexpr auto Table = "Platform/AppKit/MenuTrackerTests.txt";

class Button : public NSView {
 public:
  using NSView::NSView;
  bool tracksMouse() const override { return true; }
  bool acceptsFirstResponder() const override { return true; }
  void mouseDown(const NSEvent&) override { ++presses; }
  void mouseUp(const NSEvent& event) override {
    const NSPoint place = convertPointFromView(event.locationInWindow, nullptr);
    if (NSPointInRect(place, bounds())) ++clicks;
  }
  bool accessibilityPerformPress() override { return ++clicks > 0; }

  int presses = 0;
  int clicks = 0;
};

std::shared_ptr<NSMenuItem> makeItem(const std::string& title, double height = 20) {
  const auto item = std::make_shared<NSMenuItem>();
  item->setTitle(title);
  const auto view = std::make_shared<NSView>(NSMakeRect(0, 0, 100, height));
  view->setAutoresizingMask(NSViewWidthSizable);
  const auto text = std::make_shared<NSTextField>(NSMakeRect(0, 0, 100, 20));
  text->setStringValue(title);
  view->addSubview(text);
  item->setView(view);
  return item;
}

std::shared_ptr<NSMenu> makeMenu(std::initializer_list<std::shared_ptr<NSMenuItem>> items) {
  const auto menu = std::make_shared<NSMenu>();
  menu->setHasPadding(false);
  for (const auto& item : items)
    menu->addItem(item);
  return menu;
}

/// Where menus open, and what their delegate hears, in a simulated time.
///
/// The menu of every case, below the slot at x 500 to 600, where rows are 20 points high:
/// A (submenu a1, a2 (submenu x1, x2), a3), B, a filler of 4 points, C, D with a button at x 20 to
/// 60, E (submenu e1). B, C, a1, a3, x1, x2 and e1 do something.
class MenuTrackerTest : public testing::Test, private MenuScreen, private NSMenuDelegate {
 protected:
  MenuTrackerTest() {
    const auto x = makeMenu({acting("x1"), acting("x2")});
    const auto a = makeMenu({acting("a1"), leading("a2", x), acting("a3")});
    button_ = std::make_shared<Button>(NSMakeRect(20, 0, 40, 20));
    const auto d = makeItem("D");
    d->setHasActingView(true);
    d->view()->addSubview(button_);
    menu_ = makeMenu({leading("A", a), acting("B"), makeItem("", 4), acting("C"), d,
                      leading("E", makeMenu({acting("e1")}))});
    menu_->setDelegate(this);
  }
  ~MenuTrackerTest() override {
    tracker_.close();
    menu_->setDelegate(nullptr);
  }

  /// Steps of one letter and what it needs: m X Y moves the pointer, d and u press and release it,
  /// s DY scrolls, w MS waits, k KEY presses a key, t TEXT types, f lays out the next frame.
  std::string after(const std::string& steps, MenuOpening opening = MenuOpening::Press,
                    bool isMirrored = false) {
    performed_.clear();
    tracker_.open(menu_, NSMakeRect(500, 0, 100, 22), opening,
                  isMirrored ? NSUserInterfaceLayoutDirection::RightToLeft
                             : NSUserInterfaceLayoutDirection::LeftToRight);
    // A click on the slot opened it.
    if (opening == MenuOpening::Press && !steps.starts_with('D')) tracker_.pointerReleased(Slot);
    return then(steps);
  }

  std::string then(const std::string& steps) {
    std::istringstream input(steps);
    std::string step;
    while (input >> step)
      perform(step, input);
    return state();
  }

  /// The highlighted row of each open menu and what was done: "A>a2", "A>-", "closed!B".
  std::string state() const {
    std::string text = tracker_.isTracking() ? "" : "closed";
    for (size_t depth = 0; depth < tracker_.depth(); ++depth) {
      const NSMenuItem* item = tracker_.highlightedItem(*tracker_.panel(depth).menu());
      text += (depth > 0 ? ">" : "") + (item != nullptr ? item->title() : "-");
    }
    return text + performed_;
  }

  static constexpr NSPoint Slot{550, 10};

  VirtualTime time_;
  MenuTracker tracker_{*this};
  std::shared_ptr<NSMenu> menu_;
  std::map<std::string, std::shared_ptr<NSMenuItem>> items_;
  std::shared_ptr<Button> button_;
  std::string performed_;
  std::string heard_;
  std::function<void(const std::string&)> onMessage_;
  NSRect area_ = NSMakeRect(0, 22, 800, 578);

 private:
  struct Surface : MenuSurface {
    void requestFrame() override {}
  };

  std::shared_ptr<NSMenuItem> acting(const std::string& title) {
    const auto item = items_[title] = makeItem(title);
    item->setAction([this, title] { performed_ += "!" + title; });
    return item;
  }
  std::shared_ptr<NSMenuItem> leading(const std::string& title, std::shared_ptr<NSMenu> submenu) {
    const auto item = items_[title] = makeItem(title);
    submenu->setDelegate(this);
    item->setSubmenu(std::move(submenu));
    return item;
  }

  void perform(const std::string& step, std::istream& input) {
    static const std::map<std::string, uint16_t> Keys{
        {"Up", NSKeyCodeUp},       {"Down", NSKeyCodeDown},     {"Left", NSKeyCodeLeft},
        {"Right", NSKeyCodeRight}, {"Home", NSKeyCodeHome},     {"End", NSKeyCodeEnd},
        {"Esc", NSKeyCodeEscape},  {"Return", NSKeyCodeReturn}, {"Space", NSKeyCodeSpace},
        {"Tab", NSKeyCodeTab},     {"Page", NSKeyCodePageDown}};
    if (step == "m") {
      input >> pointer_.x >> pointer_.y;
      tracker_.pointerMoved(pointer_);
    } else if (step == "d") {
      tracker_.pointerPressed(pointer_);
    } else if (step == "u") {
      tracker_.pointerReleased(pointer_);
    } else if (step == "o" || step == "g" || step == "l") {
      input >> pointer_.x >> pointer_.y;
      if (step == "o") tracker_.touchDown(pointer_);
      if (step == "g") tracker_.touchMoved(pointer_);
      if (step == "l") tracker_.touchUp(pointer_);
    } else if (step == "s") {
      double points = 0;
      input >> points;
      tracker_.scrolled(pointer_, {0, points});
    } else if (step == "w") {
      double milliseconds = 0;
      input >> milliseconds;
      time_.loop.advance(milliseconds / 1000);
    } else if (step == "f") {
      tracker_.prepareFrame();
    } else if (step == "k" || step == "t") {
      NSEvent event;
      event.type = NSEventType::KeyDown;
      std::string name;
      input >> name;
      event.keyCode = step == "k" ? Keys.at(name) : static_cast<uint16_t>(NSKeyCodeOther);
      if (step == "t") event.characters = name;
      tracker_.keyPressed(event);
    } else {
      ASSERT_EQ(step, "D");
    }
  }

  void hear(const std::string& message) {
    heard_ += message + " ";
    if (onMessage_) onMessage_(message);
  }

  NSRect menuArea() const override { return area_; }
  std::unique_ptr<MenuSurface> makeSurface(MenuPanel&) override {
    return std::make_unique<Surface>();
  }
  void trackingEnded() override {}
  void menuWillOpen(NSMenu& menu) override { hear("open:" + menu.itemArray().front()->title()); }
  void menuDidClose(NSMenu& menu) override {
    hear("close" + (menu.numberOfItems() > 0 ? ":" + menu.itemArray().front()->title() : ""));
  }
  void menuWillHighlightItem(NSMenu&, NSMenuItem* item) override {
    hear("light:" + (item != nullptr ? item->title() : "-"));
  }

  NSPoint pointer_ = Slot;
};

TEST_F(MenuTrackerTest, FollowsThePointer) {
  for (const auto& [steps, expected] : casesIn<std::string, std::string>(Table, "pointer")) {
    EXPECT_EQ(after(steps), expected) << steps;
    tracker_.close();
  }
  EXPECT_EQ(button_->presses, 2);
  EXPECT_EQ(button_->clicks, 1);
}

TEST_F(MenuTrackerTest, FollowsTheKeyboard) {
  for (const auto& [steps, expected] : casesIn<std::string, std::string>(Table, "keyboard")) {
    EXPECT_EQ(after(steps, MenuOpening::Request), expected) << steps;
    tracker_.close();
  }
  EXPECT_EQ(button_->clicks, 2);
  EXPECT_EQ(after("k Left", MenuOpening::Request, true), "A>a1");
  EXPECT_EQ(tracker_.panel(1).frame().origin.x, 400);
  EXPECT_EQ(then("k Right"), "A");
}

TEST_F(MenuTrackerTest, FollowsAFinger) {
  for (const auto& [steps, expected] : casesIn<std::string, std::string>(Table, "touch")) {
    EXPECT_EQ(after(steps), expected) << steps;
    tracker_.close();
  }
}

TEST_F(MenuTrackerTest, ScrollsWithAFinger) {
  area_ = NSMakeRect(0, 22, 800, 60);  // Of 124 points.
  EXPECT_EQ(after("o 550 60 g 550 50 g 550 30 l 550 30 m 550 40"), "C");
  EXPECT_EQ(then("o 550 40 g 550 80 l 550 80 m 550 40"), "A");
}

TEST_F(MenuTrackerTest, ScrollsWhatIsHigherThanTheMonitor) {
  area_ = NSMakeRect(0, 22, 800, 60);  // Of 124 points.
  EXPECT_EQ(after("m 550 40"), "A");
  EXPECT_EQ(then("s 30"), "C");
  EXPECT_EQ(then("m 550 30"), "-");           // The upper arrow.
  EXPECT_EQ(then("w 200 m 550 40"), "A");     // It has scrolled back to the top.
  EXPECT_EQ(then("k End k Return"), "E>e1");  // Scrolled into sight.
  EXPECT_EQ(tracker_.panel(1).frame(), NSMakeRect(600, 62, 100, 20));
  tracker_.close();
  EXPECT_EQ(after("m 550 78 w 1000 m 550 70"), "E>-");  // To the lower end.
}

TEST_F(MenuTrackerTest, ChangesWhileItIsOpen) {
  // The row under the pointer goes; with the next frame the one that comes in its place is lit.
  EXPECT_EQ(after("m 550 50"), "B");
  menu_->removeItem(*items_["B"]);
  EXPECT_EQ(state(), "-");
  EXPECT_EQ(then("m 550 52 f"), "C");
  // The row whose submenu is open goes, or loses it.
  EXPECT_EQ(then("m 550 30 w 201"), "A>-");
  const auto row = items_["A"];
  menu_->removeItem(*row);
  EXPECT_EQ(state(), "-");
  EXPECT_FALSE(row->submenu()->isOpen());
  menu_->insertItemAtIndex(row, 0);
  EXPECT_EQ(then("f m 550 30 w 201"), "A>-");
  row->setSubmenu(nullptr);
  EXPECT_EQ(state(), "A");
  // Widened and made lower: both are seen with the next frame, at the monitor's edge.
  row->view()->setFrameSize({320, 10});
  then("f");
  EXPECT_EQ(tracker_.panel(0).frame(), NSMakeRect(480, 22, 320, 74));
  row->view()->setFrameSize({90, 10});
  then("f");
  EXPECT_EQ(tracker_.panel(0).frame().size.width, 100);
  menu_->removeAllItems();
  EXPECT_EQ(then("f k Down k Return k Page t a"), "-");
}

TEST_F(MenuTrackerTest, TellsItsDelegateWhichMayChangeEverything) {
  after("m 550 30 w 201 m 620 30 d u");
  EXPECT_EQ(heard_, "open:A light:A open:a1 light:a1 close:a1 close:A ");
  // Within each message: the menu ends, or is emptied.
  for (const std::string message : {"open:A", "light:A", "open:a1", "light:a1", "close:a1"}) {
    for (const bool isEmptied : {false, true}) {
      const auto rows = menu_->itemArray();
      bool isDone = false;
      onMessage_ = [&](const std::string& heard) {
        if (heard != message || std::exchange(isDone, true)) return;
        isEmptied ? menu_->removeAllItems() : menu_->cancelTracking();
      };
      EXPECT_EQ(after("m 550 30 w 201 m 620 30 f k Left f k Down").starts_with("closed"),
                !isEmptied)
          << message;
      onMessage_ = nullptr;
      tracker_.close();
      menu_->removeAllItems();
      for (const auto& row : rows)
        menu_->addItem(row);
    }
  }
}

}  // namespace
