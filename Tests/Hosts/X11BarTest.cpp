#include <signal.h>

#include <functional>

#include "Tests/Hosts/BarTest.h"
#include "Tests/Platform/Support/CaseTable.h"

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

// Would catch: a bar of the wrong size on a dense screen, one that does not follow the settings of
// a running session, and a settings manager's damaged words that end it.
TEST_F(X11Bar, FollowsTheDesktopsScale) {
  screen_.setResources("*background: grey\nXft.dpi:\t144\n");
  start(screen_);
  const auto expectHeight = [&](unsigned long height) {
    EXPECT_TRUE(waitUntil([&] {
      const auto strut =
          screen_.property(screen_.windowOfClass("velmora-menubar"), "_NET_WM_STRUT");
      return strut.size() == 4 && strut[2] == height;
    })) << height;
  };
  expectHeight(33);
  for (auto [height, digits] :
       casesIn<unsigned long, std::string>("Hosts/xsettings.txt", "settings")) {
    SCOPED_TRACE(digits);
    std::erase(digits, ' ');
    std::string bytes;
    for (size_t at = 0; at < digits.size(); at += 2)
      bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    screen_.publishSettings(bytes);
    expectHeight(height);
  }
  screen_.withdrawSettings();
  expectHeight(33);
  screen_.setResources("Xft.dpi: 192\n");
  expectHeight(44);
}

// Would catch: windows under the bar, since a window manager goes by these very numbers, space
// taken from the monitor above, and a bar that a new place of its monitor leaves behind.
TEST_F(X11Bar, IsADockThatReservesSpaceOnItsOwnMonitorOnly) {
  struct Case {
    const char* other;
    const char* own;
    std::vector<unsigned long> strut;
  };
  const Case cases[] = {
      {"320/80x120/30+0+0", "320/80x120/30+320+0", {0, 0, 22, 0, 0, 0, 0, 0, 320, 639, 0, 0}},
      {"320/80x120/30+0+0", "320/80x60/15+320+60", {0, 0, 82, 0, 0, 0, 0, 0, 320, 639, 0, 0}},
      {"400/80x60/15+0+0", "400/80x60/15+240+60", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"640/160x60/15+0+60", "640/160x60/15+0+0", {0, 0, 22, 0, 0, 0, 0, 0, 0, 639, 0, 0}},
  };
  start(screen_, {"--output-name", "OWN"});
  const auto property = [&](const char* name) {
    return screen_.property(screen_.windowOfClass("velmora-menubar"), name);
  };
  for (const Case& tested : cases) {
    SCOPED_TRACE(tested.own);
    screen_.setMonitors({"--setmonitor", "OTHER", tested.other, "screen"});
    screen_.setMonitors({"--setmonitor", "OWN", tested.own, "none"});
    EXPECT_TRUE(waitUntil([&] { return property("_NET_WM_STRUT_PARTIAL") == tested.strut; }));
    EXPECT_THAT(property("_NET_WM_WINDOW_TYPE"),
                ElementsAre(screen_.atom("_NET_WM_WINDOW_TYPE_DOCK")));
    for (const char* name : {"OTHER", "OWN"})
      screen_.setMonitors({"--delmonitor", name});
  }
}

// Would catch: a bar that is lost with the window manager or through another program, and one that
// is there but draws no more.
TEST_F(X11Bar, ComesBackToTheScreen) {
  start(screen_);
  expectOnScreen({});
  const std::function<void()> losses[] = {
      [&] { screen_.endWindowManager(); },
      [&] {
        screen_.input({"search", "--class", "velmora-menubar", "windowunmap"});
      },
      [&] { screen_.startWindowManager(); },
      [&] {
        screen_.input({"search", "--class", "velmora-menubar", "windowclose"});
      },
  };
  int width = 60;
  for (const auto& lose : losses) {
    // What it draws meanwhile is for a window that it does not know to be lost.
    bar().sendSignal(SIGSTOP);
    lose();
    command({{"length", std::to_string(++width)}});
    bar().sendSignal(SIGCONT);
    expectOnScreen({.width = width});
  }
  EXPECT_EQ(bar().errors(), "");
}

// Would catch: colours that are swapped or shifted on a screen of another depth. The expected ones
// are the bar's with five and six bits, widened again: 0xF0 has 60 of 63, which is 243 of 255.
TEST_F(X11Bar, ShowsItsColorsAtEveryDepth) {
  for (const auto& [depth, item] :
       {std::pair<int, ExpectedItem>{16, {.bar = 0xEFF3F7, .body = 0x848284}}, {30, {}}}) {
    SCOPED_TRACE(depth);
    const X11Server screen(Width, Height, depth);
    start(screen);
    expectItem([&] { return screen.screenshot(); }, item);
  }
}

// Would catch: the display's connection as the standard error, which ends with the first word
// there.
TEST_F(X11Bar, StartsWithoutStandardDescriptors) {
  const ChildProcess bar({"sh", "-c", R"(exec "$0" --bundle "$1" <&- >&- 2>&-)",
                          menuBarProgram().string(), testBundle().string()},
                         screen_.environment());
  expectOnScreen({});
}

// Would catch: a menu for the whole bar or for any button, none in the corner, into which a pointer
// can be thrown, an item that is not selected or stays so, and a double click that asks for the
// menu three times.
TEST_F(X11Bar, TakesThePrimaryButtonOnTheItem) {
  start(screen_);
  expectOnScreen({});
  screen_.input({"mousemove", "600", "10", "click", "3", "click", "2", "click", "4"});
  screen_.input({"mousemove", "571", "10", "click", "1"});
  screen_.input({"mousemove", "600", "22", "click", "1"});
  EXPECT_THAT(itemLog(), IsEmpty());
  // Events arrive in order: after these there is nothing left to come.
  screen_.input({"mousemove", "572", "10", "click", "--repeat", "2", "--delay", "20", "1"});
  screen_.input({"mousemove", "639", "0", "mousedown", "1"});
  // Four points wider on either side than the item's columns from 572 to 631.
  EXPECT_TRUE(waitUntil([&] {
    const ScreenPicture picture = screen_.screenshot();
    const auto isSelected = [&](int column) { return picture.at(column, 11) == colors::Selected; };
    const auto isBar = [&](int column) { return picture.at(column, 11) == colors::LightBar; };
    return isBar(567) && isSelected(568) && isSelected(600) && isSelected(635) && isBar(636);
  }));
  EXPECT_THAT(itemLog(), ElementsAre("menu", "menu", "menu"));
  screen_.input({"mouseup", "1"});
  expectOnScreen({});
}

}  // namespace
