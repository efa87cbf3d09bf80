// The sun panel in every language, and where the Sun keeps up or down.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Platform/AppKit/Text/NSFont.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Tests/Tools/Timectl.h"

namespace {

nlohmann::json sunPanel(std::vector<std::string> arguments) {
  const auto result = timectl(arguments);
  EXPECT_EQ(result.status, 0) << result.errors;
  return nlohmann::json::parse(result.output);
}

double width(const nlohmann::json& text, const char* font, double size) {
  NSTextAttributes attributes;
  attributes.font = NSFont::fontWithName(font, size).value_or(NSFont::systemFontOfSize(size));
  return sizeWithAttributes(text.get<std::string>(), attributes).width;
}

// The rooms of the panel, less the two points that a field leaves free at either end.
TEST(SunPanel, TextsFitInEveryLanguage) {
  for (const char* language : {"en", "de", "es", "fr", "pt_PT", "ja", "ar"}) {
    for (const char* now : {"2026-03-20T22:55:00Z", "2026-05-10T10:48:00Z"}) {
      const auto panel = sunPanel({"--locale", language, "--now", now, "sun-panel", "--zone",
                                   "Arctic/Longyearbyen", "--lat", "65.8", "--lon", "15.6"});
      ASSERT_EQ(panel.size(), 14U);
      for (size_t index = 0; index + 1 < panel.size(); ++index) {
        const bool isHeader = index == 0 || index == 9;
        const char* font = isHeader ? "Helvetica Neue Medium" : "Helvetica";
        const double size = isHeader ? 10 : 12;
        EXPECT_LE(width(panel[index]["label"], font, size), 127) << panel[index];
        EXPECT_LE(width(panel[index]["field"], font, size), 68) << panel[index];
        EXPECT_LE(width(panel[index]["value2"], font, size), 68) << panel[index];
      }
      for (const auto& text : panel.back())
        EXPECT_LE(width(text, "Helvetica", 13), 276) << text;
    }
  }
}

// PyEphem: in Longyearbyen the Sun keeps up from 19 April to 24 August and down from 26 October to
// 15 February; at 78 degrees south the seasons are the other ones.
TEST(SunPanel, AnEventThatDoesNotTakePlaceIsADash) {
  const struct {
    const char* now;
    const char* latitude;
    std::vector<std::string> sun;  ///< Rise, noon and set.
    const char* dayLength;
  } cases[] = {{"2026-12-21T12:00:00Z", "78.2", {"-", "-", "-"}, "0 minutes of daylight"},
               {"2026-06-21T12:00:00Z", "78.2", {"-", "12:00", "-"}, "24 hours and 0 minutes"},
               {"2026-06-21T12:00:00Z", "-78.2", {"-", "-", "-"}, "0 minutes of daylight"},
               {"2026-12-21T12:00:00Z", "-78.2", {"-", "12:00", "-"}, "24 hours and 0 minutes"}};
  for (const auto& [now, latitude, sun, dayLength] : cases) {
    const auto panel =
        sunPanel({"--set", R"(Time_DropdownFormat=["HH","':'","mm"])", "--now", now, "sun-panel",
                  "--zone", "Europe/Oslo", "--lat", latitude, "--lon", "15.6"});
    for (size_t index = 0; index < sun.size(); ++index) {
      EXPECT_EQ(panel[index + 2]["value2"], sun[index]) << now << latitude;
      EXPECT_EQ(panel[index + 2]["field"] == "-", sun[index] == "-");
    }
    EXPECT_EQ(panel[10]["field"], "-") << "civil dawn";
    EXPECT_TRUE(panel.back()["dayLength1"].get<std::string>().starts_with(dayLength));
    EXPECT_EQ(panel.back()["dayLength2"], "Same as yesterday");
  }
}

}  // namespace
