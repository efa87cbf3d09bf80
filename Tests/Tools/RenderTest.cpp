// The pictures that the program draws.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

struct Picture {
  std::string file;
  int width = 0;
  int height = 0;
};

/// Draws the bar and checks that the answer tells the size that the file has. The size stands in
/// the first chunk of a PNG file, behind its signature of 8 bytes (PNG specification, 11.2.2).
Picture render(std::vector<std::string> globals, const std::vector<std::string>& options) {
  const std::string path = testFolder() / "clock.png";
  globals.insert(globals.end(), {"--now", "2026-11-21T15:04:05Z", "render", "menubar", "-o", path});
  globals.insert(globals.end(), options.begin(), options.end());
  const auto result = timectl(globals);
  EXPECT_EQ(result.status, 0) << result.errors;
  std::ifstream stream(path, std::ios::binary);
  Picture picture{std::string(std::istreambuf_iterator<char>(stream), {}), 0, 0};
  EXPECT_TRUE(picture.file.starts_with("\x89PNG\r\n\x1a\n"));
  if (picture.file.size() < 24) return picture;
  const auto number = [&](size_t position) {
    int value = 0;
    for (size_t index = 0; index < 4; ++index) {
      value = value << 8 | static_cast<unsigned char>(picture.file[position + index]);
    }
    return value;
  };
  picture.width = number(16);
  picture.height = number(20);
  const auto answer = nlohmann::json::parse(result.output);
  EXPECT_EQ(answer,
            (nlohmann::json{{"file", path}, {"width", picture.width}, {"height", picture.height}}));
  return picture;
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

}  // namespace
