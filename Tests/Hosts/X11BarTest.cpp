#include <gmock/gmock.h>

#include "Tests/Hosts/BarTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class X11Bar : public BarTest {
 protected:
  static constexpr int Width = 640;
  static constexpr int Height = 120;

  void expectOnScreen(const ExpectedItem& expected) {
    expectItem([&] { return screen_.screenshot(); }, expected);
  }

  X11Server screen_{Width, Height};
};

// Would catch: windows under the bar, since a window manager goes by these very numbers, and space
// reserved in points where device pixels are meant.
TEST_F(X11Bar, IsADockThatReservesItsHeight) {
  struct Case {
    const char* scale;
    unsigned long height;
  };
  for (const Case& tested : {Case{"1", 22}, Case{"2", 44}}) {
    SCOPED_TRACE(tested.scale);
    start(screen_, {}, {{"GDK_SCALE", tested.scale}});
    unsigned long window = 0;
    ASSERT_TRUE(
        waitUntil([&] { return (window = screen_.windowOfClass("velmora-menubar")) != 0; }));
    EXPECT_THAT(screen_.property(window, "_NET_WM_WINDOW_TYPE"),
                ElementsAre(screen_.atom("_NET_WM_WINDOW_TYPE_DOCK")));
    EXPECT_THAT(screen_.property(window, "_NET_WM_STRUT"), ElementsAre(0, 0, tested.height, 0));
    EXPECT_THAT(screen_.property(window, "_NET_WM_STRUT_PARTIAL"),
                ElementsAre(0, 0, tested.height, 0, 0, 0, 0, 0, 0, Width - 1, 0, 0));
    bar().sendSignal(SIGTERM);
    ASSERT_EQ(bar().waitForExit(), 0);
    ASSERT_TRUE(waitUntil([&] { return screen_.windowOfClass("velmora-menubar") == 0; }));
  }
}

// Would catch: a press that does not reach the item, an item that stays selected, and a double
// click that asks for the menu three times.
TEST_F(X11Bar, SelectsTheItemWhileTheButtonIsHeld) {
  start(screen_);
  expectOnScreen({});
  screen_.input({"mousemove", "600", "10", "mousedown", "1"});
  expectOnScreen({.body = colors::Selected});
  EXPECT_THAT(itemLog(), ElementsAre("menu"));
  screen_.input({"mouseup", "1"});
  expectOnScreen({});
  screen_.input({"click", "--repeat", "2", "--delay", "20", "1"});
  EXPECT_TRUE(waitUntil([&] { return itemLog().size() >= 3; }));
  expectOnScreen({});
  EXPECT_THAT(itemLog(), ElementsAre("menu", "menu", "menu"));
}

// Would catch: the display's connection as the standard error, which ends with the first word
// there.
TEST_F(X11Bar, StartsWithoutStandardDescriptors) {
  const ChildProcess bar({"sh", "-c", R"(exec "$0" --bundle "$1" <&- >&- 2>&-)",
                          menuBarProgram().string(), testBundle().string()},
                         screen_.environment());
  expectOnScreen({});
}

// Would catch: a menu for the whole bar or for any button.
TEST_F(X11Bar, TakesOnlyThePrimaryButtonOnTheItem) {
  start(screen_);
  expectOnScreen({});
  // The item has the columns from 572 to 631.
  screen_.input({"mousemove", "600", "10", "click", "3", "click", "2", "click", "4"});
  screen_.input({"mousemove", "571", "10", "click", "1"});
  screen_.input({"mousemove", "632", "10", "click", "1"});
  EXPECT_THAT(itemLog(), IsEmpty());
  // Events arrive in order: after these two there is nothing left to come.
  screen_.input({"mousemove", "572", "10", "click", "1"});
  screen_.input({"mousemove", "631", "10", "click", "1"});
  EXPECT_TRUE(waitUntil([&] { return itemLog().size() >= 2; }));
  EXPECT_THAT(itemLog(), ElementsAre("menu", "menu"));
}

}  // namespace
