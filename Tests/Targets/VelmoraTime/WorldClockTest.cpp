#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <ctime>
#include <sstream>
#include <tuple>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceClockFace.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

/// As the dropdown makes it.
std::shared_ptr<StatInterfaceTimeItem> clockIn(const char* zone, const char* systemZone = "UTC") {
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(systemZone));
  const auto clock = std::make_shared<StatInterfaceTimeItem>();
  clock->setDetails({7, "City", "City", "", "Land", zone, 27.7, 85.3});
  clock->loadLocale();
  clock->updateMode();
  clock->updateStaticInfo();
  return clock;
}

std::tm localTime(const char* zone, double time) {
  setenv("TZ", zone, 1);
  const auto seconds = static_cast<std::time_t>(time);
  std::tm fields{};
  tzset();
  localtime_r(&seconds, &fields);
  return fields;
}

// Against the C library, through the days on which New York's clocks leave out an hour and Lord
// Howe's show half of one twice.
TEST(WorldClock, FollowsTheZoneDatabaseThroughADay) {
  constexpr const char* Home = "Pacific/Pago_Pago";
  const ClockElements list = {"yyyy-MM-dd", "' '", "HH", ":", "mm", ":ss", "__RELATIVE_DAY__"};
  for (const char* zone : {"Asia/Kathmandu", "Pacific/Chatham", "Pacific/Kiritimati", Home,
                           "America/New_York", "Australia/Lord_Howe"}) {
    const auto clock = clockIn(zone, Home);
    for (const double day : {utc(2026, 3, 8), utc(2026, 4, 4), utc(2026, 11, 1)}) {
      for (double time = day; time < day + 86400; time += 599) {
        const std::tm there = localTime(zone, time);
        std::array<char, 32> text{};
        ASSERT_GT(std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &there), 0U);
        const bool isLater = there.tm_yday > localTime(Home, time).tm_yday;
        ASSERT_EQ(clock->textOfElements(list, NSDate::dateWithTimeIntervalSince1970(time)),
                  text.data() + std::string(isLater ? "Tomorrow" : "Today"))
            << zone;
      }
    }
  }
}

// Kiritimati is 25 hours ahead of Pago Pago; CLDR 42 has no short name of Nepal's time.
TEST(WorldClock, Texts) {
  struct Case {
    const char* systemZone;
    const char* zone;
    double hour;  ///< From the new year of 2027, UTC.
    ClockElements list;
    const char* text;
    PropertyList language;
  };
  constexpr double Second = 1.0 / 3600;
  const ClockElements day = {"d", "__DAY_SUFFIX__", "' '", "__RELATIVE_DAY__"};
  for (const auto& [systemZone, zone, hour, list, text, language] :
       {Case{"UTC", "Asia/Tokyo", -9 - Second, day, "31st Today", {}},
        {"UTC", "Asia/Tokyo", -9, day, "1st Tomorrow", {}},
        {"UTC", "Asia/Tokyo", -Second, day, "1st Tomorrow", {}},
        {"UTC", "Asia/Tokyo", 0, day, "1st Today", {}},
        {"Pacific/Kiritimati", "Pacific/Pago_Pago", 10.5, day, "31st Yesterday", {}},
        {"Pacific/Pago_Pago", "Pacific/Kiritimati", 10.5, day, "2nd Tomorrow", {}},
        {"UTC", "Asia/Tokyo", -1, {"d", "__RELATIVE_DAY__"}, "١Tomorrow", "ar_EG"},
        {"UTC", "Asia/Tokyo", 0, {"zzz", "' '", "MMMM"}, "JST January", {}},
        {"UTC", "Asia/Tokyo", 0, {"zzz", "' '", "MMMM"}, "JST Januar", "de"},
        {"UTC", "Asia/Kathmandu", 0, {"zzz", "aa"}, "GMT+5:45A", {}},
        {"UTC", "America/Montreal", 0, {"h", "aaa", "zzz"}, "7pEST", {}},
        {"Asia/Tokyo", "No/Where", 0, {"H", "FUZZY"}, "9nine o'clock", {}},
        {"UTC", "Asia/Tokyo", 6, {"FUZZY"}, "three o'clock", {}}}) {
    ZEVSetObjectForKey("language", language);
    const NSDate date = NSDate::dateWithTimeIntervalSince1970(utc(2027, 1, 1) + hour * 3600);
    EXPECT_EQ(clockIn(zone, systemZone)->textOfElements(list, date), text) << zone;
  }
}

// By the rule, row by row. A sunset before the sunrise is the next day's.
TEST(WorldClock, LightOfADay) {
  constexpr double No = -100001;
  const struct {
    std::array<double, 4> sun;  ///< Civil dawn, rise, set, civil dusk.
    std::vector<std::tuple<double, bool, float>> moments;
  } days[] = {
      {{1000, 2000, 5000, 6000}, {{1000, false, 1}, {1250, false, 0.75F}, {2000, false, 0}}},
      {{1000, 2000, 5000, 6000}, {{2001, true, 1}, {5750, false, 0.75F}, {6000, false, 1}}},
      {{No, 2000, 5000, No}, {{2000, false, 1}, {3000, true, 1}, {5000, false, 1}}},
      {{51000, 52000, 1000, 3000}, {{500, false, 1}, {87000, true, 1}, {87900, false, 0.25F}}},
      {{No, No, 5000, 6000}, {{5000, true, 1}, {5250, true, 0.25F}, {6001, false, 0}}},
      {{1000, 2000, No, No}, {{999, false, 0}, {1250, false, 0.75F}, {2001, true, 1}}},
      {{No, -100002, -100002, No}, {{3000, true, 1}}},   // Always up.
      {{No, -100004, -100004, No}, {{3000, false, 1}}},  // Always down.
      {{0, 0, 0, 0}, {{3000, false, 1}}},                // Nothing is known.
  };
  for (const auto& [sun, moments] : days) {
    const auto [dawn, rise, set, dusk] = sun;
    for (const auto& [time, day, share] : moments) {
      const CityLight light = lightOfCity(
          {{"rise-civil", dawn}, {"rise-sun", rise}, {"set-sun", set}, {"set-civil", dusk}}, time);
      EXPECT_EQ(light.day, day) << time;
      EXPECT_FLOAT_EQ(light.darkShare, share) << time;
    }
  }
}

// The Sun's record tells its moment by the altitude, in steps of some minutes. In Nepal hours begin
// at a quarter past.
TEST(WorldClock, SunAndMoonAreWorkedOutOnceAnHourAndWhileTheSubmenuIsOpen) {
  SimulatedTime time(utc(2026, 11, 21, 6, 4, 59));
  const auto clock = clockIn("Asia/Kathmandu");
  clock->update();
  EXPECT_TRUE(clock->day()) << "the first tick has the Sun before it looks for the light";
  const auto changesWithin = [&](double seconds, bool ticks) {
    const double before = clock->sunData()->at("altitude-now");
    time.loop.advance(seconds);
    if (ticks) clock->update();
    return clock->sunData()->at("altitude-now") != before;
  };
  EXPECT_FALSE(changesWithin(600, true));
  EXPECT_TRUE(changesWithin(1, true)) << "the hour has turned";
  EXPECT_FALSE(changesWithin(3599, true));
  clock->menuWillOpen(*clock->submenu());
  EXPECT_TRUE(changesWithin(400, false));
  clock->menuDidClose(*clock->submenu());
  EXPECT_FALSE(changesWithin(1000, false));
}

TEST(WorldClock, RowsAreLaidOutForTheCitysOwnName) {
  const auto clock = clockIn("UTC");
  EXPECT_EQ(clock->nameValue()->stringValue(), "City, Land");
  const NSRect name = clock->nameValueSimple()->frame();
  const NSRect shown = clock->timeValueSimple()->frame();
  EXPECT_EQ(shown.origin.x, 8 + name.size.width);
  EXPECT_EQ(shown.origin.x + shown.size.width, 225);
  clock->setName("Another city with a long name");
  clock->menuitemSimple()->view()->setFrameSize({280, 19});
  EXPECT_EQ(clock->nameValueSimple()->frame(), name) << "it would lie under the time";
  EXPECT_NEAR(clock->longitudePercentage(), 0.5 + 85.3 / 360, 1e-7);
  EXPECT_NEAR(clock->latitudePercentage(), 0.5 - 27.7 / 180, 1e-7);
  EXPECT_EQ(clock->menuitem()->submenu(), clock->submenu());
  ZEVSetIntegerForKey("Time_DropdownCityLayout", 0);
  clock->updateMode();
  EXPECT_EQ(clock->menuitem()->submenu(), nullptr);
  EXPECT_EQ(clock->menuitemSimple()->submenu(), clock->submenu());
}

TEST(WorldClock, IsReadAloudToTheMinute) {
  const SimulatedTime time(utc(2026, 7, 1, 15, 4, 59));
  const std::array<const char*, 3> cases[] = {
      {"Asia/Dubai", "Asia/Tokyo", "City, tomorrow 00:04, 5 hours ahead"},
      {"UTC", "Asia/Kathmandu", "City, today 20:49, 5 hours and 45 minutes ahead"},
      {"Australia/Brisbane", "Australia/Adelaide", "City, today 00:34, 30 minutes behind"},
      {"Asia/Tokyo", "Asia/Shanghai", "City, yesterday 23:04, 1 hour behind"},
      {"UTC", "Atlantic/Azores", "City, today 15:04, same time as here"}};
  ZEVSetObjectForKey("Time_DropdownFormat",
                     PropertyList::Array{"HH", ":", "mm", "':'", "ss", "' '", "zzz"});
  for (const auto& [systemZone, zone, name] : cases) {
    const auto clock = clockIn(zone, systemZone);
    clock->update();
    EXPECT_EQ(clock->menuitem()->accessibilityLabel(), name);
    EXPECT_EQ(clock->menuitemSimple()->accessibilityLabel(), name);
  }
}

// At 15:30 the minute hand points down and the hour hand 105 degrees from the top. Of a turned path
// the record tells the corners of its own box: the hand's is 2 wide and reaches 8 from the centre.
TEST(ClockFace, ShowsHandsOverTheDialsOfTheLight) {
  const std::pair<StatInterfaceClockFace_Time::Reading, const char*> cases[] = {
      {{true, 0.5F, 15, 30, 59}, "light 1 "},
      {{false, 0, 15, 30, 59}, "light 1 "},
      {{false, 0.25F, 15, 30, 59}, "light 1 dark 0.25 "},
      {{false, 1, 15, 30, 59}, "dark 1 "}};
  for (const auto& [reading, pictures] : cases) {
    StatInterfaceClockFace_Time face(NSMakeRect(0, 0, 32, 32));
    face.setReading(reading);
    RecordingGraphicsContext context;
    const NSCurrentGraphicsContext current(context);
    face.displayRect(face.bounds());
    std::ostringstream drawn;
    std::vector<NSRect> hands;
    for (const DrawingRecord& record : context.records()) {
      if (record.kind == DrawingRecord::Kind::Path) hands.push_back(record.rect);
      if (record.kind == DrawingRecord::Kind::Image)
        drawn << record.name.substr(strlen("stats-calendar-clock-")) << ' ' << record.fraction
              << ' ';
    }
    EXPECT_EQ(drawn.str(), pictures);
    ASSERT_EQ(hands.size(), 4U) << "each over its shadow";
    EXPECT_NEAR(hands[0].origin.y, 15 + 1.1, 1e-9);
    EXPECT_NEAR(hands[1].origin.y + hands[1].size.height, 27, 1e-9);
    EXPECT_NEAR(hands[3].origin.x + hands[3].size.width, 16 + 8 * 0.965926 + 0.258819, 1e-5);
  }
}

}  // namespace
