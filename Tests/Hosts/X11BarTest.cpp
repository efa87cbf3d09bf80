#include <gmock/gmock.h>

#include <functional>

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

struct Setting {
  enum Type { Number, Text, Color };

  Type type;
  std::string name;
  uint32_t value;  // Of a text, its length.
};

/// A settings manager's property (freedesktop.org, XSETTINGS 0.5), with the numbers' bytes in
/// either order.
std::string settingsBytes(bool isMostSignificantFirst, const std::vector<Setting>& settings) {
  std::string bytes(1, isMostSignificantFirst ? 1 : 0);
  const auto add = [&](uint32_t number, uint32_t size) {
    for (uint32_t index = 0; index < size; ++index) {
      const uint32_t place = isMostSignificantFirst ? size - 1 - index : index;
      bytes += static_cast<char>(number >> (8 * place));
    }
  };
  const auto fill = [&] { bytes.resize((bytes.size() + 3) / 4 * 4); };
  fill();
  add(7, 4);
  add(static_cast<uint32_t>(settings.size()), 4);
  for (const Setting& setting : settings) {
    add(setting.type, 1);
    add(0, 1);
    add(static_cast<uint32_t>(setting.name.size()), 2);
    bytes += setting.name;
    fill();
    add(1, 4);
    add(setting.value, 4);
    if (setting.type == Setting::Text) bytes.append(setting.value, 'x');
    if (setting.type == Setting::Color) add(0, 4);
    fill();
  }
  return bytes;
}

// Would catch: a bar of the wrong size on a dense screen, one that does not follow the settings of
// a running session, and a settings manager's damaged words that end it.
TEST_F(X11Bar, FollowsTheDesktopsScale) {
  constexpr uint32_t Dot = 1024;
  const auto factor = [](uint32_t value) {
    return Setting{Setting::Number, "Gdk/WindowScalingFactor", value};
  };
  const auto resolution = [](uint32_t value) {
    return Setting{Setting::Number, "Xft/DPI", value * Dot};
  };
  const std::string full = settingsBytes(false, {{Setting::Text, "Net/ThemeName", 5},
                                                 {Setting::Color, "Other/Color", 9},
                                                 factor(2),
                                                 resolution(240)});
  struct Case {
    std::string settings;
    unsigned long height;  // 22 points.
  };
  const Case cases[] = {
      {settingsBytes(false, {factor(1), resolution(120)}), 28},
      {settingsBytes(true, {factor(2), resolution(96)}), 44},
      {settingsBytes(true, {resolution(101)}), 22},
      {full, 55},
      {full.substr(0, full.size() - 1), 44},
      {settingsBytes(false, {factor(1), resolution(1)}), 22},
      {full.substr(0, 40), 33},
      {settingsBytes(false, {resolution(168)}), 39},
      {"", 33},
  };
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
  for (const Case& tested : cases) {
    screen_.publishSettings(tested.settings);
    expectHeight(tested.height);
  }
  screen_.publishSettings(full);
  expectHeight(55);
  screen_.withdrawSettings();
  expectHeight(33);
  screen_.setResources("Xft.dpi: 192\n");
  expectHeight(44);
}

// Would catch: space taken from the monitor above, and a bar that a new place of its monitor leaves
// behind.
TEST_F(X11Bar, ReservesSpaceOnItsOwnMonitorOnly) {
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
  const auto randr = [&](const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"xrandr"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    runToEnd(command, screen_.environment());
  };
  start(screen_, {"--output-name", "OWN"});
  for (const Case& tested : cases) {
    SCOPED_TRACE(tested.own);
    for (const char* name : {"OTHER", "OWN"})
      randr({"--delmonitor", name});
    randr({"--setmonitor", "OTHER", tested.other, "screen"});
    randr({"--setmonitor", "OWN", tested.own, "none"});
    EXPECT_TRUE(waitUntil([&] {
      return screen_.property(screen_.windowOfClass("velmora-menubar"), "_NET_WM_STRUT_PARTIAL") ==
             tested.strut;
    }));
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
    lose();
    command({{"length", std::to_string(++width)}});
    expectOnScreen({.width = width});
  }
  EXPECT_EQ(bar().errors(), "");
}

// Would catch: colours that are swapped or shifted on a screen of another depth. The expected ones
// are the bar's with five and six bits, widened again: 0xF0 has 60 of 63, which is 243 of 255.
TEST_F(X11Bar, ShowsItsColorsAtEveryDepth) {
  struct Case {
    int depth;
    ExpectedItem item;
  };
  for (const Case& tested : {Case{16, {.bar = 0xEFF3F7, .body = 0x848284}}, Case{30, {}}}) {
    SCOPED_TRACE(tested.depth);
    const X11Server screen(Width, Height, tested.depth);
    start(screen);
    expectItem([&] { return screen.screenshot(); }, tested.item);
  }
}

// Would catch: a press that does not reach the item, an item that stays selected, and a double
// click that asks for the menu three times.
TEST_F(X11Bar, SelectsTheItemWhileTheButtonIsHeld) {
  start(screen_);
  expectOnScreen({});
  screen_.input({"mousemove", "600", "10", "mousedown", "1"});
  // Four points wider on either side than the item's columns from 572 to 631.
  EXPECT_TRUE(waitUntil([&] {
    const ScreenPicture picture = screen_.screenshot();
    const auto isSelected = [&](int column) { return picture.at(column, 11) == colors::Selected; };
    const auto isBar = [&](int column) { return picture.at(column, 11) == colors::LightBar; };
    return isBar(567) && isSelected(568) && isSelected(600) && isSelected(635) && isBar(636);
  }));
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

// Would catch: a menu for the whole bar or for any button, and none in the corner, into which a
// pointer can be thrown.
TEST_F(X11Bar, TakesOnlyThePrimaryButtonOnTheItem) {
  start(screen_);
  expectOnScreen({});
  screen_.input({"mousemove", "600", "10", "click", "3", "click", "2", "click", "4"});
  screen_.input({"mousemove", "571", "10", "click", "1"});
  screen_.input({"mousemove", "600", "22", "click", "1"});
  EXPECT_THAT(itemLog(), IsEmpty());
  // Events arrive in order: after these two there is nothing left to come.
  screen_.input({"mousemove", "572", "10", "click", "1"});
  screen_.input({"mousemove", "639", "0", "click", "1"});
  EXPECT_TRUE(waitUntil([&] { return itemLog().size() >= 2; }));
  EXPECT_THAT(itemLog(), ElementsAre("menu", "menu"));
}

}  // namespace
