// Answers that no transcript holds, since they depend on the machine or are too long.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <tuple>

#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

using Json = nlohmann::json;

/// 2026-11-21, a Saturday.
const std::string Now = "2026-11-21T15:04:05.25Z";

// Widths of text depend on the machine's fonts; what holds on all of them does not.
TEST(Answers, MenubarsText) {
  const Json drawn = answer({"--now", Now, "--set", "Time_MenubarFlashSeperators=1", "menubar",
                             "--flash", "0", "--elements", R"(["HH","':'","mm"])"});
  EXPECT_EQ(drawn["texts"], "15:04");
  EXPECT_EQ(drawn["pieces"][0], Json::parse(R"({"kind":"text","text":"15","x":0,"y":3})"));
  EXPECT_EQ(drawn["pieces"][1]["visible"], false);
}

// The commands pass their arguments on in the right places; the values have tests of their own.
TEST(Answers, Astronomy) {
  // NOAA Solar Calculator: at the June solstice of 2026 the Sun rises over Sydney at 07:00.
  constexpr double Minutes = 60;
  const Json sun = answer({"sun", "--date", "2026-06-21T02:00:00Z", "--zone", "Australia/Sydney",
                           "--lat", "-33.87", "--lon", "151.21"});
  EXPECT_NEAR(sun["rise-sun"].get<double>(), 1781989200, 2 * Minutes);
  // USNO, Phases of the Moon 2026: full on November 24 at 14:53 UTC, last quarter on December 1.
  const Json phases = answer({"phases", "--date", "2026-11-21T00:00:00Z", "--count", "2"});
  ASSERT_EQ(phases.size(), 2);
  EXPECT_NEAR(phases[0]["time"].get<double>(), 1795532003, 10 * Minutes);
  EXPECT_EQ(answer({"phase", "--date", "2026-11-21T00:00:00Z"})["name"], "Waxing Gibbous");
  EXPECT_EQ(answer({"night-path", "--row", "364"})["row"], 364);
  // The almanac stands on a fixed date: only the time of day moves it.
  const Json almanac = answer({"ephemeris", "--date", "2026-11-21T12:00:00Z", "--repeat", "3"});
  EXPECT_NEAR(almanac["JD"].get<double>(), 1721028, 1e-6);
  // PyEphem 4.1.4; the Moon's older mean longitude is a tenth of a degree away so far from our
  // time.
  EXPECT_NEAR(almanac["RAsun"].get<double>(), 246.6433, 0.01);
  EXPECT_NEAR(almanac["RAmoon"].get<double>(), 311.2256, 0.15);
}

// The count from the CSV file by a script of another language.
TEST(Answers, Cities) {
  const Json cities = answer({"cities", "search", "são"});
  ASSERT_EQ(cities.size(), 529);
  EXPECT_EQ(cities[0]["city"], "São Paulo");
  EXPECT_EQ(answer({"cities", "search", "Huai'an"})[0]["timezone"], "Asia/Shanghai");
}

TEST(Answers, HelpAndVersion) {
  const auto help = timectl({"--help"});
  EXPECT_EQ(help.status, 0);
  std::istringstream lines(help.output.substr(help.output.find("\nCommands")));
  std::string line;
  std::getline(lines, line);
  int commands = -1;
  for (std::getline(lines, line); std::getline(lines, line); ++commands) {
    const std::string command = line.substr(2, line.find(' ', 2) - 2);
    const auto own = timectl({command, "--help"});
    EXPECT_EQ(own.status, 0) << command;
    EXPECT_TRUE(own.output.starts_with("Usage: velmora-timectl [GLOBAL OPTIONS] " + command))
        << own.output;
    EXPECT_EQ(own.errors, "");
  }
  EXPECT_GE(commands, 6);
  EXPECT_EQ(timectl({"--version"}).output,
            "velmora-timectl " VELMORA_VERSION
            "\n"
            "City data: GeoNames (https://www.geonames.org), CC BY 4.0, modified.\n"
            "Time-zone boundaries: © OpenStreetMap contributors (ODbL).\n"
            "Made with Natural Earth.\n");
}

// A copy of the program and its library under another prefix finds the translations there.
TEST(Answers, TextsAreInTheLocalesLanguage) {
  const auto prefix = testFolder() / "prefix";
  for (const char* file : {"bin/velmora-timectl", "lib/libVelmoraPlatform.so"}) {
    std::filesystem::create_directories((prefix / file).parent_path());
    std::filesystem::copy_file(std::filesystem::path(VELMORA_BINARY_DIR) / file, prefix / file);
  }
  for (const auto& [language, today] : {std::pair{"en", "This day"}, {"de", "Heute"}}) {
    const auto folder =
        prefix / "lib/velmora5/VelmoraTime.bundle" / (std::string(language) + ".lproj");
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "time.strings") << "\"Today\" = \"" << today << "\";\n";
  }
  for (const auto& [option, value, today] : {std::tuple{"--locale", "de_AT", "Heute"},
                                             {"--locale", "ja_JP", "This day"},
                                             {"--set", "language=\"de\"", "Heute"}}) {
    const auto result = runToEnd({prefix / "bin/velmora-timectl", option, value, "format", "--time",
                                  "0", "--zone", "UTC", "--elements", R"(["__RELATIVE_DAY__"])"});
    EXPECT_EQ(result.output, R"({"text":")" + std::string(today) + "\"}\n") << value;
  }
}

// Python's calendar module, and its isocalendar for the weeks.
TEST(Answers, Month) {
  const Json month = answer({"--locale", "de_DE", "--now", Now, "--set", "Time_WeekNumberFormat=1",
                             "--system-zone", "Pacific/Kiritimati", "month", "--month", "2026-11"});
  EXPECT_EQ(month["title"], "November 2026");
  EXPECT_EQ(month["headers"], Json({"M", "D", "M", "D", "F", "S", "S"}));
  EXPECT_EQ(month["weeks"], Json({"44", "45", "46", "47", "48", "49"}));
  EXPECT_EQ(month["monthStartTime"], 1792972800) << "October 26";
  EXPECT_EQ(month["monthEndTime"], 1796601600);
  EXPECT_EQ(month["currentDay"], 1795305600) << "there it is Sunday already";
  EXPECT_EQ(month["cells"].size(), 42);
  EXPECT_EQ(
      month["cells"][27].dump(),
      R"({"date":1795305600,"label":"22","today":true,"tomorrow":false,"type":1,"weekday":1})");
  EXPECT_EQ(month["cells"][28]["tomorrow"], true);
  EXPECT_EQ(month["cells"][5]["type"], 2);
}

TEST(Answers, EventsOfAFolder) {
  const auto ask = [&](std::vector<std::string> command) {
    command.insert(command.begin(), {"--now", Now, "--locale", "de_DE", "--no-user-settings",
                                     "--set", "Time_Cities=[]"});
    command.insert(command.end(), {"--calendar-dir", VELMORA_SOURCE_DIR "/Tests/Tools/Calendars"});
    return answer(command);
  };
  const Json trip = {{"name", "Trip"}, {"time", "Ganztägig"}, {"color", "#FF000080"}};
  const Json talk = {{"name", "Talk"}, {"time", "20:00"}, {"color", "#4576BB"}};
  const Json events = ask({"events"});
  EXPECT_EQ(events["days"].size(), 42);
  EXPECT_EQ(events["days"][26], Json({"Trip", "Talk"}));
  EXPECT_EQ(events["upcoming"], Json({trip, talk}));
  EXPECT_EQ(ask({"events", "--select", "2026-11-20"})["upcoming"], Json::array({trip}));
  EXPECT_EQ(ask({"events", "--hide", "home"})["upcoming"], Json::array({talk}));
  std::string keys;
  for (const Json& row : ask({"menu"})) {
    keys += (row["key"].is_null() ? row["texts"][0] : row["key"]).get<std::string>() + " ";
  }
  EXPECT_EQ(keys,
            "November 2026 filler-calendar filler-calendar-events Trip Talk spacer-moon-before "
            "Zunehmender Mond filler-base ");
}

}  // namespace
