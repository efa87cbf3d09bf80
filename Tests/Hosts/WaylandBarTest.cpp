#include <gmock/gmock.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "Platform/Foundation/Notifications/RemoteCommands.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Hosts/BarTest.h"
#include "Tests/Support/TestEnvironment.h"

namespace {

class WaylandBar : public BarTest {
 protected:
  static void expectOn(const WaylandServer& screen, const std::string& output,
                       const ExpectedItem& expected = {}) {
    SCOPED_TRACE(output);
    expectItem([&] { return screen.screenshotOf(output); }, expected);
  }
};

/// Whether an output shows nothing of the bar.
bool isBare(const WaylandServer& screen, const std::string& output) {
  const ScreenPicture picture = screen.screenshotOf(output);
  return picture.width > 0 && picture.at(0, 5) != colors::LightBar;
}

/// The first column in which the screen differs from the item as it was drawn without one, looked
/// for along the middle of the bar, where no edge of a fractional row lies; none if there is none.
std::optional<int> differenceOfItems(const ScreenPicture& screen, const ScreenPicture& drawn,
                                     double scale) {
  constexpr int MarginPoints = 8;
  const auto margin = static_cast<int>(std::ceil(MarginPoints * scale));
  const int row = static_cast<int>(11 * scale);
  const auto firstInk = [row](const ScreenPicture& picture) {
    int column = 0;
    while (column < picture.width && picture.at(column, row) == picture.at(0, row))
      ++column;
    return column;
  };
  const int inPicture = firstInk(drawn);
  const int further = firstInk(screen) - inPicture;
  for (int column = inPicture; column < drawn.width - margin; ++column) {
    const bool isSame = column + further < screen.width &&
                        screen.at(column + further, row) == drawn.at(column, row);
    if (!isSame) return column;
  }
  return std::nullopt;
}

// Would catch: a monitor told apart by its product, which these two share, and a bar of one
// monitor's scale on the other.
TEST_F(WaylandBar, GoesToTheOutputOfTheName) {
  const WaylandServer screen(
      {{.width = 640, .height = 120}, {.width = 900, .height = 160, .scale = 2}});
  for (const auto& [output, other, scale] :
       {std::tuple{"HEADLESS-1", "HEADLESS-2", 1}, {"HEADLESS-2", "HEADLESS-1", 2}}) {
    start(screen, {"--output-name", output});
    expectOn(screen, output, {.scale = scale});
    EXPECT_TRUE(isBare(screen, other));
  }
  start(screen, {"--output-name", "eDP-1"});
  expectOn(screen, "HEADLESS-1");
  EXPECT_EQ(bar().errors(),
            "velmora: no monitor has the name \"eDP-1\" (there are: HEADLESS-1, HEADLESS-2); the "
            "bar waits for it on HEADLESS-1\n");
}

// Would catch: a picture drawn at one scale and shown at another, which is soft. The bar drawn
// without a display tells what each pixel should be.
TEST_F(WaylandBar, IsCrispAtFractionalScales) {
  for (const char* scale : {"1.25", "1.5", "1.75"}) {
    SCOPED_TRACE(scale);
    const WaylandServer screen({{.width = 640, .height = 120}});
    screen.command(std::string("output HEADLESS-1 scale ") + scale);
    start(screen);
    const auto folder = testFolder() / scale;
    runToEnd({menuBarProgram().string(), "--headless", "--output", folder.string(), "--scale",
              scale, "--bundle", testBundle().string()});
    const ScreenPicture drawn =
        pictureFromPng(folder / (std::string("menubar-light@") + scale + "x.png"));
    ASSERT_GT(drawn.width, 0);
    std::optional<int> fault;
    EXPECT_TRUE(waitUntil([&] {
      fault = differenceOfItems(screen.screenshotOf("HEADLESS-1"), drawn, std::stod(scale));
      return !fault;
    })) << fault.value_or(0);
  }
}

// Would catch: windows that are laid out under the bar, a bar stretched to its old width, and one
// drawn at its old scale.
TEST_F(WaylandBar, FollowsTheOutputsModeAndScale) {
  const WaylandServer screen({{.width = 640, .height = 120}});
  start(screen);
  expectOn(screen, "HEADLESS-1");
  const auto workspaces = nlohmann::json::parse(screen.query("get_workspaces"));
  const auto& area = workspaces.at(0).at("rect");
  EXPECT_EQ(area.at("y"), 22);
  EXPECT_EQ(area.at("height"), 98);
  screen.command("output HEADLESS-1 resolution 900x160");
  expectOn(screen, "HEADLESS-1");
  screen.command("output HEADLESS-1 scale 2");
  expectOn(screen, "HEADLESS-1", {.scale = 2});
}

// Would catch: a bar that ends or stays away when its monitor is unplugged, one that does not come
// back to the monitor that was asked for, and a menu that is told to be open on none.
TEST_F(WaylandBar, MovesWhenItsOutputGoes) {
  const WaylandServer desk({{.width = 1280, .height = 160}});
  const WaylandServer screen(desk, 2);
  const auto unplug = [&](const std::string& output) {
    desk.command("[title=\".*" + output + "\"] kill");
  };
  start(screen, {"--output-name", "WL-2"});
  expectOn(screen, "WL-2");
  unplug("WL-2");
  expectOn(screen, "WL-1");
  screen.command("create_output");
  unplug("WL-1");
  expectOn(screen, "WL-3");
  unplug("WL-3");
  ASSERT_TRUE(waitUntil([&] { return screen.screenshotOf("WL-3").width == 0; }));
  EXPECT_FALSE(RemoteCommands::perform("MenuBar", "open")) << "without a monitor";
  screen.command("create_output");
  expectOn(screen, "WL-4");
  EXPECT_EQ(bar().exitStatus(), std::nullopt);
}

// Would catch: a compositor that composes its screen each second for a clock that shows minutes.
TEST_F(WaylandBar, SendsNoPictureThatIsTheSame) {
  constexpr size_t Drawings = 10;
  const WaylandServer screen({{.width = 640, .height = 120}});
  start(screen, {}, {{"WAYLAND_DEBUG", "client"}});
  expectOn(screen, "HEADLESS-1");
  const auto pictures = [this] {
    return componentsSeparatedByString(bar().errors(), ".attach(wl_buffer").size() - 1;
  };
  const size_t before = pictures();
  ASSERT_GT(before, 0U);
  for (size_t count = 1; count <= Drawings; ++count) {
    command({{"mark", "drawn"}});
    ASSERT_TRUE(waitUntil([&] { return itemLog().size() == count; }));
  }
  command({{"length", "61"}});
  expectOn(screen, "HEADLESS-1", {.width = 61});
  EXPECT_GT(pictures(), before);
  // The compositor may have asked for one more at the start.
  EXPECT_LE(pictures(), before + 2);
}

// Would catch: a window in the middle of the screen, as a toplevel there would be, and a second
// word about it.
TEST_F(WaylandBar, FallsBackToX11WithoutLayerShell) {
  const Environment session{{"WAYLAND_DISPLAY", "plain"}};
  const ChildProcess compositor({"weston", "--backend=headless-backend.so", "--socket=plain"},
                                session);
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(testFolder() / "runtime/plain"); }));
  const FinishedProcess refused = runToEnd({menuBarProgram().string()}, session);
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.errors,
              testing::MatchesRegex("velmora-menubar: [^\n]*no layer-shell[^\n]*\n"));

  const X11Server screen(640, 120);
  start(screen, {"--dark"}, session);
  expectItem([&] { return screen.screenshot(); }, {.bar = colors::DarkBar});
  EXPECT_THAT(bar().errors(), testing::MatchesRegex("velmora: [^\n]*no layer-shell[^\n]*\n"));
}

}  // namespace
