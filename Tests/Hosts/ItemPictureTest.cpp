#include "Hosts/Bar/ItemPicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

namespace {

/// An item of one line of text.
class TextExtra : public NSMenuExtra {
 public:
  explicit TextExtra(NSTextAttributes attributes) : attributes_(std::move(attributes)) {}

  void initWithBundle(const NSBundle&) override {
    setView(std::make_shared<View>(NSMakeRect(0, 0, Width, Height), *this));
    setLength(Width);
  }

  std::string text;

 private:
  static constexpr double Width = 180;

  class View : public NSMenuExtraView {
   public:
    using NSMenuExtraView::NSMenuExtraView;
    void drawRect(NSRect) override {
      const auto& extra = static_cast<TextExtra&>(menuExtra());
      drawAtPointWithAttributes(extra.text, {0, 3}, extra.attributes_);
    }
  };

  NSTextAttributes attributes_;
};

/// What a display shows that takes no pixel but those which are told to have changed.
struct Shown {
  std::vector<uint32_t> pixels;

  void take(const ItemPicture& picture) {
    const PixelPicture whole = picture.pixels();
    const PixelRect& part = picture.changed();
    pixels.resize(whole.pixels.size());
    for (int y = part.y; y < part.y + part.height; ++y) {
      std::copy_n(whole.row(y) + part.x, part.width, pixels.begin() + y * whole.width + part.x);
    }
  }
};

std::string twoDigits(int number) { return std::to_string(100 + number).substr(1); }

struct Line {
  const char* name;
  double scale;
  bool hasEvenDigits;
  std::optional<double> shadow;  ///< How far to the right.
  bool hasCells;
};

class ItemPictureOf : public testing::TestWithParam<Line> {};

// Seconds, minutes and hours that roll over, a jump, another day, and a week that comes again.
TEST_P(ItemPictureOf, AClockIsAsIfItWereDrawnAnewEachSecond) {
  const Line& line = GetParam();
  const NSFont font = NSFont::systemFontOfSize(13);
  NSTextAttributes attributes;
  attributes.font = line.hasEvenDigits ? font.withMonospacedNumbers() : font;
  if (line.shadow) {
    attributes.shadow = NSShadow{{*line.shadow, -1}, NSColor::colorWithDeviceRed(1, 0, 0, 0.5)};
  }
  const auto extra = std::make_shared<TextExtra>(attributes);
  NSMenuBarSlot slot;
  slot.setExtra(extra);
  extra->init(slot, NSBundle());
  const std::vector<uint32_t> background(static_cast<size_t>(22 * line.scale), 0xFFEFF0F2);
  const ItemPlace place{.barWidth = 640, .scale = line.scale};

  ItemPicture kept;
  Shown shown;
  std::vector<uint32_t> before;
  int widerChanges = 0;
  for (int step = 0; step < 80; ++step) {
    const int second = 35'990 + step + (step > 30 ? 4'000 : 0);
    const std::string day = step / 20 % 2 == 0 ? "Sat 2" : "Sun 2";
    extra->text = day + std::to_string(step / 40) + " Nov  " + twoDigits(second / 3600) + ":" +
                  twoDigits(second / 60 % 60) + ":" + twoDigits(second % 60);
    ASSERT_TRUE(kept.render(slot, place, background));
    shown.take(kept);
    ItemPicture fresh;
    ASSERT_TRUE(fresh.render(slot, place, background));
    ASSERT_TRUE(std::ranges::equal(shown.pixels, fresh.pixels().pixels)) << extra->text;
    const int width = fresh.frame().width;
    const int height = fresh.frame().height;
    const PixelRect least =
        step == 0 ? kept.changed() : difference({before, width, height, width}, fresh.pixels());
    if (kept.changed() != least) ++widerChanges;
    before.assign(fresh.pixels().pixels.begin(), fresh.pixels().pixels.end());
    EXPECT_FALSE(kept.render(slot, place, background)) << "nothing has changed";
  }
  // A digit's cell is as wide as the widest; a drawing tells just what differs.
  EXPECT_EQ(widerChanges > 0, line.hasCells) << widerChanges;
}

INSTANTIATE_TEST_SUITE_P(Lines, ItemPictureOf,
                         testing::Values(Line{"Plain", 1, true, {}, true},
                                         Line{"AtScale2", 2, true, {}, true},
                                         Line{"AtAFraction", 1.25, true, {}, true},
                                         Line{"Shadowed", 2, true, 0.5, true},
                                         Line{"ShadowOnOthers", 1, true, 9, false},
                                         Line{"OfUnevenDigits", 1, false, {}, false}),
                         [](const auto& line) { return line.param.name; });

}  // namespace
