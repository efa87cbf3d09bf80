#include <gmock/gmock.h>
#include <linux/input-event-codes.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Hosts/Wayland/WaylandDisplay.h"
#include "Tests/Hosts/HeardMenus.h"
#include "Tests/Support/DisplayServers.h"
#include "Tests/Support/WaylandInput.h"

namespace {

/// One session with one window.
class Menus : public HeardMenus {
 public:
  void open(Display& display, const std::string& output) {
    for (const Monitor& monitor : display.monitors()) {
      if (monitor.name == output) session = display.beginMenus(monitor, *this);
    }
    ASSERT_TRUE(session);
  }
  void close() {
    window.reset();
    session.reset();
  }
  void show(PixelRect frame, uint32_t color) {
    if (!window) window = session->makeWindow();
    HeardMenus::show(*window, frame, color, {0, 0, frame.width, frame.height});
  }
  void menuSessionEnded() override {
    HeardMenus::menuSessionEnded();
    close();
  }

  std::unique_ptr<MenuSession> session;
  std::unique_ptr<MenuWindow> window;
};

bool serveUntil(const std::function<bool()>& condition) { return Menus::serveUntil(condition); }

std::unique_ptr<Display> connectTo(const WaylandServer& screen) {
  for (const auto& [name, value] : screen.environment())
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
  return openWaylandDisplay().display;
}

size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(all), end(all)));
}

constexpr uint32_t Red = 0xFF0000;
constexpr uint32_t Green = 0x00FF00;

// Would catch: places that count from the output's corner and not from the desktop's, keys without
// their meaning or their repetition, input that goes on to the bar or does not come at all.
TEST(WaylandMenus, TakeTheInputOfEveryOutput) {
  const WaylandServer screen({{.width = 400, .height = 300}, {.width = 400, .height = 300}});
  WaylandInput input(screen, 800, 300);
  input.move(300, 50);
  const auto display = connectTo(screen);
  Menus menus;
  menus.open(*display, "HEADLESS-2");
  const auto expect = [&](const std::vector<std::string>& lines) {
    EXPECT_TRUE(serveUntil([&] { return menus.heard.size() >= lines.size(); }));
    EXPECT_EQ(menus.heard, lines);
    menus.heard.clear();
  };
  expect({"enter 300,50"});
  input.move(500, 60);
  expect({"leave 300,50", "enter 500,60"});
  input.click(BTN_LEFT);
  input.scroll(15);
  expect({"press 500,60", "release 500,60", "scroll 500,60 by 0,15"});
  input.keyDown(KEY_LEFTSHIFT);
  input.type(KEY_A);
  input.click(BTN_LEFT);
  expect({"down 256 ", "down 256 A shifted", "up 256 A shifted", "press 500,60 shifted",
          "release 500,60 shifted"});
  input.keyUp(KEY_LEFTSHIFT);
  input.keyDown(KEY_DOWN);
  expect({"up 256  shifted", "down 125 "});
  EXPECT_TRUE(serveUntil([&] { return menus.heard.size() > 1; }));
  EXPECT_THAT(menus.heard, testing::Each("down 125  again"));
}

// Would catch: a picture in the place or size of the one before, one at the scale of another
// screen, black where it is clear, and a window that stays when its session is over.
TEST(WaylandMenus, AreSeenWhereTheyStand) {
  const WaylandServer screen({{.width = 600, .height = 300}});
  screen.command("output HEADLESS-1 bg #0000FF solid_color");
  const auto display = connectTo(screen);
  Menus menus;
  menus.open(*display, "HEADLESS-1");
  const auto shows = [&](PixelRect frame, uint32_t color) {
    return serveUntil([&] {
      const ScreenPicture picture = screen.screenshotOf("HEADLESS-1");
      const int right = frame.x + frame.width;
      const int bottom = frame.y + frame.height;
      return picture.at(frame.x, frame.y) == color && picture.at(right - 1, bottom - 1) == color &&
             picture.at(right, bottom) != color && picture.at(frame.x - 1, frame.y - 1) != color;
    });
  };
  menus.show({20, 22, 100, 60}, 0xFF000000 | Red);
  menus.showFrames(*menus.window, 1);
  EXPECT_TRUE(shows({20, 22, 100, 60}, Red));
  menus.show({30, 40, 120, 90}, 0xFF000000 | Green);
  EXPECT_TRUE(shows({30, 40, 120, 90}, Green));
  screen.command("output HEADLESS-1 scale 1.5");
  EXPECT_TRUE(serveUntil([&] { return menus.session->scale() == 1.5; }));
  EXPECT_THAT(menus.heard, testing::Contains("scale"));
  EXPECT_EQ(menus.session->pixelGrid(), 3);
  menus.show({30, 42, 120, 90}, 0xFF000000 | Red);
  EXPECT_TRUE(shows({30, 42, 120, 90}, Red));
  menus.show({30, 42, 120, 90}, 0);
  const auto isBare = [&] { return screen.screenshotOf("HEADLESS-1").at(60, 60) == 0x0000FF; };
  EXPECT_TRUE(serveUntil(isBare));
  menus.show({30, 42, 120, 90}, 0xFF000000 | Red);
  menus.close();
  EXPECT_TRUE(serveUntil(isBare));
}

// Would catch: buffers and keymaps that outlive their menus.
TEST(WaylandMenus, LeaveNothingBehind) {
  const WaylandServer screen({{.width = 400, .height = 300}});
  WaylandInput input(screen, 400, 300);
  const auto display = connectTo(screen);
  Menus menus;
  size_t descriptors = 0;
  for (int opening = 0; opening < 10; ++opening) {
    menus.open(*display, "HEADLESS-1");
    menus.show({20, 22, 100, 60}, 0xFF000000 | Red);
    menus.showFrames(*menus.window, 1);
    menus.heard.clear();
    input.type(KEY_ESC);
    ASSERT_TRUE(serveUntil([&] { return std::ranges::count(menus.heard, "up 53 ") == 1; }));
    menus.close();
    if (opening == 1) descriptors = openDescriptors();
  }
  EXPECT_EQ(openDescriptors(), descriptors);
}

// Would catch: menus that wait for ever on a monitor that has gone, or end with another one.
TEST(WaylandMenus, EndWithTheirOutput) {
  const WaylandServer desk({{.width = 800, .height = 300}});
  const WaylandServer screen(desk, 2);
  const auto unplug = [&](const std::string& output) {
    desk.command("[title=\".*" + output + "\"] kill");
  };
  const auto display = connectTo(screen);
  ASSERT_TRUE(serveUntil([&] { return display->monitors().size() == 2; }));
  Menus menus;
  menus.open(*display, "WL-2");
  EXPECT_EQ(display->beginMenus(display->monitors().front(), menus), nullptr);
  screen.command("create_output");
  ASSERT_TRUE(serveUntil([&] { return display->monitors().size() == 3; }));
  unplug("WL-1");
  ASSERT_TRUE(serveUntil([&] { return display->monitors().size() == 2; }));
  EXPECT_THAT(menus.heard, testing::Not(testing::Contains("ended")));
  unplug("WL-2");
  EXPECT_TRUE(serveUntil([&] { return menus.session == nullptr; }));
  EXPECT_THAT(menus.heard, testing::Contains("ended"));
}

}  // namespace
