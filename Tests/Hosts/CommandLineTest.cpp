// The program without a display.

#include <gmock/gmock.h>

#include "Tests/Hosts/BarTest.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Support/Transcript.h"

namespace {

using testing::HasSubstr;

FinishedProcess run(std::vector<std::string> arguments, const Environment& environment = {}) {
  arguments.insert(arguments.begin(), menuBarProgram().string());
  return runToEnd(arguments, environment);
}

// Would catch: an argument that is passed over, a message that does not help, and a host that goes
// on with the extra that it did not get.
TEST(CommandLine, RefusesWhatItCannotUse) {
  expectTranscript(VELMORA_SOURCE_DIR "/Tests/Hosts/refusals.txt", menuBarProgram());
  expectComplaint(run({"--headless", "--output", "/dev/null/out", "--bundle", testBundle()}),
                  menuBarProgram(), 1, "/dev/null/out");
  expectComplaint(run({"--headless", "--output", testFolder(), "--bundle", testBundle()},
                      {{"TEST_EXTRA_IS_MISSING", "1"}}),
                  menuBarProgram(), 1, "makes no extra\n");
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
