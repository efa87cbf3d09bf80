// What a clock costs, beside the least that its library could do for the same text.

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <string>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

constexpr double Start = 1'795'000'000;
const ClockElements Elements = {"EE", "' '", "HH", ":", "mm"};

/// The text of a format list, at a new second each time.
void dateStringOfFiveElements(benchmark::State& state) {
  NSDateFormatter& formatter = ZEVDateAndTimeUtilities::sharedUtilities().dateFormatter();
  formatter.setTimeZone(*NSTimeZone::timeZoneWithName("Europe/Berlin"));
  double time = Start;
  for (auto _ : state)
    benchmark::DoNotOptimize(dateString(Elements, formatter, time += 1));
}
BENCHMARK(dateStringOfFiveElements);

/// The rival: one compiled ICU pattern for the whole text, with ICU's own zone.
void rawIcuFormatOfJoinedPattern(benchmark::State& state) {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format("ccc HH:mm", icu::Locale("en_US"), status);
  format.adoptTimeZone(icu::TimeZone::createTimeZone("Europe/Berlin"));
  double time = Start;
  for (auto _ : state) {
    icu::UnicodeString text;
    format.format((time += 1) * 1000, text);
    std::string utf8;
    benchmark::DoNotOptimize(text.toUTF8String(utf8));
  }
}
BENCHMARK(rawIcuFormatOfJoinedPattern);

/// One second in the bar: the tick's work and the redraw of the item at a scale.
void tickWithRedraw(benchmark::State& state) {
  const auto scale = static_cast<double>(state.range(0));
  setPreferenceOverride(
      "Time_MenubarFormat",
      PropertyList::Array{"EE", "' '", "d", "' '", "MMM", "'  '", "HH", "':'", "mm", "':'", "ss"},
      ZEVPreferences_Time::Domain);
  ManualClock clock(Start);
  SystemClock::install(&clock);
  const auto extra = std::make_shared<VelmoraTime>();
  const auto view = make<VelmoraTimeMenuExtraView>(NSMakeRect(0, 0, 20, 22), *extra);
  BitmapSurface surface({240, NSMenuExtra::Height}, scale);
  const NSCurrentGraphicsContext current(surface.context());
  for (auto _ : state) {
    clock.advanceMicroseconds(1'000'000);
    view->update();
    menuBarBackgroundColor(false).setFill();
    NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 240, NSMenuExtra::Height)).fill();
    benchmark::DoNotOptimize(view->drawAtOffset(0));
  }
  SystemClock::install(nullptr);
}
BENCHMARK(tickWithRedraw)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  // The machine's own zone, locale and settings stay out of the figures.
  setenv("TZ", "Europe/Berlin", 1);
  setenv("LANG", "en_US.UTF-8", 1);
  ignoreStoredPreferences(ZEVPreferences_Time::Domain);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
