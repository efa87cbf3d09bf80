#include <gtest/gtest.h>
#include <stdlib.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/MoonPhaseView.h"
#include "Targets/VelmoraTime/MoonStatCollector.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

namespace {

constexpr double FullMoonAge = 14.765294075012207;

/// The bar's Moon with a blue dark side and a red lit one, both square, so that the terminator is
/// met on every row.
class MoonPicture : public testing::Test {
 protected:
  MoonPicture() {
    writeFile(folder / "Velmora.bundle" / "menubar-moon-light.svg", square("#f00"));
    writeFile(folder / "Velmora.bundle" / "menubar-moon-dark.svg", square("#00f"));
    moon.setSize(16);
    moon.setRange(22);
    moon.setLight("menubar-moon-light");
    moon.setDark("menubar-moon-dark");
  }

  static std::string square(const std::string& color) {
    return R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16"><path fill=")" +
           color + R"(" d="M0 0h16v16H0z"/></svg>)";
  }

  struct Lit {
    double points;  ///< How much of the middle row is lit.
    std::string side;
  };

  /// In the middle row, where the curve is farthest from the middle.
  static Lit litIn(const BitmapSurface& surface) {
    const int row = surface.pixelHeight() / 2;
    double sum = 0;
    for (int column = 0; column < surface.pixelWidth(); ++column) {
      const NSColor color = surface.pixelAt(column, row);
      sum += color.redComponent() * color.alphaComponent();
    }
    const bool isRight = surface.pixelAt(16 * Scale - 1, row).redComponent() == 1;
    return {sum / Scale, isRight ? "right" : "left"};
  }
  Lit drawn(double age, double darkFraction) {
    moon.setAge(age);
    moon.setIllumination(darkFraction);
    moon.setImage(nullptr);
    BitmapSurface surface({16, 16}, Scale);
    const NSCurrentGraphicsContext current(surface.context());
    moon.image()->drawAtPoint({0, 0});
    return litIn(surface);
  }
  static Lit inBar(const RunningClock& clock) {
    BitmapSurface surface({20, 22}, Scale);
    clock.slot.draw(surface.context());
    return litIn(surface);
  }

  static constexpr int Scale = 4;
  const std::filesystem::path folder = freshFolder();
  const EnvironmentVariable support{"VELMORA_SUPPORT_DIR", folder.string()};
  MoonPhaseView_Time moon{NSMakeRect(0, 2, 16, 16)};
};

TEST_F(MoonPicture, TheTerminatorTravelsThroughTheLunation) {
  for (const auto& [age, dark, points, side] : casesIn<double, double, double, std::string>(
           "Targets/VelmoraTime/Cases/moon-terminator.txt")) {
    const Lit lit = drawn(age, dark);
    EXPECT_NEAR(lit.points, points, 0.06) << age << ", " << dark;
    if (side != "either") {
      EXPECT_EQ(lit.side, side) << age << ", " << dark;
    }
  }
}

TEST_F(MoonPicture, TheSouthSeesItMirrored) {
  moon.setHemisphere(1);
  EXPECT_EQ(drawn(7, 0.5).side, "left") << "a zone without a place leaves what was set";
  EXPECT_EQ(drawn(22, 0.5).side, "right");
  EXPECT_NEAR(drawn(3, 0.9).points, 1.103, 0.06);
}

// U.S. Naval Observatory: the phases of November 2026.
// "com.apple.preferences.timezone.selected_city" follows the system's zone.
TEST_F(MoonPicture, TheBarShowsThePhaseAsItIsSeenThere) {
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"___ICON__MOON__"});
  EXPECT_NEAR(inBar(RunningClock(utc(2026, 11, 9, 7, 2))).points, 0, 0.06) << "new";
  EXPECT_NEAR(inBar(RunningClock(utc(2026, 11, 24, 14, 53))).points, 16, 0.06) << "full";
  RunningClock clock(utc(2026, 11, 17, 11, 48));
  EXPECT_NEAR(inBar(clock).points, 7.835, 0.1) << "first quarter";
  EXPECT_EQ(inBar(clock).side, "right");
  for (const auto& [zone, side] :
       {std::pair{"Australia/Sydney", "left"}, {"Europe/Berlin", "right"}}) {
    setenv("TZ", zone, 1);
    clock.post("NSSystemTimeZoneDidChangeNotification");
    clock.time.loop.advance(61);
    EXPECT_EQ(inBar(clock).side, side) << zone;
  }
}

TEST_F(MoonPicture, TheTerminatorIsSmoothAtEveryScale) {
  drawn(7, 0.8);
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    BitmapSurface surface({16, 16}, scale);
    const NSCurrentGraphicsContext current(surface.context());
    moon.image()->drawAtPoint({0, 0});
    int mixed = 0;
    for (int row = 0; row < surface.pixelHeight(); ++row) {
      for (int column = 0; column < surface.pixelWidth(); ++column) {
        const double red = surface.pixelAt(column, row).redComponent();
        if (red > 0.05 && red < 0.95) ++mixed;
      }
    }
    EXPECT_GE(mixed, surface.pixelHeight() * 2 / 3) << scale;
  }
}

TEST_F(MoonPicture, AMissingPictureLeavesItsLayerOut) {
  moon.setDark("");
  EXPECT_NEAR(drawn(7, 0.5).points, 7.835, 0.06);
  moon.setLight("missing");
  EXPECT_EQ(drawn(7, 0.5).points, 0);
}

/// A pixel of the Moon on a ground, and how much of it the Moon covers.
struct Pixel {
  std::array<double, 3> color;
  double coverage;
};

std::vector<Pixel> pixelsOf(MoonPhaseView_Time& moon, double age, double litFraction, double scale,
                            double ground) {
  moon.showPhase(age, litFraction);
  BitmapSurface surface(moon.frame().size, scale);
  const NSCurrentGraphicsContext current(surface.context());
  moon.image()->drawAtPoint({0, 0});
  std::vector<Pixel> pixels;
  for (int row = 0; row < surface.pixelHeight(); ++row) {
    for (int column = 0; column < surface.pixelWidth(); ++column) {
      const NSColor color = surface.pixelAt(column, row);
      const double alpha = color.alphaComponent();
      const auto onGround = [=](double part) { return alpha * part + (1 - alpha) * ground; };
      pixels.push_back({{onGround(color.redComponent()), onGround(color.greenComponent()),
                         onGround(color.blueComponent())},
                        alpha});
    }
  }
  return pixels;
}

/// The share of the full Moon's disc that looks lit. A pixel counts as far as it has gone from its
/// color at new moon to that at full moon; one that is much the same at both is never lit.
double litShare(const std::vector<Pixel>& drawn, const std::vector<Pixel>& unlit,
                const std::vector<Pixel>& full) {
  constexpr double LeastDifference = 0.2;
  double lit = 0;
  double disc = 0;
  for (size_t i = 0; i < drawn.size(); ++i) {
    double along = 0;
    double whole = 0;
    for (size_t part = 0; part < 3; ++part) {
      const double way = full[i].color[part] - unlit[i].color[part];
      along += (drawn[i].color[part] - unlit[i].color[part]) * way;
      whole += way * way;
    }
    const double coverage = full[i].coverage;
    disc += coverage;
    if (std::sqrt(whole) > LeastDifference * coverage) lit += coverage * along / whole;
  }
  return lit / disc;
}

/// Through both halves of the cycle, from a thin crescent to a nearly full Moon.
void expectLightOfEachPhase(MoonPhaseView_Time& moon, double scale, double ground) {
  const auto unlit = pixelsOf(moon, 0, 0, scale, ground);
  const auto full = pixelsOf(moon, FullMoonAge, 1, scale, ground);
  for (const double age : {7.0, 22.0}) {
    for (int percent = 5; percent <= 95; percent += 5) {
      const auto drawn = pixelsOf(moon, age, percent / 100.0, scale, ground);
      EXPECT_NEAR(100 * litShare(drawn, unlit, full), percent, 3)
          << moon.frame().size.width << " points at scale " << scale << " on " << ground
          << ", hemisphere " << moon.hemisphere() << ", age " << age;
    }
  }
}

// The illuminated area of a sphere's disc is its illuminated fraction; the real pictures have to
// show that much light.
TEST(MoonPictures, ShowAsMuchLightAsThereIs) {
  const EnvironmentVariable support{"VELMORA_SUPPORT_DIR", VELMORA_SOURCE_DIR "/Resources"};
  for (const auto& [side, range, light, dark, ground] :
       casesIn<int, int, std::string, std::string, double>(
           "Targets/VelmoraTime/Cases/moon-pictures.txt")) {
    const NSRect frame{{0, 0}, {static_cast<double>(side), static_cast<double>(side)}};
    const auto moon = MoonPhaseView_Time::moonWithFrame(frame, side, range, light, dark);
    for (const int32_t hemisphere : {0, 1}) {
      moon->setHemisphere(hemisphere);
      for (const double scale : {1.0, 1.25, 1.5, 2.0})
        expectLightOfEachPhase(*moon, scale, ground);
    }
  }
}

struct CountingDelegate : MoonStatCollectorDelegate {
  void collectorUpdatedForMode(const MoonStatCollector&, int32_t mode) override {
    ++updates;
    lastMode = mode;
  }
  int updates = 0;
  int lastMode = -1;
};

// U.S. Naval Observatory: first quarter on 2026-11-17 at 11:48 UT.
TEST(MoonCollector, TellsTheClockAtTheStartAndOnceAMinute) {
  RunningClock clock(utc(2026, 11, 17, 11, 48));
  const auto collector = MoonStatCollector::sharedMoonCollector();
  EXPECT_NEAR(collector->illumination(), 0.5, 0.01);
  const auto first = clock.view().moonImage();
  ASSERT_NE(first, nullptr);
  CountingDelegate delegate;
  auto registration = collector->addDelegate(delegate);
  registration = collector->addDelegate(delegate);
  clock.time.loop.advance(59.9);
  EXPECT_EQ(clock.view().moonImage(), first);
  EXPECT_EQ(delegate.updates, 0);
  clock.time.loop.advance(0.2);
  EXPECT_NE(clock.view().moonImage(), first);
  EXPECT_EQ(delegate.updates, 1);
  EXPECT_EQ(delegate.lastMode, 0);
  clock.time.loop.advance(86400 * 7.4);
  EXPECT_EQ(delegate.updates, 1 + 1440 * 7 + 576);
  EXPECT_GT(collector->illumination(), 0.98);
  clock.extra->willUnload();
  clock.time.loop.advance(600);
  EXPECT_EQ(delegate.updates, 1 + 1440 * 7 + 576) << "an unloaded clock leaves no timer";
}

// A delegate that is told may be the one that ends another, the collector or the whole clock.
TEST(MoonCollector, AMessageMayEndWhatIsToBeTold) {
  struct Ending : MoonStatCollectorDelegate {
    void collectorUpdatedForMode(const MoonStatCollector& collector, int32_t) override {
      end();
      EXPECT_GE(collector.illumination(), 0) << "it lasts as long as its message";
    }
    std::function<void()> end;
  };
  Ending first;
  auto second = std::make_unique<CountingDelegate>();
  CountingDelegate third;
  RunningClock clock(Saturday);
  auto collector = MoonStatCollector::sharedMoonCollector();
  const auto firstRegistration = collector->addDelegate(first);
  auto secondRegistration = collector->addDelegate(*second);
  const auto thirdRegistration = collector->addDelegate(third);
  first.end = [&] {
    secondRegistration.reset();
    second.reset();
  };
  collector->updateCurrentPhase();
  EXPECT_EQ(third.updates, 1);
  first.end = [&] {
    collector.reset();
    clock.extra->willUnload();
  };
  clock.time.loop.advance(120);
  EXPECT_EQ(third.updates, 1) << "told by a collector that has ended";
}

// The same for those who follow the tick.
TEST(TimeModule, AFollowerMayUnloadTheClockInItsTick) {
  RunningClock clock(Saturday);
  struct Follower : ZEVModuleDelegate {
    void update() override { ++updates; }
    void updateSize() override {}
    int updates = 0;
  } last;
  const auto registration = clock.module().addDelegate(last);
  clock.onTick = [&] { clock.extra->willUnload(); };
  clock.time.loop.advance(5);
  EXPECT_EQ(last.updates, 0);
}

/// How often the library that reads pictures is there: after minutes without a Moon, and with one.
int timesPicturesAreRead() {
  const auto readsPictures = [] {
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    return text.find("librsvg") != std::string::npos;
  };
  RunningClock clock(Saturday);
  clock.time.loop.advance(300);
  const bool isThereWithoutAMoon = readsPictures();
  clock.view().moonImage();
  return isThereWithoutAMoon + readsPictures();
}

// The library takes megabytes, which only a clock that shows a picture should cost. In a process of
// its own, since another test may have loaded it.
TEST(MoonCollector, AClockWithoutAMoonLoadsNoPictures) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(timesPicturesAreRead()), testing::ExitedWithCode(1), "");
}

TEST(MoonCollector, OtherSendersAndModesAreIgnored) {
  RunningClock clock(Saturday);
  const auto picture = clock.view().moonImage();
  clock.module().collectorUpdatedForMode(*MoonStatCollector::sharedMoonCollector(), 1);
  EXPECT_EQ(clock.view().moonImage(), picture);
  const auto former = MoonStatCollector::sharedMoonCollector();
  MoonStatCollector::cleanup();
  const auto present = MoonStatCollector::sharedMoonCollector();
  clock.module().collectorUpdatedForMode(*present, 0);
  EXPECT_EQ(clock.view().moonImage(), picture);
}

}  // namespace
