// The sun panel in every language, and where the Sun keeps up or down.

#include <gtest/gtest.h>

#include "Platform/AppKit/Text/NSFont.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Tests/Tools/Timectl.h"

namespace {

double width(const nlohmann::json& text, const char* font, double size) {
  NSTextAttributes attributes;
  attributes.font = NSFont::fontWithName(font, size).value_or(NSFont::systemFontOfSize(size));
  return sizeWithAttributes(text.get<std::string>(), attributes).width;
}

// The rooms of the panel, less the two points that a field leaves free at either end.
TEST(SunPanel, TextsFitInEveryLanguage) {
  for (const char* language : {"en", "de", "es", "fr", "pt_PT", "ja", "ar"}) {
    for (const char* now : {"2026-03-20T22:55:00Z", "2026-05-10T10:48:00Z"}) {
      const auto panel = answer({"--locale", language, "--now", now, "sun-panel", "--zone",
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

// PyEphem: at 78 degrees the Sun keeps up or down for some weeks around the solstices.
TEST(SunPanel, AnEventThatDoesNotTakePlaceIsADash) {
  for (const auto& [now, latitude, isUp] : {std::tuple{"2026-12-21T12:00:00Z", "78.2", false},
                                            {"2026-06-21T12:00:00Z", "78.2", true},
                                            {"2026-06-21T12:00:00Z", "-78.2", false},
                                            {"2026-12-21T12:00:00Z", "-78.2", true}}) {
    const auto panel =
        answer({"--set", R"(Time_DropdownFormat=["HH","':'","mm"])", "--now", now, "sun-panel",
                "--zone", "Europe/Oslo", "--lat", latitude, "--lon", "15.6"});
    for (const size_t rise : {2U, 4U, 10U})
      EXPECT_EQ(panel[rise]["field"].get<std::string>() + panel[rise]["value2"].get<std::string>(),
                "--");
    EXPECT_EQ(panel[3]["value2"], isUp ? "12:00" : "-");
    EXPECT_EQ(panel.back()["dayLength1"],
              isUp ? "24 hours and 0 minutes of daylight" : "0 minutes of daylight");
  }
}

}  // namespace
