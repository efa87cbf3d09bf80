// What an open menu costs inside the process: rebuilding, opening, and moving over its rows.

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "Benchmarks/EmptyScreen.h"
#include "Platform/AppKit/Menus/MenuPicture.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Targets/Shared/Dropdown/MenuItemHighlight.h"
#include "Targets/Shared/Dropdown/StatInterface.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"

namespace {

StatInterface_Time::MenuItems makeRows(int count) {
  StatInterface_Time::MenuItems rows;
  for (int row = 0; row < count; ++row) {
    rows.push_back(
        createTextMenuItem("A row of the menu, number " + std::to_string(row), 0, 20, false));
    rows.back()->setHasActingView(true);
    std::static_pointer_cast<StatInterfaceView_Time>(rows.back()->view())->setHighlightable(true);
  }
  return rows;
}

/// One row of 60 goes and comes again: two rebuilds.
void rebuildWithOneRowChanged(benchmark::State& state) {
  const auto interface = std::make_shared<StatInterface_Time>();
  const auto menu = createMenu();
  const auto all = makeRows(60);
  auto fewer = all;
  fewer.erase(fewer.begin() + 30);
  interface->rebuildMenu(*menu, all);
  for (auto _ : state) {
    interface->rebuildMenu(*menu, fewer);
    interface->rebuildMenu(*menu, all);
  }
}
BENCHMARK(rebuildWithOneRowChanged);

/// From the request to pixels, 40 rows at scale 2.
void openAndDraw(benchmark::State& state) {
  EmptyScreen screen;
  MenuTracker tracker(screen);
  const auto menu = createMenu();
  for (const auto& row : makeRows(40))
    menu->addItem(row);
  for (auto _ : state) {
    tracker.open(menu, NSMakeRect(1000, 0, 100, 22), MenuOpening::Request,
                 NSUserInterfaceLayoutDirection::LeftToRight);
    tracker.prepareFrame();
    MenuPicture picture(2, 1, true);
    picture.render(tracker.panel(0), {});
    benchmark::DoNotOptimize(picture.pixels().data());
    tracker.close();
  }
}
BENCHMARK(openAndDraw)->Unit(benchmark::kMillisecond);

/// Lights the row under the pointer, as each menu's controller does.
struct Lighting : NSMenuDelegate {
  void menuWillHighlightItem(NSMenu& menu, NSMenuItem* item) override {
    highlightMenuItem(menu, item);
  }
};

/// From one row to the next, with the two drawn anew.
void hoverToTheNextRow(benchmark::State& state) {
  EmptyScreen screen;
  MenuTracker tracker(screen);
  const auto menu = createMenu();
  Lighting lighting;
  menu->setDelegate(&lighting);
  for (const auto& row : makeRows(40))
    menu->addItem(row);
  tracker.open(menu, NSMakeRect(1000, 0, 100, 22), MenuOpening::Request,
               NSUserInterfaceLayoutDirection::LeftToRight);
  MenuPicture picture(2, 1, true);
  picture.render(tracker.panel(0), {});
  double pixels = 0;
  int row = 0;
  for (auto _ : state) {
    row = (row + 1) % 40;
    tracker.pointerMoved({1050, 32.0 + 20 * row});
    NSRunLoop::mainRunLoop().runPending();
    tracker.prepareFrame();
    picture.render(tracker.panel(0), {});
    pixels += picture.changed().width * picture.changed().height;
  }
  state.counters["pixels"] = benchmark::Counter(pixels, benchmark::Counter::kAvgIterations);
  tracker.close();
  menu->setDelegate(nullptr);
}
BENCHMARK(hoverToTheNextRow)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
