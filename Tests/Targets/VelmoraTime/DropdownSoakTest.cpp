// An open dropdown through a day, and one that is opened again and again while settings change.

#include <gtest/gtest.h>
#include <malloc.h>

#include <random>

#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"
#include "Tests/Targets/VelmoraTime/OpenDropdown.h"

namespace {

using Array = PropertyList::Array;
using DropdownSoak = OpenDropdown;

// In zones of whole hours, halves and quarters; in London, Berlin, Oulu and Longyearbyen the clocks
// go back on 25 October 2026.
const Array TwentyCities = {2643743, 2950159, 1850147, 1283240, 2078025, 3470127, 5128581,
                            5391959, 2147714, 2193733, 1261481, 1138958, 3652462, 643492,
                            2729907, 360630,  1609350, 3448439, 6167865, 2553604};

TEST_F(DropdownSoak, TheSkyIsWorkedOutAsTheHoursTurn) {
  clock.emplace(utc(2026, 10, 25, 0, 0, 30));
  clock->waitForCities();
  ZEVSetObjectForKey("Time_Cities", TwentyCities);
  StatInterfaceTime_Time dropdown;
  dropdown.loadClocks();
  ASSERT_EQ(dropdown.items().size(), TwentyCities.size());
  dropdown.menuWillOpen(*dropdown.menu());
  std::vector<double> altitudes(dropdown.items().size());
  int records = 0;
  for (int minute = 0; minute < 24 * 60; ++minute) {
    clock->time.loop.advance(60);
    dropdown.updateClocks();
    for (size_t index = 0; index < altitudes.size(); ++index) {
      const double altitude = dropdown.items()[index]->sunData()->at("altitude-now");
      if (std::exchange(altitudes[index], altitude) != altitude && minute > 0) ++records;
    }
  }
  // Where the clocks go back an hour follows that has the same number.
  EXPECT_EQ(records, 20 * 24 - 4);
}

// Would catch: rows, views, observers and timers that outlive an opening or a change.
TEST_F(DropdownSoak, OpeningsAndChangesLeaveNothingBehind) {
  clock.emplace(utc(2026, 11, 21, 23, 59, 30));
  clock->waitForCities();
  const auto file = freshFolder() / "menu.png";
  std::mt19937 random(20261121);
  const auto below = [&](unsigned count) { return static_cast<int>(random() % count); };
  const auto changeAny = [&] {
    Array cities;
    std::ranges::sample(TwentyCities, std::back_inserter(cities), below(21), random);
    const Array formats[] = {{"HH", "':'", "mm"}, {"___FUZZY_CLOCK___"}, {"'"}, {"EEEE", "zzz"}};
    struct Change {
      const char* key;
      PropertyList value;
      const char* resetKey;
    };
    const Change changes[] = {
        {"Time_Cities", cities, "cities"},
        {"Time_CityNames", PropertyList::Dictionary{{"2643743", "ロンドン"}}, "citynames"},
        {"Time_DropdownCityLayout", below(2), "citymode"},
        {"Time_DropdownShowMoon", below(2), "moon"},
        {"Time_DropdownFormat", formats[below(4)], ""},
        {"Time_CalendarEnabled", below(2), "calendar"},
        {"DropdownTheme", below(3), "theme"},
    };
    const Change& one = changes[below(std::size(changes))];
    change(one.key, one.value, one.resetKey);
  };
  size_t usedEarly = 0;
  for (int opening = 0; opening < 600; ++opening) {
    open(menu());
    changeAny();
    if (opening % 10 == 0) screen.writePng(file, 1);
    clock->time.loop.advance(0.1);
    screen.tracker().close();
    changeAny();
    if (opening == 200) usedEarly = mallinfo2().uordblks;
  }
  // The sanitizers' allocators tell nothing.
  EXPECT_LE(mallinfo2().uordblks, usedEarly + (1U << 20));
}

}  // namespace
