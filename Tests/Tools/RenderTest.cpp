// The pictures that the program draws.

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

struct Picture {
  std::string file;
  double width = 0;
  double height = 0;
};

/// Draws a surface and checks that the answer tells the size that the file has.
Picture render(std::vector<std::string> globals, const std::vector<std::string>& options,
               const char* surface = "menubar") {
  const std::string path = testFolder() / "clock.png";
  globals.insert(globals.end(), {"--now", "2026-11-21T15:04:05Z", "render", surface, "-o", path});
  globals.insert(globals.end(), options.begin(), options.end());
  const auto told = answer(globals);
  const auto image = NSImage::imageWithContentsOfFile(path);
  if (image == nullptr) throw std::runtime_error("no picture");
  const auto [width, height] = image->size();
  EXPECT_EQ(told, (nlohmann::json{{"file", path}, {"width", width}, {"height", height}}));
  return {readFile(path), width, height};
}

TEST(Render, FollowsScaleThemeAndSettings) {
  const Picture light = render({}, {});
  EXPECT_EQ(light.height, 22);
  EXPECT_GT(light.width, 20);
  EXPECT_EQ(render({}, {}).file, light.file) << "the same moment gives the same picture";

  const Picture twice = render({}, {"--scale", "2"});
  EXPECT_EQ(twice.width, light.width * 2);
  EXPECT_EQ(twice.height, 44);
  EXPECT_EQ(render({}, {"--scale", "1.25"}).height, 28) << "27.5, rounded up";

  const Picture dark = render({}, {"--dark"});
  EXPECT_EQ(dark.width, light.width);
  EXPECT_NE(dark.file, light.file);
  EXPECT_EQ(render({"--dark"}, {}).file, dark.file) << "either place of --dark will do";

  EXPECT_EQ(render({"--set", "Time_MenubarFormat=[]"}, {}).width, 4);
  EXPECT_EQ(render({"--set", R"(Time_MenubarFormat=["___ICON__RED___"])"}, {}).width, 19);
  EXPECT_NE(render({"--set", "Time_TextColor=\"1 0 0 1\""}, {}).file, light.file);
}

// The month and the large row of the Moon between their fillers, the picture and the phases of its
// menu, and the map and the figures of Tokyo's, with room for the shadow around them.
TEST(Render, DrawsTheDropdownAndItsSubmenus) {
  struct Case {
    const char* surface;
    double width;
    double height;
    std::vector<std::string> city = {};
  };
  for (const Case& test :
       {Case{"dropdown", 280, 247 + 2 + 3 + 42 + 5}, Case{"moon-menu", 320, 160 + 4 + 190 + 3},
        Case{"city-menu", 320, 160 + 305, {"--city", "1850147"}}}) {
    SCOPED_TRACE(test.surface);
    const auto draw = [&](std::vector<std::string> globals, const char* scale) {
      globals.insert(globals.end(), {"--set", "Time_Cities=[]"});
      std::vector<std::string> options = test.city;
      options.insert(options.end(), {"--scale", scale});
      return render(globals, options, test.surface);
    };
    const Picture light = draw({}, "1");
    const Picture twice = draw({}, "2");
    EXPECT_EQ(twice.width - 2 * test.width, 2 * (light.width - test.width));
    EXPECT_EQ(light.width - test.width, light.height - test.height) << "the same room on all sides";
    EXPECT_NE(draw({"--set", "DropdownTheme=1"}, "1").file, light.file);
    EXPECT_NE(draw({"--locale", "ar"}, "1").file, light.file);
  }
}

}  // namespace
