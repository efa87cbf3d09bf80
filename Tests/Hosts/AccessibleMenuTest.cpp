#include <fstream>
#include <map>

#include "Tests/Hosts/AccessibleDesktop.h"
#include "Tests/Hosts/BarTest.h"

namespace {

using testing::Contains;

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

class AccessibleMenu : public DesktopTest {
 protected:
  AccessibleMenu() : DesktopTest(1280, 400) {}

  void openDesktop(const char* rows) {
    setAccessibilityEnabled(true);
    startBar({}, {{"NO_AT_BRIDGE", std::nullopt}, {"TEST_EXTRA_MENU", rows}});
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

  std::unique_ptr<AccessibleDesktop> desktop_;
};

INSTANTIATE_TEST_SUITE_P(, AccessibleMenu, testing::Values("X11", "X11AtScale2", "Wayland"),
                         [](const auto& tested) { return tested.param; });

// Would catch: a menu that nobody can read who does not see it, rows without their words, state or
// place, and actions that do nothing, or something else. The menu is 160 points wide, 4 from the
// right end, below the bar of 22 points; the button is at 112, 42 in it, 40 points wide and 16
// high. On Wayland only the place in the window is known.
TEST_P(AccessibleMenu, IsReadAndUsedByAnotherProgram) {
  openDesktop("3");
  perform("Test item", "click");
  perform("Row 2", "open");
  expectTree(Open);
  const std::map<std::string, NSRect> places = {{"X11", {{1228, 64}, {40, 16}}},
                                                {"X11AtScale2", {{1176, 128}, {80, 32}}},
                                                {"Wayland", {{112, 42}, {40, 16}}}};
  EXPECT_EQ(desktop_->place("Press"), places.at(GetParam()));
  perform("Press", "press");
  EXPECT_TRUE(waitUntil([&] { return testing::Value(itemLog(), Contains("press")); }));
  perform("Sub 2", "click");
  EXPECT_TRUE(waitUntil([&] { return testing::Value(itemLog(), Contains("act:Sub 2")); }));
  expectTree(Closed);
}

class AccessibleMenuOnX11 : public AccessibleMenu {};
INSTANTIATE_TEST_SUITE_P(, AccessibleMenuOnX11, testing::Values("X11"));

// Would catch: a screen reader that is not told what happens: it would read the old name, or stay
// silent.
TEST_P(AccessibleMenuOnX11, TellsWhatChanges) {
  openDesktop("3");
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
  openDesktop("40");
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
