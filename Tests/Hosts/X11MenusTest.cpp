// What menus get from an X11 display: windows and input, through the host's own interface.

#include <gmock/gmock.h>
#include <stdlib.h>

#include <algorithm>
#include <utility>

#include "Hosts/X11/X11Display.h"
#include "Tests/Hosts/HeardMenus.h"
#include "Tests/Support/DisplayServers.h"

namespace {

using testing::ElementsAre;

/// Two monitors side by side; the session is on the right one.
class X11Menus : public testing::Test, protected HeardMenus {
 protected:
  static constexpr int Width = 800;
  static constexpr int Height = 500;
  static constexpr int Left = 200;
  static constexpr uint32_t Background = 0;

  X11Menus() {
    screen_.setMonitors({"--setmonitor", "LEFT", "200/80x500/130+0+0", "screen"});
    screen_.setMonitors({"--setmonitor", "RIGHT", "600/150x500/130+200+0", "none"});
    setenv("DISPLAY", screen_.environment().at("DISPLAY")->c_str(), 1);
    display_ = openX11Display();
  }

  std::unique_ptr<MenuSession> begin() {
    const auto monitors = display_->monitors();
    return display_->beginMenus(*std::ranges::find(monitors, "RIGHT", &Monitor::name), *this);
  }

  /// What has been heard since the last call, once there is that much; without where the pointer
  /// was at first.
  std::vector<std::string> heardLines(size_t count) {
    EXPECT_TRUE(serveUntil([&] {
      std::erase_if(heard, [](const std::string& line) { return line.starts_with("enter"); });
      return heard.size() >= count;
    }));
    return std::exchange(heard, {});
  }

  X11Server screen_{Width, Height};
  std::unique_ptr<Display> display_;
};

// Would catch: places in pixels or from the monitor's corner, releases of a wheel as scrolling, a
// held key as many strokes, modifiers unheard, and input that is not given back.
TEST_F(X11Menus, TakesAllInputWhileTheyAreOpen) {
  screen_.setResources("Xft.dpi: 192\n");
  ASSERT_TRUE(serveUntil([&] { return display_->monitors()[0].scale == 2; }));
  ASSERT_TRUE(screen_.grab());
  EXPECT_EQ(begin(), nullptr);
  screen_.ungrab();
  auto session = begin();
  ASSERT_NE(session, nullptr);
  EXPECT_FALSE(screen_.grab());
  screen_.input(
      {"mousemove", "300", "100", "click", "3", "click", "--repeat", "2", "5", "click", "6"});
  EXPECT_THAT(heardLines(6),
              ElementsAre("move 150,50", "press 150,50", "release 150,50", "scroll 150,50 by 0,15",
                          "scroll 150,50 by 0,15", "scroll 150,50 by -15,0"));
  screen_.input(
      {"key", "Down", "keydown", "Shift_L", "key", "g", "click", "1", "keyup", "Shift_L"});
  EXPECT_THAT(heardLines(8), ElementsAre("down 125 ", "up 125 ", "down 256 ", "down 256 G shifted",
                                         "up 256 G shifted", "press 150,50 shifted",
                                         "release 150,50 shifted", "up 256  shifted"));
  screen_.input({"keydown", "g"});
  EXPECT_THAT(heardLines(2), ElementsAre("down 256 g", "down 256 g again"));
  session.reset();
  EXPECT_TRUE(screen_.grab());
}

// Would catch: menus on a monitor that is gone, at a scale that is not the desktop's, a session
// that keeps the input when it cannot show anything, and one that keeps the screen from being
// locked.
TEST_F(X11Menus, EndWithTheirMonitorAndBeforeALock) {
  auto session = begin();
  ASSERT_NE(session, nullptr);
  screen_.setResources("Xft.dpi: 144\n");
  EXPECT_THAT(heardLines(1), ElementsAre("scale"));
  EXPECT_EQ(session->scale(), 1.5);
  screen_.setMonitors({"--delmonitor", "RIGHT"});
  EXPECT_THAT(heardLines(1), ElementsAre("ended"));
  EXPECT_TRUE(screen_.grab());
  screen_.ungrab();
  session.reset();
  screen_.setMonitors({"--setmonitor", "RIGHT", "600/150x500/130+200+0", "none"});
  ASSERT_TRUE(serveUntil([&] { return display_->monitors().size() == 2; }));
  session = begin();
  runToEnd({"xset", "s", "activate"}, screen_.environment());
  EXPECT_THAT(heardLines(1), ElementsAre("ended"));
}

// Would catch: a window at the wrong monitor, a picture larger than a request cut off, remains of
// the picture before, windows that the server refuses where one program mixes them, and more frames
// than a display shows.
TEST_F(X11Menus, ShowTheirPictures) {
  struct Case {
    PixelRect frame;
    uint32_t color;     // Of the new picture, 0xAARRGGBB.
    PixelRect changed;  // Elsewhere the one before stays.
    uint32_t firstRow;
    uint32_t lastRow;
  };
  const Case cases[] = {
      {{20, 30, 500, 400}, 0xFF3070C0, {}, 0x3070C0, 0x3070C0},  // 800000 bytes.
      {{60, 10, 100, 450}, 0xFF102030, {}, 0x102030, 0x102030},
      {{0, 40, 100, 450}, 0xFF405060, {0, 449, 100, 1}, 0x102030, 0x405060},
  };
  for (const bool isComposited : {false, true}) {
    if (isComposited) screen_.claimSelection("_NET_WM_CM_S0");
    auto session = begin();
    ASSERT_NE(session, nullptr);
    EXPECT_EQ(session->isComposited(), isComposited);
    auto window = session->makeWindow();
    for (const Case& tested : cases) {
      const PixelRect& frame = tested.frame;
      show(*window, frame, tested.color, tested.changed);
      const auto expected = [&](int x, int y) -> uint32_t {
        const bool isInside = x >= Left + frame.x && x < Left + frame.x + frame.width &&
                              y >= frame.y && y < frame.y + frame.height;
        return !isInside                         ? Background
               : y == frame.y + frame.height - 1 ? tested.lastRow
                                                 : tested.firstRow;
      };
      EXPECT_TRUE(waitUntil([&] {
        const ScreenPicture picture = screen_.screenshot();
        for (int y = 0; y < Height; ++y) {
          for (int x = 0; x < Width; ++x) {
            if (picture.at(x, y) != expected(x, y)) return false;
          }
        }
        return true;
      })) << tested.color;
    }
    const int64_t start = NSRunLoop::mainRunLoop().now();
    showFrames(*window, 5);
    EXPECT_GE(NSRunLoop::mainRunLoop().now() - start, 4 * 16'000'000);
    window.reset();
    session.reset();
  }
}

}  // namespace
