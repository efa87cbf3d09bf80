// What the program says to calls that it cannot use: the status, nothing on standard output, and
// one line that helps.

#include <gtest/gtest.h>

#include <algorithm>

#include "Tests/Tools/Timectl.h"

namespace {

struct Call {
  std::vector<std::string> arguments;
  std::string complaint;  ///< A part of the line.
};

void expectComplaint(const Call& call, int status) {
  const auto result = timectl(call.arguments);
  SCOPED_TRACE(testing::PrintToString(call.arguments));
  EXPECT_EQ(result.status, status);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  EXPECT_TRUE(result.errors.starts_with("velmora-timectl: ")) << result.errors;
  EXPECT_TRUE(result.errors.ends_with('\n'));
  EXPECT_NE(result.errors.find(call.complaint), std::string::npos) << result.errors;
}

std::vector<std::string> format(const std::string& time, const std::string& zone,
                                const std::string& elements) {
  return {"format", "--time", time, "--zone", zone, "--elements", elements};
}

TEST(Misuse, Arguments) {
  const Call calls[] = {
      {{}, "a command is missing"},
      {{"fromat"}, "'fromat'"},
      {{"-5", "week", "--time", "0"}, "'-5'"},
      {{"--frobnicate", "week"}, "--frobnicate"},
      {{"week", "--dark", "--time", "0"}, "--dark"},
      {{"--dark=yes", "week", "--time", "0"}, "takes no value"},
      {{"week"}, "--time INSTANT is missing"},
      {{"week", "--time"}, "--time needs a value"},
      {{"week", "--time", "0", "0"}, "one argument too many"},
      {{"menubar", "--elements", "[]", "--flash", "2"}, "neither 0 nor 1"},
      {{"fuzzy", "--time", "0", "--copy", "row"}, "'row'"},
      {{"fuzzy", "--time", "0", "--copy", "menubar", "--zone", "UTC"}, "--copy clock only"},
      {{"clock", "--zone", "UTC", "--elements", R"(["'"])"}, "too short"},
      {{"light", "--zone", "UTC", "--lat", "0", "--lon", "181"}, "--lon: '181'"},
      {{"sun", "--date", "0", "--zone", "UTC", "--lat", "90.1", "--lon", "0"}, "--lat: '90.1'"},
      {{"phases", "--date", "0", "--count", "1.5"}, "no whole number"},
      {{"phase", "--date", "-0001-01-01T00:00:00Z"}, "years"},
      {{"night-path", "--row", "one"}, "'one'"},
      {{"cities"}, "'get ID' or 'search TEXT'"},
      {{"cities", "get"}, "ID is missing"},
      {{"cities", "search", ""}, "TEXT is empty"},
      {{"render", "menubar"}, "-o FILE.png is missing"},
      {{"render", "sun", "-o", "x.png"}, "'sun'"},
      {{"render", "menubar", "--city", "1", "-o", "x.png"}, "--city"},
      {{"render", "city-menu", "--city", "Rome", "-o", "x.png"}, "'Rome'"},
      {{"sun-panel", "--zone", "UTC", "--lat", "0"}, "--lon"},
      {{"--set", "Key", "dropdown-time-format"}, "KEY=JSON"},
      {{"--set", "Key=HH", "dropdown-time-format"}, "'HH' is not JSON"},
      {{"--locale", "xx_YY", "dropdown-time-format"}, "'xx_YY'"},
      {{"--now", "soon", "dropdown-time-format"}, "'soon'"},
      {{"month", "--month", "2026-13"}, "'2026-13' is no month"},
      {{"month", "--first-weekday", "8"}, "--first-weekday: '8'"},
      {{"events"}, "--calendar-dir DIR is missing"},
      {{"events", "--calendar-dir", ".", "--select", "2026-02-29"}, "'2026-02-29' is no day"},
      {{"defaults", "write", "Time_CalendarFolders", R"("~/calendars")"}, "list of folders"},
      {{"defaults", "erase"}, "'read KEY'"},
      {{"defaults", "read", "Key", "--reset", "x"}, "--reset"},
      {{"defaults", "write", "Key", "{"}, "is not JSON"},
      {{"defaults", "write", "Key", "null"}, "defaults delete Key"},
      {{"defaults", "write", "Key", "[1,[null]]"}, "cannot hold null"},
      {{"defaults", "write", "Key", "18446744073709551615"}, "too large"},
      {{"defaults", "write", "Key", std::string(60'000, '[') + std::string(60'000, ']')}, "nested"},
      {{"defaults", "write", "Key", std::string(64, '[') + std::string(64, ']')}, "63 deep"},
      {{"defaults", "write", "Key", R"("a\u0001b")"}, "no control characters"},
      {{"defaults", "write", "", "1"}, "KEY is empty"},
      {{"defaults", "write", "Time_MenubarFormat", R"(["HH","'"])"}, "list of texts"},
      {{"defaults", "write", "Time_TextColor", R"("a b c d")"}, "from 0 to 1"},
      {{"defaults", "write", "Time_TextColor", R"("1 1 1 1.1")"}, "from 0 to 1"},
      {{"defaults", "write", "Time_TextColor", R"("1 1 1 1x")"}, "from 0 to 1"},
      {{"defaults", "write", "language", R"("xx")"}, "ar, de, en, es, fr, ja, pt_PT"},
  };
  for (const Call& call : calls)
    expectComplaint(call, 2);
}

TEST(Misuse, CalendarsThatCannotBeRead) {
  for (const char* command : {"events", "menu"})
    expectComplaint({{command, "--calendar-dir", "/nowhere"}, "/nowhere cannot be read"}, 1);
}

TEST(Misuse, Instants) {
  for (const char* instant :
       {"", "now", "2026-11-21", "2026-11-21T15:04:05", "2026-02-29T00:00:00Z",
        "2026-11-21T24:00:00Z", "2026-11-21T15:04:05ZZ", "2026-11-21T15:04:05+05:", "0x10", "nan",
        "1e300", " 0"}) {
    expectComplaint({{"week", "--time", instant}, "'" + std::string(instant) + "' is no instant"},
                    2);
  }
}

TEST(Misuse, Zones) {
  for (const char* zone : {"", "Europe", "../../etc/passwd", "Europe/Paris\nUTC"}) {
    expectComplaint({format("0", zone, "[]"), "there is no time zone"}, 2);
  }
}

TEST(Misuse, FormatLists) {
  for (const char* elements :
       {"", "HH", "{\"a\":\"HH\"}", "[\"HH\",5]", "[\"HH\"", "[\"HH\"]x", "null"}) {
    expectComplaint({format("0", "UTC", elements), "--elements: "}, 2);
    expectComplaint({{"menubar", "--flash", "0", "--elements", elements}, "--elements: "}, 2);
  }
  expectComplaint({format("0", "UTC", R"(["'"])"), "too short"}, 2);
  expectComplaint({{"menubar", "--flash", "0", "--elements", R"(["'"])"}, "too short"}, 2);
}

TEST(Misuse, SettingsThatTheClockCannotUse) {
  expectComplaint({{"--set", "Time_MenubarFormat=\"HH\"", "render", "menubar", "-o", "/dev/null"},
                   "the setting Time_MenubarFormat must be a list of texts"},
                  2);
}

TEST(Misuse, Scales) {
  for (const char* scale : {"0", "17", "nan", "1x"}) {
    expectComplaint({{"render", "menubar", "--scale", scale, "-o", "x.png"}, "--scale: "}, 2);
  }
}

TEST(Failure, WhatDoesNotExist) {
  for (const char* row : {"-1", "365"})
    expectComplaint({{"night-path", "--row", row}, "there is no row " + std::string(row)}, 1);
  for (const char* city : {"1", "x'y"})
    expectComplaint({{"cities", "get", city}, "there is no city '" + std::string(city)}, 1);
}

TEST(Failure, WhatCannotBeWritten) {
  expectComplaint({{"render", "city-menu", "--city", "99", "-o", "x.png"}, "no city 99"}, 1);
  expectComplaint({{"render", "menubar", "-o", "/no/such/folder/x.png"}, "cannot be written"}, 1);
  const auto full =
      runToEnd({"sh", "-c", VELMORA_BINARY_DIR "/bin/velmora-timectl --version >/dev/full"});
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.errors, "velmora-timectl: the answer could not be written\n");
}

}  // namespace
