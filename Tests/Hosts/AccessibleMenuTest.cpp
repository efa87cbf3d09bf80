#include <gmock/gmock.h>

#include <fstream>

#include "Tests/Hosts/AccessibleDesktop.h"
#include "Tests/Hosts/BarTest.h"

namespace {

using testing::Contains;

struct Desktop {
  const char* name;
  std::function<std::unique_ptr<DisplayServer>()> start;
  Environment environment;
  NSRect button;  ///< The one of the third row, on the screen.

  friend std::ostream& operator<<(std::ostream& stream, const Desktop& desktop) {
    return stream << desktop.name;
  }
};

// The menu is 160 points wide, 4 from the right end, below the bar of 22 points; the button is at
// 112, 42 in it, 40 points wide and 16 high. On Wayland only the place in the window is known.
const Desktop desktops[] = {
    {"X11", [] { return std::make_unique<X11Server>(640, 200); }, {}, {{588, 64}, {40, 16}}},
    {"X11AtScale2",
     [] { return std::make_unique<X11Server>(1280, 400); },
     {{"GDK_SCALE", "2"}},
     {{1176, 128}, {80, 32}}},
    {"Wayland",
     [] {
       return std::make_unique<WaylandServer>(
           std::vector{WaylandServer::Output{.width = 640, .height = 200}});
     },
     {},
     {{112, 42}, {40, 16}}},
};

constexpr const char* Closed = R"(menu bar "Menu bar"
  menu "Test item" (click) expandable
)";
constexpr const char* Open = R"(menu bar "Menu bar"
  menu "Test item" (click) expandable expanded
    menu ""
      menu item "Row 1" (click)
      menu item "Row 2" (open) expandable expanded selected
        menu "Row 2"
          menu item "Sub 1" (click) focused selected
          menu item "Sub 2" (click)
          menu item "Sub 3" (click)
      menu item "Row 3, Press" (click)
        push button "Press" (press)
)";

class AccessibleMenu : public BarTest, public testing::WithParamInterface<Desktop> {
 protected:
  void startBar(const Desktop& desktop, const char* rows) {
    screen_ = desktop.start();
    setAccessibilityEnabled(true);
    Environment environment{{"NO_AT_BRIDGE", std::nullopt}, {"TEST_EXTRA_MENU", rows}};
    environment.insert(desktop.environment.begin(), desktop.environment.end());
    start(*screen_, {}, environment);
    desktop_ = std::make_unique<AccessibleDesktop>();
    expectTree(Closed);
  }

  void expectTree(const std::string& expected) {
    std::string tree;
    EXPECT_TRUE(waitUntil([&] { return (tree = desktop_->tree()) == expected; })) << tree;
  }

  void perform(const std::string& name, const std::string& action) {
    EXPECT_TRUE(waitUntil([&] { return desktop_->perform(name, action); })) << name;
  }

  /// Memory of the bar's own, in KiB.
  long memory() {
    std::ifstream status("/proc/" + std::to_string(bar().pid()) + "/status");
    long size = 0;
    for (std::string word; size == 0 && status >> word;) {
      if (word == "RssAnon:") status >> size;
    }
    return size;
  }

  std::unique_ptr<DisplayServer> screen_;
  std::unique_ptr<AccessibleDesktop> desktop_;
};

INSTANTIATE_TEST_SUITE_P(, AccessibleMenu, testing::ValuesIn(desktops),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Would catch: a menu that nobody can read who does not see it, rows without their words, state or
// place, and actions that do nothing, or something else.
TEST_P(AccessibleMenu, IsReadAndUsedByAnotherProgram) {
  startBar(GetParam(), "3");
  perform("Test item", "click");
  perform("Row 2", "open");
  expectTree(Open);
  EXPECT_EQ(desktop_->place("Press"), GetParam().button);
  perform("Press", "press");
  EXPECT_TRUE(waitUntil([&] { return testing::Value(itemLog(), Contains("press")); }));
  perform("Sub 2", "click");
  EXPECT_TRUE(waitUntil([&] { return testing::Value(itemLog(), Contains("act:Sub 2")); }));
  expectTree(Closed);
}

class AccessibleMenuOnX11 : public AccessibleMenu {};
INSTANTIATE_TEST_SUITE_P(, AccessibleMenuOnX11, testing::Values(desktops[0]));

// Would catch: a screen reader that is not told what happens: it would read the old name, or stay
// silent.
TEST_P(AccessibleMenuOnX11, TellsWhatChanges) {
  startBar(GetParam(), "3");
  desktop_->listen();
  const auto expectHeard = [&](const std::vector<std::string>& events) {
    EXPECT_TRUE(waitUntil([&] {
      return testing::Value(desktop_->heard(), testing::IsSupersetOf(events));
    })) << testing::PrintToString(desktop_->heard());
  };
  perform("Test item", "click");
  expectHeard({"add 0 Test item", "expanded 1 Test item"});
  perform("Row 2", "open");
  expectHeard({"add 0 Row 2", "expanded 1 Row 2", "selected 1 Row 2", "focused 1 Sub 1"});
  command({{"name", "Renamed"}, {"rows", "4"}});
  expectHeard({"accessible-name 0 Renamed"});
  perform("Test item", "click");
  expectHeard({"remove 0 Test item", "expanded 0 Test item"});
}

// Would catch: objects that stay when their menu has closed, about 10 KiB of them an opening. The
// bridge keeps what it has told of for 15 seconds more, so the rows are not asked for.
TEST_P(AccessibleMenuOnX11, LeavesNothingWhenItCloses) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer keeps what is given back";
#endif
  startBar(GetParam(), "40");
  const auto openAndClose = [&](int count) {
    for (int opening = 0; opening < count; ++opening) {
      for (const char* end : {" expanded", " expandable"}) {
        perform("Test item", "click");
        ASSERT_TRUE(waitUntil([&] { return desktop_->line("Test item").ends_with(end); }));
      }
    }
  };
  openAndClose(20);
  const long before = memory();
  openAndClose(180);
  EXPECT_LT(memory(), before + 512);
}

}  // namespace
