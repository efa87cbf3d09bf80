// The program without a display.

#include <gmock/gmock.h>

#include "Tests/Hosts/BarTest.h"
#include "Tests/Support/TestEnvironment.h"

namespace {

using testing::HasSubstr;

const Environment noDisplay{{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}};

FinishedProcess run(const std::vector<std::string>& arguments) {
  std::vector<std::string> command{menuBarProgram().string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runToEnd(command, noDisplay);
}

struct Refusal {
  std::vector<std::string> arguments;
  int status;
  const char* told;  ///< What is wrong and what would be right.
};

// Would catch: an argument that is passed over, and a message that does not help.
TEST(CommandLine, RefusesWhatItCannotUse) {
  const Refusal refusals[] = {
      {{"--loud"}, 2, "\"--loud\"; --help"},
      {{"clock"}, 2, "\"clock\"; --help"},
      {{"--headless"}, 2, "--headless --output DIR"},
      {{"--headless", "--output", "--dark"}, 2, "--output pictures"},
      {{"--headless", "--output", ""}, 2, "--output pictures"},
      {{"--headless", "--output", "out", "--scale"}, 2, "--scale 2"},
      {{"--headless", "--output", "out", "--scale", "0"}, 2, "above 0 and up to 16"},
      {{"--headless", "--output", "out", "--scale", "17"}, 2, "not \"17\""},
      {{"--headless", "--output", "out", "--scale", "2x"}, 2, "not \"2x\""},
      {{"--headless", "--output", "out", "--scale", "nan"}, 2, "not \"nan\""},
      {{"--headless", "--output", "out", "--output-name", "DP-1"}, 2, "--output-name"},
      {{"--scale", "2"}, 2, "--headless --output DIR"},
      {{"--output", "out"}, 2, "--headless --output DIR"},
      {{"--output-name"}, 2, "--output-name DP-1"},
      {{"--bundle"}, 2, "--bundle Name.bundle"},
      {{"--headless", "--output", "out", "--bundle", "Missing.bundle"}, 1, "Missing.so"},
      {{"--headless", "--output", "/dev/null/out", "--bundle", testBundle()}, 1, "/dev/null/out"},
      {{}, 1, "--headless --output DIR"},
  };
  for (const Refusal& tested : refusals) {
    const auto done = run(tested.arguments);
    SCOPED_TRACE(testing::PrintToString(tested.arguments));
    EXPECT_EQ(done.status, tested.status);
    EXPECT_EQ(done.output, "");
    EXPECT_THAT(done.errors, testing::MatchesRegex("velmora-menubar: [^\n]*\n"));
    EXPECT_THAT(done.errors, HasSubstr(tested.told));
  }
}

// Would catch: a host that goes on with the extra that it did not get.
TEST(CommandLine, RefusesABundleWithoutAnExtra) {
  const auto done = runToEnd({menuBarProgram().string(), "--headless", "--output",
                              testFolder().string(), "--bundle", testBundle().string()},
                             {{"TEST_EXTRA_IS_MISSING", "1"}});
  EXPECT_EQ(done.status, 1);
  EXPECT_THAT(done.errors, testing::MatchesRegex("velmora-menubar: [^\n]*makes no extra\n"));
}

// Would catch: an option that --help has forgotten.
TEST(CommandLine, TellsItsOptionsAndVersion) {
  const auto help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.errors, "");
  for (const char* option : {"--output-name", "--dark", "--bundle", "--headless", "--output DIR",
                             "--scale", "--help", "--version"}) {
    EXPECT_THAT(help.output, HasSubstr(option));
  }
  const auto version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_THAT(version.output, testing::MatchesRegex("velmora-menubar [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

// Would catch: a picture of another size, of the wrong appearance, or in another place than told.
TEST(CommandLine, DrawsIntoAFile) {
  struct Picture {
    std::vector<std::string> options;
    const char* name;
    int scale;
    uint32_t bar;
  };
  const Picture pictures[] = {
      {{}, "menubar-light@1x.png", 1, colors::LightBar},
      {{"--dark", "--scale", "2"}, "menubar-dark@2x.png", 2, colors::DarkBar},
  };
  for (const Picture& tested : pictures) {
    SCOPED_TRACE(tested.name);
    const auto folder = testFolder() / "made" / "here";
    std::vector<std::string> arguments{"--headless", "--output", folder.string(), "--bundle",
                                       testBundle().string()};
    arguments.insert(arguments.end(), tested.options.begin(), tested.options.end());
    const auto done = run(arguments);
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.errors, "");
    // The test's item draws no words.
    EXPECT_EQ(done.output, "\n" + (folder / tested.name).string() + "\n");
    // The item's 60 points stand between two margins.
    const ScreenPicture picture = pictureFromPng(folder / tested.name);
    EXPECT_EQ(picture.width, 76 * tested.scale);
    EXPECT_EQ(picture.height, 22 * tested.scale);
    EXPECT_EQ(itemFault(picture, {.scale = tested.scale, .bar = tested.bar}), "");
  }
}

}  // namespace
