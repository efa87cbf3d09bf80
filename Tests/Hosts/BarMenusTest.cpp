// Menus of the bar's item on real displays, with a real pointer and real keys.

#include <linux/input-event-codes.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/Notifications/RemoteCommands.h"
#include "Tests/Hosts/BarTest.h"
#include "Tests/Support/WaylandInput.h"

namespace {

constexpr int Width = 640;
constexpr int Height = 480;
// The menu is 160 points wide and kept 4 within the screen; its rows are 20 points high.
constexpr int MenuLeft = Width - 164;
constexpr int MenuTop = 22;
constexpr uint32_t LightRow = 0xE6E6E6;
constexpr uint32_t Highlight = 0x0000FF;

int middleOfRow(int row) { return MenuTop + 20 * row - 10; }

/// A screen with a hand at it.
struct Desk {
  virtual ~Desk() = default;
  virtual const DisplayServer& screen() const = 0;
  /// The monitor with the bar.
  virtual ScreenPicture monitor() const { return screen().screenshot(); }
  virtual std::vector<std::string> barArguments() const { return {}; }
  /// Points of that monitor.
  virtual void move(int x, int y) = 0;
  virtual void press() = 0;
  virtual void release() = 0;
  virtual void wheelDown() = 0;
  virtual void key(const std::string& name) = 0;
  virtual void crash() = 0;
};

struct X11Desk : Desk {
  const DisplayServer& screen() const override { return server; }
  void move(int x, int y) override {
    server.input({"mousemove", std::to_string(x), std::to_string(y)});
  }
  void press() override { server.input({"mousedown", "1"}); }
  void release() override { server.input({"mouseup", "1"}); }
  void wheelDown() override { server.input({"click", "--repeat", "4", "5"}); }
  void key(const std::string& name) override { server.input({"key", name}); }
  void crash() override { server.crash(); }

  X11Server server{Width, Height};
};

/// Alone, or as the right one of two monitors, which is lower and has another scale.
struct WaylandDesk : Desk {
  explicit WaylandDesk(int leftWidth)
      : left(leftWidth),
        server(leftWidth == 0 ? std::vector<WaylandServer::Output>{Monitor}
                              : std::vector<WaylandServer::Output>{{.width = 2 * leftWidth,
                                                                    .height = 1200,
                                                                    .scale = 2},
                                                                   Monitor}),
        input(server, static_cast<uint32_t>(left) + Width, leftWidth == 0 ? Height : 600) {}

  const DisplayServer& screen() const override { return server; }
  ScreenPicture monitor() const override { return server.screenshotOf(name()); }
  std::vector<std::string> barArguments() const override { return {"--output-name", name()}; }
  void move(int x, int y) override { input.move(left + x, y); }
  void press() override { input.press(BTN_LEFT); }
  void release() override { input.release(BTN_LEFT); }
  void wheelDown() override { input.scroll(60); }
  void key(const std::string& name) override {
    static const std::map<std::string, uint32_t> Codes{
        {"Up", KEY_UP}, {"Left", KEY_LEFT}, {"Return", KEY_ENTER}, {"Escape", KEY_ESC}};
    input.type(Codes.at(name));
  }
  void crash() override { server.crash(); }

  static constexpr WaylandServer::Output Monitor = {.width = Width, .height = Height};
  std::string name() const { return left == 0 ? "HEADLESS-1" : "HEADLESS-2"; }

  int left;
  WaylandServer server;
  WaylandInput input;
};

class BarMenus : public BarTest, public testing::WithParamInterface<const char*> {
 protected:
  void open(int rows) {
    desk_ = makeDesk();
    start(desk_->screen(), desk_->barArguments(), {{"TEST_EXTRA_MENU", std::to_string(rows)}});
    expectItem([&] { return desk_->monitor(); }, {});
    ground_ = desk_->monitor().at(100, 300);
    click(600, 10);
    EXPECT_TRUE(shows(MenuLeft + 4, middleOfRow(1), LightRow));
  }

  static std::unique_ptr<Desk> makeDesk() {
    if (GetParam() == std::string("X11")) return std::make_unique<X11Desk>();
    return std::make_unique<WaylandDesk>(GetParam() == std::string("Wayland") ? 0 : 960);
  }

  void click(int x, int y) {
    desk_->move(x, y);
    desk_->press();
    desk_->release();
  }

  bool shows(int x, int y, uint32_t color) {
    return waitUntil([&] { return desk_->monitor().at(x, y) == color; });
  }
  bool isClosed() { return shows(MenuLeft + 4, middleOfRow(1), ground_); }

  /// Whether the item has told of `line` since the last call, within a while.
  bool told(const std::string& line) {
    return waitUntil([&] {
      const std::vector<std::string> log = itemLog();
      const auto found = std::find(log.begin() + static_cast<ptrdiff_t>(read_), log.end(), line);
      if (found == log.end()) return false;
      read_ = static_cast<size_t>(found - log.begin()) + 1;
      return true;
    });
  }

  std::unique_ptr<Desk> desk_;
  uint32_t ground_ = 0;  ///< Of the desktop.
  size_t read_ = 0;
};

// Would catch: a menu that does not open, stand, light up, act or close as a hand expects.
TEST_P(BarMenus, FollowPointerAndKeys) {
  open(5);
  EXPECT_TRUE(told("open"));
  EXPECT_TRUE(shows(588, 4, colors::Selected));
  desk_->move(MenuLeft + 20, middleOfRow(4));
  EXPECT_TRUE(told("light:Row 4"));
  EXPECT_TRUE(shows(Width - 8, middleOfRow(4), Highlight));
  EXPECT_TRUE(shows(Width - 8, middleOfRow(5), LightRow));
  desk_->key("Up");
  desk_->key("Up");
  EXPECT_TRUE(told("light:Row 2"));
  EXPECT_TRUE(shows(Width - 8, middleOfRow(4), 0xBFBFBF));
  // A submenu finds no room at the right; a pull from the bar into a row of it chooses that.
  desk_->key("Return");
  EXPECT_TRUE(shows(MenuLeft - 8, middleOfRow(2), Highlight));
  click(MenuLeft - 40, middleOfRow(3));
  EXPECT_TRUE(told("close"));
  EXPECT_TRUE(told("act:Sub 2"));
  EXPECT_TRUE(isClosed());
  EXPECT_TRUE(shows(588, 4, colors::Body));
  desk_->move(600, 10);
  desk_->press();
  EXPECT_TRUE(told("open"));
  desk_->move(600, 40);
  desk_->move(MenuLeft + 20, middleOfRow(1));
  EXPECT_TRUE(told("light:Row 1"));
  desk_->release();
  EXPECT_TRUE(told("act:Row 1"));
  EXPECT_TRUE(isClosed()) << "a compositor that is taking windows away loses a click";
  // The button acts and the menu stays; out of it nothing happens.
  click(600, 10);
  EXPECT_TRUE(shows(MenuLeft + 4, middleOfRow(1), LightRow));
  click(Width - 24, middleOfRow(3));
  EXPECT_TRUE(told("press"));
  desk_->move(Width - 24, middleOfRow(3));
  desk_->press();
  desk_->move(100, 300);
  desk_->release();
  EXPECT_TRUE(shows(MenuLeft + 4, middleOfRow(1), LightRow));
  desk_->key("Escape");
  EXPECT_TRUE(told("close"));
  EXPECT_TRUE(isClosed());
  click(600, 10);
  EXPECT_TRUE(shows(MenuLeft + 4, middleOfRow(1), LightRow));
  click(100, 300);
  EXPECT_TRUE(told("close"));
  EXPECT_TRUE(isClosed());
  EXPECT_THAT(itemLog(), testing::Contains("press").Times(1));
}

// Would catch: an open menu that does not follow its rows, or leaves the screen.
TEST_P(BarMenus, GrowAndShrinkWhileTheyAreOpen) {
  open(3);
  const int free = middleOfRow(4);
  EXPECT_TRUE(shows(MenuLeft + 4, free + 40, ground_));
  command({{"rows", "40"}});
  EXPECT_TRUE(shows(MenuLeft + 4, free, 0xBFBFBF));
  // Higher than the screen: an arrow at the end, and the wheel.
  EXPECT_TRUE(shows(MenuLeft + 4, Height - 8, 0xFFFFFF));
  EXPECT_NE(desk_->monitor().at(MenuLeft + 4, Height - 2), 0xFFFFFFU);
  desk_->move(MenuLeft + 20, middleOfRow(4));
  EXPECT_TRUE(told("light:Row 4"));
  desk_->wheelDown();
  EXPECT_TRUE(told("light:Row 7"));
  command({{"rows", "2"}});
  EXPECT_TRUE(shows(MenuLeft + 4, free, ground_));
  command({{"width", "300"}});
  EXPECT_TRUE(shows(Width - 300, middleOfRow(1), LightRow));
  command({{"width", "160"}});
  EXPECT_TRUE(shows(Width - 300, middleOfRow(1), ground_));
  command({{"rows", "0"}});
  EXPECT_TRUE(isClosed());
  desk_->key("Escape");
  EXPECT_TRUE(told("close"));
}

// Would catch: commands from elsewhere without effect or with a wrong answer, and a bar that hangs,
// or says more than one word, when its display goes under a menu.
TEST_P(BarMenus, ObeyCommandsAndEndWithTheDisplay) {
  open(3);
  EXPECT_FALSE(RemoteCommands::perform("MenuBar", "toggle"));
  EXPECT_TRUE(isClosed());
  EXPECT_TRUE(RemoteCommands::perform("MenuBar", "toggle"));
  desk_->crash();
  EXPECT_EQ(bar().waitForExit(), 0);
  EXPECT_EQ(std::ranges::count(bar().errors(), '\n'), 1) << bar().errors();
}

INSTANTIATE_TEST_SUITE_P(, BarMenus, testing::Values("X11", "Wayland", "TwoMonitors"),
                         [](const auto& tested) { return tested.param; });

}  // namespace
