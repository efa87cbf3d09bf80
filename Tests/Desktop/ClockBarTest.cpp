// The real clock in the real bar, on screens of the test's own.

#include <gtest/gtest.h>
#include <signal.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <vector>

#include "Tests/Desktop/DesktopFixture.h"
#include "Tests/Support/DisplayServers.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

const fs::path Programs = fs::path(VELMORA_BINARY_DIR) / "bin";

double wallClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The bar's own rows without its lower hairline.
constexpr int BarRows = 20;

std::set<int> columnsWhere(const ScreenPicture& picture, const auto& isDifferent) {
  std::set<int> columns;
  for (int row = 0; row < BarRows; ++row) {
    for (int column = 0; column < picture.width; ++column) {
      if (isDifferent(column, row)) columns.insert(column);
    }
  }
  return columns;
}

std::set<int> inkOf(const ScreenPicture& picture) {
  const uint32_t bar = picture.at(1, 1);
  return columnsWhere(picture, [&](int column, int row) { return picture.at(column, row) != bar; });
}

class ClockBar : public testing::Test {
 protected:
  void start(const DisplayServer& screen) {
    screen_ = &screen;
    bar_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{(Programs / "velmora-menubar").string()}, screen.environment());
    EXPECT_TRUE(waitUntil([&] { return inkOf(screen.screenshot()).size() > 10; }))
        << bar_->errors();
  }

  static void timectl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), (Programs / "velmora-timectl").string());
    const FinishedProcess finished = runToEnd(arguments);
    EXPECT_EQ(finished.status, 0) << finished.errors;
  }

  static void write(const std::string& key, const std::string& json) {
    timectl({"defaults", "write", "--force", key, json});
  }

  /// A picture with the moment by which it was taken.
  struct Frame {
    ScreenPicture picture;
    double moment;
  };

  /// What the screen shows for some seconds, each picture once in a row.
  std::vector<Frame> watch(double seconds) const {
    std::vector<Frame> frames;
    const double end = wallClock() + seconds;
    while (wallClock() < end) {
      ScreenPicture picture = screen_->screenshot();
      const bool isNew = frames.empty() || frames.back().picture.pixels != picture.pixels;
      if (isNew) frames.push_back({std::move(picture), wallClock()});
    }
    return frames;
  }

  DesktopFixture desktop_;
  const DisplayServer* screen_ = nullptr;
  std::unique_ptr<ChildProcess> bar_;
};

TEST_F(ClockBar, ShowsEachSecondOnceOnWaylandAtScale2) {
  const WaylandServer screen({{800, 200, 2}});
  write("Time_MenubarFormat", R"(["HH",":","mm",":","ss"])");
  start(screen);
  const std::vector<Frame> frames = watch(5.2);
  EXPECT_GE(frames.size(), 5U);
  EXPECT_LE(frames.size(), 7U);
  std::set<std::vector<uint32_t>> pictures;
  for (const Frame& frame : frames) {
    EXPECT_TRUE(pictures.insert(frame.picture.pixels).second) << "a second came twice";
    const bool isFirst = pictures.size() == 1;
    EXPECT_LT(isFirst ? 0 : frame.moment - std::floor(frame.moment), 0.5) << "a second came late";
  }
}

TEST_F(ClockBar, BlinksTheSeparatorAloneWithinItsPlace) {
  const X11Server screen(500, 60);
  write("Time_MenubarFormat", R"(["HH","':'","mm"])");
  write("Time_MenubarFlashSeperators", "1");
  // Two phases of one minute are compared.
  waitUntil([] { return std::fmod(wallClock(), 60) < 54; });
  start(screen);
  const std::vector<Frame> frames = watch(4.2);
  ASSERT_GE(frames.size(), 4U);
  for (size_t index = 2; index < frames.size(); ++index) {
    EXPECT_EQ(frames[index].picture.pixels, frames[index - 2].picture.pixels);
  }
  const ScreenPicture& picture = frames[0].picture;
  const std::set<int> ink = inkOf(picture);
  const std::set<int> blink = columnsWhere(picture, [&](int column, int row) {
    return picture.at(column, row) != frames[1].picture.at(column, row);
  });
  ASSERT_GE(blink.size(), 1U);
  EXPECT_LE(blink.size(), 4U) << "a colon of 13 points";
  EXPECT_GT(*blink.begin(), *ink.begin() + 8);
  EXPECT_LT(*blink.rbegin(), *ink.rbegin() - 8);
}

TEST_F(ClockBar, FollowsAChangedFormatAndItsDeletion) {
  const X11Server screen(700, 60);
  write("Time_MenubarFormat", R"(["HH",":","mm"])");
  start(screen);
  const size_t before = inkOf(screen.screenshot()).size();
  const double changed = wallClock();
  write("Time_MenubarFormat",
        R"(["EEEE","' '","d","' '","MMMM","'  '","___ICON__RED___","'  '","HH","':'","mm"])");
  EXPECT_TRUE(waitUntil([&] { return inkOf(screen.screenshot()).size() > 3 * before; }));
  EXPECT_LT(wallClock() - changed, 1.5);
  // The leaf's head is the one red thing in the bar.
  EXPECT_GT(std::ranges::count(screen.screenshot().pixels, 0xFF4141U), 40);
  timectl({"defaults", "delete", "Time_MenubarFormat"});
  EXPECT_TRUE(waitUntil([&] { return inkOf(screen.screenshot()).size() < 3 * before; }));
  // What the text is drawn with is kept until its setting changes.
  write("Time_TextColor", "\"1 0 0 1\"");
  EXPECT_TRUE(waitUntil([&] {
    return std::ranges::any_of(screen.screenshot().pixels, [](uint32_t pixel) {
      return (pixel >> 16) > 0xE0 && (pixel & 0xFF) < 0x60;
    });
  }));
}

// Whatever stands in a setting, the bar goes on, and shows the clock again when it is mended.
TEST_F(ClockBar, OutlivesBadSettings) {
  const X11Server screen(500, 60);
  start(screen);
  const auto width = [&] { return static_cast<int>(inkOf(screen.screenshot()).size()); };
  const int good = width();
  const struct {
    const char* key;
    const char* json;
    int reports;  ///< Lines of error that are ours to write.
  } cases[] = {{"Time_MenubarFormat", "[1,2]", 1},
               {"Time_MenubarFormat", "[\"HH\",\"'\"]", 1},
               {"Time_MenubarFormat", "[\"HH\",\"ii\"]", 0},
               {"Time_TextColor", "\"1 1 1\"", 0},
               {"Time_TextSize", "-5", 0}};
  for (const auto& [key, json, reports] : cases) {
    SCOPED_TRACE(json);
    const size_t quiet = bar_->errors().size();
    write(key, json);
    watch(2.2);
    EXPECT_FALSE(bar_->exitStatus().has_value());
    const std::string report = bar_->errors().substr(quiet);
    EXPECT_EQ(std::ranges::count(report, '\n'), reports) << report;
    timectl({"defaults", "delete", key});
    EXPECT_TRUE(waitUntil([&] { return std::abs(width() - good) <= 12; }));
  }
  bar_->sendSignal(SIGTERM);
  EXPECT_EQ(bar_->waitForExit(), 0);
}

}  // namespace
