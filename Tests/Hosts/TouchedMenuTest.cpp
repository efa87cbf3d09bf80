// A finger on the item's menu. No compositor at hand lets a program touch, so the display is none.

#include <gtest/gtest.h>

#include "Hosts/Bar/BarMenus.h"
#include "Tests/Hosts/TestExtra/TestExtraMenu.h"

namespace {

struct UnseenWindow : MenuWindow {
  void present(PixelRect, const PixelPicture&, PixelRect) override {}
  void requestFrame() override {}
};

struct UnseenSession : MenuSession {
  double scale() const override { return 1; }
  int pixelGrid() const override { return 1; }
  bool isComposited() const override { return true; }
  std::unique_ptr<MenuWindow> makeWindow() override { return std::make_unique<UnseenWindow>(); }
};

struct UnseenDisplay : Display {
  std::vector<Monitor> monitors() const override { return {}; }
  std::unique_ptr<BarSurface> makeBar(const Monitor&, int, SurfaceClient&) override {
    return nullptr;
  }
  std::unique_ptr<MenuSession> beginMenus(const Monitor&, MenuSessionClient&) override {
    return std::make_unique<UnseenSession>();
  }
};

class ItemWithMenu : public NSMenuExtra {
 public:
  std::shared_ptr<NSMenu> menu() override { return rows_.menu(); }

  std::string log;

 private:
  TestExtraMenu rows_{5, [this](const std::string& line) { log += line + " "; }};
};

// Would catch: a row that is not where the finger was last, for a finger that is lifted tells no
// place, a second finger that acts, and a finger that is awaited for ever.
TEST(TouchedMenu, ChoosesWhereTheFirstFingerWas) {
  using enum TouchEvent::Kind;
  const struct {
    const char* what;
    std::vector<TouchEvent> touches;
    const char* done;
  } cases[] = {
      {"tapped", {{Down, 1, {500, 30}}, {Up, 1, {}}}, "light:Row 1 close act:Row 1 "},
      {"drawn from the bar",
       {{Move, 1, {500, 30}}, {Move, 1, {500, 70}}, {Up, 1, {}}},
       "light:Row 1 light:Row 3 close act:Row 3 "},
      {"second finger", {{Down, 1, {500, 30}}, {Down, 2, {500, 70}}, {Up, 2, {}}}, "light:Row 1 "},
      {"cancelled",
       {{Down, 1, {500, 30}}, {Cancel, 1, {}}, {Down, 2, {500, 70}}, {Up, 2, {}}},
       "light:Row 1 light:Row 3 close act:Row 3 "},
  };
  for (const auto& [what, touches, done] : cases) {
    SCOPED_TRACE(what);
    UnseenDisplay display;
    NSMenuBarSlot slot;
    const auto item = std::make_shared<ItemWithMenu>();
    slot.setExtra(item);
    BarMenus menus(display, slot);
    ASSERT_TRUE(menus.open({"", NSMakeRect(0, 0, 640, 480)}, NSMakeRect(568, 0, 72, 22),
                           MenuOpening::Press));
    item->log.clear();
    for (const TouchEvent& touch : touches)
      menus.touchEvent(touch);
    EXPECT_EQ(item->log, done);
  }
}

}  // namespace
