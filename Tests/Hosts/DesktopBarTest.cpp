// What the bar does alike on every kind of display and at every scale.

#include <signal.h>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Tests/Hosts/AccessibleDesktop.h"
#include "Tests/Hosts/BarTest.h"
#include "Tests/Platform/Support/Files.h"

namespace {

using testing::ElementsAre;

class DesktopBar : public DesktopTest {
 protected:
  DesktopBar() : DesktopTest(640, 120) {}

  void showBar() {
    startBar();
    expectOnScreen({});
  }
  void expectOnScreen(ExpectedItem expected) {
    expected.scale = scale_;
    expectItem([&] { return screen_->screenshot(); }, expected);
  }
};

INSTANTIATE_TEST_SUITE_P(, DesktopBar,
                         testing::Values("X11", "X11AtScale2", "Wayland", "WaylandAtScale2"),
                         [](const auto& tested) { return tested.param; });

// Would catch: an item at the wrong end, upside down, blurred at scale 2 or without its margin, and
// a light bar that stays on a desktop which has turned dark.
TEST_P(DesktopBar, FollowsTheDesktopsAppearance) {
  showBar();
  for (const auto& [style, bar] :
       {std::pair<PropertyList, uint32_t>{"Dark", colors::DarkBar}, {{}, colors::LightBar}}) {
    CFPreferencesSetAppValue("AppleInterfaceStyle", style, ".GlobalPreferences");
    ASSERT_TRUE(CFPreferencesAppSynchronize(".GlobalPreferences"));
    NSDistributedNotificationCenter::defaultCenter().postNotification(
        "AppleInterfaceThemeChangedNotification");
    expectOnScreen({.bar = bar});
  }
}

// Would catch: an exception that ends the program or its drawing, one line a second in the log, an
// area left undrawn when the item grows, and its remains when it shrinks.
TEST_P(DesktopBar, OutlivesAnItemThatFailsAndFollowsItsWidth) {
  showBar();
  const char* const texts[] = {"the item has failed", "it has failed again", "the item has failed"};
  for (size_t count = 0; count < std::size(texts); ++count) {
    command({{"failure", texts[count]}});
    ASSERT_TRUE(waitUntil([&] { return itemLog().size() > count; }));
  }
  for (const int width : {150, 33, 200}) {
    command({{"failure", ""}, {"length", std::to_string(width)}});
    expectOnScreen({.width = width});
  }
  EXPECT_EQ(bar().errors(),
            "velmora: error: the item has failed\nvelmora: error: it has failed again\n");
}

// Would catch: an item that a screen reader finds no word for, one for which there is no word when
// the screen reader starts after the bar, and megabytes loaded for nobody.
TEST_P(DesktopBar, TellsTheItemsNameToScreenReaders) {
  setAccessibilityEnabled(false);
  startBar({}, {{"NO_AT_BRIDGE", std::nullopt}});
  expectOnScreen({});
  EXPECT_THAT(readFile("/proc/" + std::to_string(bar().pid()) + "/maps"),
              testing::Not(testing::HasSubstr("/libatk")));
  std::string tree;
  const auto isNamed = [&] {
    tree = AccessibleDesktop().tree();
    return tree.find("\"Test item\"") != std::string::npos;
  };
  setAccessibilityEnabled(true);
  EXPECT_TRUE(waitUntil(isNamed)) << tree;
  startBar({}, {{"NO_AT_BRIDGE", std::nullopt}});
  EXPECT_TRUE(waitUntil(isNamed)) << tree;
}

// Would catch: an end by the signal itself, which leaves the item's files and threads behind.
TEST_P(DesktopBar, UnloadsTheItemWhenAskedToEnd) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    showBar();
    bar().sendSignal(signal);
    EXPECT_EQ(bar().waitForExit(), 0);
    EXPECT_EQ(bar().errors(), "");
    // The next round must not take this one's last picture for its own.
    EXPECT_TRUE(
        waitUntil([&] { return !itemFault(screen_->screenshot(), {.scale = scale_}).empty(); }));
  }
  EXPECT_THAT(itemLog(), ElementsAre("willUnload", "willUnload", "willUnload"));
}

// Would catch: a bar that hangs or spins without its display, one that does not unload, and a
// logout, which takes the display away first, told as an error.
TEST_P(DesktopBar, EndsWithItsDisplay) {
  showBar();
  screen_->crash();
  EXPECT_EQ(bar().waitForExit(), 0);
  EXPECT_THAT(bar().errors(), testing::MatchesRegex("velmora: the [^\n]* display has gone\n"));
  EXPECT_THAT(itemLog(), ElementsAre("willUnload"));
}

// Would catch: two bars in one place, and a lock that outlives its bar.
TEST_P(DesktopBar, IsTheOnlyOneOnItsMonitor) {
  showBar();
  const FinishedProcess refused = runToEnd({menuBarProgram().string()}, screen_->environment());
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.errors,
              testing::MatchesRegex("velmora-menubar: a bar is on the monitor [^\n]* already\n"));
  bar().sendSignal(SIGKILL);
  EXPECT_TRUE(bar().waitForExit().has_value());
  showBar();
}

}  // namespace
