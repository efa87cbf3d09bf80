#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <ctime>
#include <sstream>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceClockFace.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

/// As the dropdown makes it.
std::shared_ptr<StatInterfaceTimeItem> clockIn(const std::string& zone,
                                               const std::string& systemZone = "UTC") {
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

TEST(WorldClock, Texts) {
  for (const auto& [systemZone, zone, date, language, list, text] :
       casesIn<std::string, std::string, NSDate, std::string, ClockElements, std::string>(
           "Targets/VelmoraTime/Cases/city-texts.txt")) {
    ZEVSetObjectForKey("language", language.empty() ? PropertyList() : PropertyList(language));
    EXPECT_EQ(clockIn(zone, systemZone)->textOfElements(list, date), text)
        << zone << " " << date.description();
  }
}

TEST(WorldClock, LightOfADay) {
  for (const auto& [dawn, rise, set, dusk, time, day, darkShare] :
       casesIn<double, double, double, double, double, bool, float>(
           "Targets/VelmoraTime/Cases/city-light.txt")) {
    const CityLight light = lightOfCity(
        {{"rise-civil", dawn}, {"rise-sun", rise}, {"set-sun", set}, {"set-civil", dusk}}, time);
    EXPECT_EQ(light.day, day) << dawn << " " << set << " " << time;
    EXPECT_FLOAT_EQ(light.darkShare, darkShare) << dawn << " " << set << " " << time;
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
  const double place =
      clockIn("UTC")->menuitemSimple()->view()->subviews().back()->frame().origin.x;
  clock->setName("Another city with a long name");
  const auto row = clock->menuitemSimple();
  const NSRect name = clock->nameValueSimple()->frame();
  const NSRect shown = clock->timeValueSimple()->frame();
  EXPECT_EQ(shown.origin.x, place);
  EXPECT_EQ(shown.origin.x, 8 + name.size.width);
  EXPECT_EQ(shown.origin.x + shown.size.width, 225);
  row->view()->setFrameSize({280, 19});
  EXPECT_EQ(clock->nameValueSimple()->frame(), name) << "it would lie under the time";
  EXPECT_NEAR(clock->longitudePercentage(), 0.5 + 85.3 / 360, 1e-7);
  EXPECT_NEAR(clock->latitudePercentage(), 0.5 - 27.7 / 180, 1e-7);
}

TEST(WorldClock, IsReadAloudToTheMinute) {
  const SimulatedTime time(utc(2026, 7, 1, 15, 4, 59));
  ZEVSetObjectForKey("Time_DropdownFormat",
                     PropertyList::Array{"HH", ":", "mm", "':'", "ss", "' '", "zzz"});
  for (const auto& [systemZone, zone, name] :
       casesIn<std::string, std::string, std::string>("Targets/VelmoraTime/Cases/city-names.txt")) {
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
