// What the program answers to good calls, to the letter.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

using Json = nlohmann::json;

/// 2026-11-21, a Saturday.
const std::string Now = "2026-11-21T15:04:05.25Z";

struct Call {
  std::vector<std::string> arguments;
  std::string answer;
};

void expectAnswers(const std::vector<Call>& calls) {
  for (const auto& [arguments, answer] : calls) {
    const auto result = timectl(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, answer + "\n");
    EXPECT_EQ(result.errors, "");
    if (testing::Test::HasFailure()) FAIL() << testing::PrintToString(arguments);
  }
}

// All are 2027-01-01 00:00 UTC, a Friday: of week 53 of 2026 by the ISO rule (Python's
// isocalendar), of the first week where weeks start on Sunday and the first holds January 1.
TEST(Answers, InstantsAreReadInEveryForm) {
  std::vector<Call> calls;
  for (const char* instant :
       {"2027-01-01T00:00Z", "2027-01-01 00:00:00.000Z", "2026-12-31T19:00:00-05:00",
        "2027-01-01T05:45+0545", "2027-01-01T14:00:00+14", "+1.7987616e9"}) {
    calls.push_back({{"--locale", "de_DE", "week", "--time", instant}, R"({"week":"53"})"});
  }
  expectAnswers(calls);
  expectAnswers({
      {{"week", "--time", "2026-12-26T23:59:59.999Z"}, R"({"week":"52"})"},
      {{"week", "--time=2026-12-26T19:00:00-05:00"}, R"({"week":"1"})"},
      {{"--set", "Time_WeekNumberFormat=1", "week", "--time", "-86400.5"}, R"({"week":"1"})"},
      {{"week", "--time", "0", "--time", "2026-12-26T00:00:00Z"}, R"({"week":"52"})"},
  });
}

// Zones: Python's zoneinfo. Words and markers: CLDR 42.
TEST(Answers, Format) {
  const auto call = [](const char* locale, const char* time, const char* zone, const char* elements,
                       const std::string& text) {
    return Call{{"--locale", locale, "--now", Now, "format", "--time", time, "--zone", zone,
                 "--elements", elements},
                R"({"text":")" + text + "\"}"};
  };
  const char* time = "2026-07-01T12:34:56Z";
  expectAnswers({
      call("en_US", time, "America/New_York", R"(["EE","' '","h","':'","mm","aaa"])", "Wed 8:34a"),
      call("en_US", time, "UTC", R"(["__RELATIVE_DAY__","' '","__DAY_MTWRFSU__"])", "Today S"),
      call("en_US", time, "UTC", R"(["'say \"hi\"'"])", R"(say \"hi\")"),
      call("en_US", time, "UTC", "[]", ""),
      call("de_DE.UTF-8@euro", time, "Europe/Berlin", R"(["MMMM"])", "Juli"),
      call("ar_EG", time, "Africa/Cairo", R"(["HH",":","mm"])", "١٥:٣٤"),
      call("en_US", "-1", "UTC", R"(["yyyy","'/'","ss"])", "1969/59"),
  });
  expectAnswers({{{"--set", "language=\"fr\"", "format", "--time", time, "--zone", "UTC",
                   "--elements", R"(["MMMM"])"},
                  R"({"text":"juillet"})"}});
}

TEST(Answers, Menubar) {
  expectAnswers({
      {{"menubar", "--flash", "1", "--elements", "[]"}, R"({"pieces":[],"texts":"","width":4})"},
      {{"--dark", "--system-zone", "Pacific/Kiritimati", "--now", Now, "menubar", "--flash", "1",
        "--elements", R"(["___ICON__MOON__","___ICON"])"},
       R"({"pieces":[{"kind":"moon","x":0,"y":3},{"kind":"calendar","type":"___ICON","day":22,)"
       R"("white":true,"x":24,"y":0}],"texts":"","width":43})"},
  });
  // Widths of text depend on the machine's fonts; what holds on all of them does not.
  const auto text = timectl({"--now", Now, "--set", "Time_MenubarFlashSeperators=1", "menubar",
                             "--flash", "0", "--elements", R"(["HH","':'","mm"])"});
  const Json drawn = Json::parse(text.output);
  EXPECT_EQ(drawn["texts"], "15:04");
  EXPECT_EQ(drawn["pieces"][0], Json::parse(R"({"kind":"text","text":"15","x":0,"y":3})"));
  EXPECT_EQ(drawn["pieces"][1]["visible"], false);
}

TEST(Answers, NumbersAreInTheShortestForm) {
  const std::pair<const char*, const char*> numbers[] = {
      {"0.1", "0.1"},
      {"1.0", "1"},
      {"1e21", "1e21"},
      {"0.30000000000000004", "0.30000000000000004"},
      {"1.5E-7", "1.5e-7"},
      {"5e-324", "5e-324"},
      {"9007199254740993", "9007199254740993"},
      {"-0.0", "-0"},
      {"[1,2.0,\"x\"]", "[1,2,\"x\"]"},
      {"{\"b\":{},\"a\":[]}", "{\"a\":[],\"b\":{}}"},
      {"\"caf\\u00e9\\n\"", "\"café\\n\""}};
  for (const auto& [given, shown] : numbers) {
    expectAnswers({{{"--set", std::string("Key=") + given, "defaults", "read", "Key"},
                    std::string(R"({"key":"Key","value":)") + shown + R"(,"source":"stored"})"}});
  }
}

TEST(Answers, Fuzzy) {
  // 03:23 in New York. The spellings are two on purpose.
  const std::vector<std::string> call = {"--system-zone", "America/New_York",     "fuzzy",
                                         "--time",        "2026-11-21T08:23:00Z", "--copy"};
  struct Case {
    std::vector<std::string> copy;
    const char* text;
  };
  // The cities' zones: 08:23 in UTC, 13:53 in Kolkata, 00:23 in Los Angeles, where an hour has a
  // name that the bar does not give it, and with a German word of its own.
  const Case cases[] = {{{"utilities"}, "twentyfive past three"},
                        {{"menubar"}, "twenty five past three"},
                        {{"clock"}, "twenty five past three"},
                        {{"clock", "--zone", "UTC"}, "twenty five past eight"},
                        {{"clock", "--zone", "Asia/Kolkata"}, "five to two"},
                        {{"clock", "--zone", "America/Los_Angeles"}, "twenty five past midnight"}};
  for (const auto& [copy, text] : cases) {
    auto arguments = call;
    arguments.insert(arguments.end(), copy.begin(), copy.end());
    expectAnswers({{arguments, std::string(R"({"text":")") + text + "\"}"}});
  }
  const std::pair<const char*, const char*> nights[] = {{"23:58", "Mitternacht"},
                                                        {"23:30", "halb zwölf nachts"},
                                                        {"00:05", "fünf nach zwölf nachts"},
                                                        {"12:05", "fünf nach zwölf"},
                                                        {"13:02", "gegen eins"}};
  for (const auto& [time, text] : nights) {
    expectAnswers({{{"--set", "language=\"de\"", "fuzzy", "--copy", "clock", "--zone", "UTC",
                     "--time", std::string("2026-11-21T") + time + ":00Z"},
                    std::string(R"({"text":")") + text + "\"}"}});
  }
}

// In Reykjavik in June the Sun sets at 00:04: on each date before it rises.
TEST(Answers, WorldClock) {
  expectAnswers({
      {{"--locale", "de_DE", "--system-zone", "Europe/Berlin", "--now", Now, "clock", "--zone",
        "Asia/Tokyo", "--elements", R"(["EE","' '","HH",":","mm"," zzz ","__RELATIVE_DAY__"])"},
       R"({"text":"So 00:04 GMT+9 Morgen"})"},
      {{"--now", "2026-06-21T23:30:00Z", "light", "--zone", "Atlantic/Reykjavik", "--lat", "64.15",
        "--lon", "-21.94"},
       R"({"day":true,"lightPercentage":1})"},
  });
}

double answeredNumber(const std::vector<std::string>& arguments, const char* key) {
  const auto result = timectl(arguments);
  EXPECT_EQ(result.status, 0) << result.errors;
  return Json::parse(result.output).at(key).get<double>();
}

// The commands pass their arguments on in the right places; the values have tests of their own.
TEST(Answers, Astronomy) {
  // NOAA Solar Calculator: at the June solstice of 2026 the Sun rises over Sydney at 07:00.
  constexpr double Minutes = 60;
  EXPECT_NEAR(answeredNumber({"sun", "--date", "2026-06-21T02:00:00Z", "--zone", "Australia/Sydney",
                              "--lat", "-33.87", "--lon", "151.21"},
                             "rise-sun"),
              1781989200, 2 * Minutes);
  // USNO, Phases of the Moon 2026: full on November 24 at 14:53 UTC, last quarter on December 1.
  const auto phases =
      Json::parse(timectl({"phases", "--date", "2026-11-21T00:00:00Z", "--count", "2"}).output);
  ASSERT_EQ(phases.size(), 2);
  EXPECT_NEAR(phases[0]["time"].get<double>(), 1795532003, 10 * Minutes);
  EXPECT_EQ(Json::parse(timectl({"phase", "--date", "2026-11-21T00:00:00Z"}).output)["name"],
            "Waxing Gibbous");
  EXPECT_EQ(answeredNumber({"night-path", "--row", "364"}, "row"), 364);
  // The almanac stands on a fixed date: only the time of day moves it.
  EXPECT_NEAR(
      answeredNumber({"ephemeris", "--date", "2026-11-21T12:00:00Z", "--repeat", "3"}, "JD"),
      1721028, 1e-6);
}

// The count and the first row from the CSV file by a script of another language.
TEST(Answers, Cities) {
  EXPECT_EQ(timectl({"cities", "get", "5128581"}).output,
            "{\"identifier\":5128581,\"city\":\"New York\",\"city_plain\":\"New York City\","
            "\"state\":\"New York\",\"country\":\"United States\","
            "\"timezone\":\"America/New_York\",\"latitude\":40.71427,\"longitude\":-74.00597}\n");
  const Json cities = Json::parse(timectl({"cities", "search", "são"}).output);
  ASSERT_EQ(cities.size(), 529);
  EXPECT_EQ(cities[0]["city"], "São Paulo");
  EXPECT_EQ(timectl({"cities", "search", "Utopia"}).output, "[]\n");
  EXPECT_EQ(Json::parse(timectl({"cities", "search", "Huai'an"}).output)[0]["timezone"],
            "Asia/Shanghai");
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
  const std::vector<Call> calls = {{{"--locale", "de_AT"}, "Heute"},
                                   {{"--locale", "ja_JP"}, "This day"},
                                   {{"--set", "language=\"de\""}, "Heute"}};
  for (const auto& [globals, today] : calls) {
    std::vector<std::string> command = {prefix / "bin/velmora-timectl"};
    command.insert(command.end(), globals.begin(), globals.end());
    for (const char* argument :
         {"format", "--time", "0", "--zone", "UTC", "--elements", R"(["__RELATIVE_DAY__"])"}) {
      command.emplace_back(argument);
    }
    EXPECT_EQ(runToEnd(command).output, R"({"text":")" + today + "\"}\n");
  }
}

// Python's calendar module, and its isocalendar for the weeks.
TEST(Answers, Month) {
  const Json month =
      Json::parse(timectl({"--locale", "de_DE", "--now", Now, "--set", "Time_WeekNumberFormat=1",
                           "--system-zone", "Pacific/Kiritimati", "month", "--month", "2026-11"})
                      .output);
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
  const auto folder = testFolder() / "calendars";
  for (const auto& [name, lines] :
       {std::pair{"work", "DTSTART:20261121T200000\r\nDTEND:20261121T213000\r\nSUMMARY:Talk\r\n"},
        {"home", "DTSTART;VALUE=DATE:20261120\r\nDTEND;VALUE=DATE:20261122\r\nSUMMARY:Trip\r\n"}}) {
    std::filesystem::create_directories(folder / name);
    std::ofstream(folder / name / "color") << (name[0] == 'w' ? "#4576BB" : "#FF000080");
    std::ofstream(folder / name / "event.ics")
        << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VEVENT\r\nUID:" << name
        << "\r\nDTSTAMP:20260101T000000Z\r\n"
        << lines << "END:VEVENT\r\nEND:VCALENDAR\r\n";
  }
  const auto answer = [&](std::vector<std::string> command) {
    command.insert(command.begin(), {"--now", Now, "--locale", "de_DE", "--no-user-settings",
                                     "--set", "Time_Cities=[]"});
    command.insert(command.end(), {"--calendar-dir", folder});
    return Json::parse(timectl(command).output);
  };
  const Json trip = {{"name", "Trip"}, {"time", "Ganztägig"}, {"color", "#FF000080"}};
  const Json talk = {{"name", "Talk"}, {"time", "20:00"}, {"color", "#4576BB"}};
  const Json events = answer({"events"});
  EXPECT_EQ(events["days"].size(), 42);
  EXPECT_EQ(events["days"][26], Json({"Trip", "Talk"}));
  EXPECT_EQ(events["upcoming"], Json({trip, talk}));
  EXPECT_EQ(answer({"events", "--select", "2026-11-20"})["upcoming"], Json::array({trip}));
  EXPECT_EQ(answer({"events", "--hide", "home"})["upcoming"], Json::array({talk}));
  std::string keys;
  for (const Json& row : answer({"menu"})) {
    keys += (row["key"].is_null() ? row["texts"][0] : row["key"]).get<std::string>() + " ";
  }
  EXPECT_EQ(keys,
            "November 2026 filler-calendar filler-calendar-events Trip Talk spacer-moon-before "
            "Zunehmender Mond filler-base ");
}

}  // namespace
