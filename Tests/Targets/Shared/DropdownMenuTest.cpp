// Menus of rows: what a rebuild does to them, what their makers promise, and which rows are lit.

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "Targets/Shared/Dropdown/MenuItemHighlight.h"
#include "Targets/Shared/Dropdown/MenuItemSizes.h"
#include "Targets/Shared/Dropdown/StatInterface.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

/// Notes what is done to it, as in the cases.
class NotingMenu : public ZEVMenu_Time {
 public:
  void insertItemAtIndex(std::shared_ptr<NSMenuItem> item, size_t index) override {
    notes.push_back("+" + item->title() + std::to_string(index));
    ZEVMenu_Time::insertItemAtIndex(std::move(item), index);
  }
  void removeItem(NSMenuItem& item) override {
    notes.push_back("-" + item.title());
    ZEVMenu_Time::removeItem(item);
  }
  std::string titles() const {
    std::string titles;
    for (const auto& item : itemArray())
      titles += item->title();
    return titles;
  }

  std::vector<std::string> notes;
};

TEST(DropdownRebuild, TouchesNoMoreRowsThanItMust) {
  for (const auto& [before, wanted, steps, after] :
       casesIn<std::string, std::string, std::vector<std::string>, std::string>(
           "Targets/Shared/Cases/menu-rebuilds.txt")) {
    SCOPED_TRACE(before + " to " + wanted);
    std::map<char, std::shared_ptr<NSMenuItem>> rows;
    for (const char name : {'a', 'b', 'c', 'd'}) {
      rows[name] = createMenuItem();
      rows[name]->setTitle(std::string(1, name));
    }
    const auto list = [&](const std::string& names) {
      StatInterface_Time::MenuItems items;
      for (const char name : names)
        items.push_back(rows[name]);
      return items;
    };
    const auto menu = std::make_shared<NotingMenu>();
    StatInterface_Time().rebuildMenu(*menu, list(before));
    menu->notes.clear();
    StatInterface_Time().rebuildMenu(*menu, list(wanted));
    EXPECT_EQ(menu->notes, steps);
    EXPECT_EQ(menu->titles(), after);
    for (size_t index = 0; index < menu->numberOfItems(); ++index) {
      const auto& view = menu->itemArray()[index]->view();
      EXPECT_EQ(std::static_pointer_cast<StatInterfaceView_Time>(view)->itemIndex(), index);
    }
  }
}

TEST(DropdownRows, StandInTheirFrames) {
  const auto target = std::make_shared<NSObject>();
  struct Case {
    std::shared_ptr<ZEVMenuItem_Time> item;
    NSSize size;
    NSRect part;
  };
  const auto button = createButtonMenuItem("text", target, {}, 200, 20);
  for (const auto& [item, size, part] :
       {Case{createCenteredLabel("text", 200, 15), {200, 15}, NSMakeRect(8, 0, 184, 15)},
        {createTextMenuItem("text", 200, 31, true), {200, 31}, NSMakeRect(8, 8, 180, 31)},
        {button, {200, 20}, NSMakeRect(0, 2, 200, 20)},
        {createSpacerItem(nullptr, "", 0, 12), {1, 12}, NSZeroRect},
        {createFillerItem(nullptr, "", 225, 0), {225, 1}, NSZeroRect}}) {
    const auto view = item->view();
    EXPECT_EQ(view->frame(), (NSRect{{0, 0}, size}));
    EXPECT_EQ(view->subviews().empty() ? NSZeroRect : view->subviews()[0]->frame(), part);
  }
  EXPECT_FALSE(button->useCustomHighlight()) << "only a row of 15 points reaches out";
  EXPECT_TRUE(button->isEnabled());
  EXPECT_FALSE(createButtonMenuItem("text", nullptr, {}, 0, 15)->isEnabled());
  const auto measured = createTextMenuItem("Tomorrow", 0, 15, true);  // Bold in the light theme.
  EXPECT_EQ(measured->view()->frame().size.width, std::floor(measured->field()->textWidth()) + 30);
}

TEST(DropdownRows, AreKeptByTheirOwnerUnderAKey) {
  const auto menu = createMenu();
  const auto first = createFillerItem(menu.get(), "gap", 225, 2);
  EXPECT_EQ(createFillerItem(menu.get(), "gap", 100, 9), first);
  EXPECT_NE(createFillerItem(nullptr, "gap", 225, 2), first);
  EXPECT_NE(createFillerItem(menu.get(), "", 225, 2), createFillerItem(menu.get(), "", 225, 2));
  menu->addItem(first);
  menu->removeItemWithKey("other");
  EXPECT_EQ(menu->numberOfItems(), 1);
  menu->removeItemWithKey("gap");
  menu->removeItem(*first);
  EXPECT_EQ(menu->numberOfItems(), 0);
  menu->addItem(createFillerItem(menu.get(), "gap", 225, 2));
  EXPECT_EQ(menu->itemArray().front(), first);
}

TEST(DropdownRows, AreStackedOfSubItems) {
  const auto part = [](double width, double height) {
    auto item = createMenuItem();
    item->view()->setFrameSize({width, height});
    return item;
  };
  const auto row = createMenuItem();
  const auto narrow = part(100, 15.9);
  const auto wide = part(300, 20);
  row->addSubMenuItem(narrow, "");
  EXPECT_TRUE(row->menuItemsOrdered().empty()) << "without a key";
  row->addSubMenuItem(narrow, "narrow");
  EXPECT_EQ(row->view()->frame().size, (NSSize{225, 15}));
  row->addSubMenuItem(wide, "wide");
  EXPECT_EQ(row->view()->frame().size, (NSSize{300, 35}));
  EXPECT_EQ(narrow->alternateView()->frame(), NSMakeRect(0, 0, 300, 15.9));
  EXPECT_EQ(wide->alternateView()->frame(), NSMakeRect(0, 15.9, 300, 20));
  EXPECT_TRUE(wide->alternateView()->isBackgroundDisabled());
  row->removeItemWithKey("narrow");
  EXPECT_EQ(wide->alternateView()->frame().origin.y, 0);
  {
    const auto other = createMenuItem();
    other->addSubMenuItem(wide, "wide");
    EXPECT_EQ(wide->parentItem2(), other.get());
    EXPECT_EQ(row->view()->frame().size, (NSSize{300, 0})) << "it stays as wide as it was";
    row->removeItem(*wide);
    EXPECT_EQ(other->menuItemsOrdered().size(), 1) << "it is no other's to take out";
  }
  EXPECT_EQ(wide->parentItem2(), nullptr);
}

TEST(DropdownRows, FitTheirTexts) {
  const auto row = [](const char* label, double x) {
    auto item = createMenuItem();
    item->setLabel(createLabelField(NSTextAlignment::Left, NSMakeRect(x, 0, 50, 15)));
    item->setField(createValueField(NSTextAlignment::Right, NSMakeRect(60, 0, 50, 15)));
    item->label()->setStringValue(label);
    item->field()->setStringValue("12 h");
    item->view()->setFrameSize({10, 15});
    item->view()->addSubview(item->label());
    item->view()->addSubview(item->field());
    return item;
  };
  EXPECT_EQ(resizeMenuItems({}, 70, 10), 70);
  const auto first = row("Day", 8);
  const auto last = row("Civil twilight", 30);
  const double longest = std::floor(last->label()->textWidth());
  EXPECT_EQ(resizeMenuItems({first, last}, 50, 60), 30 + longest + 60 + 10);
  EXPECT_EQ(first->view()->frame().size.width, 8 + longest + 60 + 10) << "early rows are narrower";
  EXPECT_EQ(first->label()->frame(), NSMakeRect(8, 0, longest + 10, 15));
  EXPECT_EQ(first->field()->frame(), NSMakeRect(8 + longest, 0, 60, 15));

  const auto alone = row("Day", 8);
  const double field = std::floor(alone->field()->textWidth()) + 30;
  EXPECT_EQ(resizeMenuItemToContent(*alone, 5),
            8 + std::floor(alone->label()->textWidth()) + 20 + field + 8);
  alone->view()->setFrameSize({400.5, 15});
  EXPECT_EQ(resizeMenuItemToContent(*alone, 5), 400) << "never narrower";
  EXPECT_EQ(alone->field()->frame(), NSMakeRect(400 - field - 8, 0, field, 15));
}

/// What of a row is lit: nothing, all, or a stretch "from, height".
std::string lit(const ZEVMenuItem_Time& item) {
  const auto view = item.view();
  std::string text = view->menuItemHighlighted() ? "lit" : "";
  if (!view->customHighlightRect()) return text;
  const NSRect& rect = view->highlightRect();
  return text + " " + std::to_string(static_cast<int>(rect.origin.y)) + "," +
         std::to_string(static_cast<int>(rect.size.height));
}

TEST(DropdownHighlight, ReachesIntoTheNeighboursOfALowRow) {
  SimulatedTime time;
  const auto target = std::make_shared<NSObject>();
  const auto button = createButtonMenuItem("Open", target, {}, 225, 15);
  const auto flipped = createTextMenuItem("text", 225, 20, true);
  const auto upright = createFillerItem(nullptr, "", 225, 12);
  const auto spacer = createSpacerItem(nullptr, "", 225, 12);
  using Rows = std::vector<std::shared_ptr<ZEVMenuItem_Time>>;
  struct Case {
    Rows rows;
    size_t target;
    std::vector<std::string> lit;
  };
  // One point of 17 shows: below 19 of 20 downwards, above 11 of 12 upwards, else 16 are beyond.
  for (const auto& [rows, index, expected] :
       {Case{{flipped, button, upright}, 1, {" 19,17", "lit -1,17", " 11,17"}},
        {{upright, button, flipped}, 1, {" -16,17", "lit -1,17", " -16,17"}},
        {{button}, 0, {"lit -1,17"}},
        {{button, flipped}, 1, {"", "lit"}},
        {{flipped, spacer}, 1, {"", ""}}}) {
    const auto menu = createMenu();
    for (const auto& row : rows)
      menu->addItem(row);
    const auto all = [&rows = rows] {
      std::vector<std::string> texts;
      for (const auto& row : rows)
        texts.push_back(lit(*row));
      return texts;
    };
    highlightMenuItem(*menu, rows[index].get());
    EXPECT_EQ(all(), std::vector<std::string>(rows.size())) << "on the next turn only";
    time.loop.runPending();
    EXPECT_EQ(all(), expected);
    highlightMenuItem(*menu, nullptr);
    time.loop.runPending();
    EXPECT_EQ(all(), std::vector<std::string>(rows.size()));
    highlightMenuItem(*menu, rows[index].get());
    time.loop.runPending();
    highlightMenuItem(*menu, rows[index].get());
    menu->removeItem(*rows[index]);
    time.loop.runPending();
    EXPECT_EQ(all(), std::vector<std::string>(rows.size())) << "taken out meanwhile";
    highlightMenuItem(*menu, rows[0].get());  // And the menu goes.
  }
  time.loop.runPending();
}

}  // namespace
