#include "Tests/Hosts/TestExtra/TestExtraMenu.h"

#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Views/NSTextField.h"

namespace {

constexpr double RowHeight = 20;
constexpr double RowWidth = 160;

class TestRow : public NSView {
 public:
  TestRow(const NSMenuItem& item, double grey)
      : NSView(NSMakeRect(0, 0, RowWidth, RowHeight)), item_(item), grey_(grey) {
    setAutoresizingMask(NSViewWidthSizable);
  }

  void drawRect(NSRect) override {
    (item_.isHighlighted() ? NSColor::colorWithDeviceRed(0, 0, 1, 1)
                           : NSColor::colorWithDeviceWhite(grey_, 1))
        .setFill();
    NSBezierPath::bezierPathWithRect(bounds()).fill();
  }

 private:
  const NSMenuItem& item_;  // It owns this view.
  double grey_;
};

class TestButton : public NSView {
 public:
  TestButton(NSRect frame, std::function<void()> action)
      : NSView(frame), action_(std::move(action)) {
    setAutoresizingMask(NSViewMinXMargin);
  }

  bool tracksMouse() const override { return true; }
  bool acceptsFirstResponder() const override { return true; }
  void mouseUp(const NSEvent& event) override {
    if (NSPointInRect(convertPointFromView(event.locationInWindow, nullptr), bounds())) action_();
  }
  bool accessibilityPerformPress() override {
    action_();
    return true;
  }
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Button; }
  std::string accessibilityLabel() const override { return "Press"; }
  void drawRect(NSRect) override {
    NSColor::colorWithDeviceRed(1, 0.5, 0, 1).setFill();
    NSBezierPath::bezierPathWithRect(bounds()).fill();
  }

 private:
  std::function<void()> action_;
};

}  // namespace

TestExtraMenu::TestExtraMenu(int rows, Log log) : log_(std::move(log)) {
  menu_->setHasPadding(false);
  menu_->setDelegate(this);
  setRows(rows);
}

TestExtraMenu::~TestExtraMenu() {
  menu_->setDelegate(nullptr);
  menu_->cancelTracking();
}

std::shared_ptr<NSMenuItem> TestExtraMenu::makeRow(const std::string& title) {
  const auto item = std::make_shared<NSMenuItem>();
  item->setTitle(title);
  const double grey = title.back() % 2 == 0 ? 0.75 : 0.9;
  const auto view = std::make_shared<TestRow>(*item, grey);
  const auto text = std::make_shared<NSTextField>(NSMakeRect(8, 2, RowWidth - 60, 15));
  text->setFont(NSFont::systemFontOfSize(12));
  text->setStringValue(title);
  view->addSubview(text);
  item->setView(view);
  item->setAction([this, title] { log_("act:" + title); });
  return item;
}

void TestExtraMenu::setRows(int rows) {
  while (static_cast<int>(menu_->numberOfItems()) > rows)
    menu_->removeItemAtIndex(menu_->numberOfItems() - 1);
  for (int row = static_cast<int>(menu_->numberOfItems()) + 1; row <= rows; ++row) {
    const auto item = makeRow("Row " + std::to_string(row));
    if (row == 2) {
      const auto submenu = std::make_shared<NSMenu>();
      submenu->setHasPadding(false);
      for (const char* title : {"Sub 1", "Sub 2", "Sub 3"})
        submenu->addItem(makeRow(title));
      item->setSubmenu(submenu);
    }
    if (row == 3) {
      item->view()->addSubview(std::make_shared<TestButton>(NSMakeRect(RowWidth - 48, 2, 40, 16),
                                                            [this] { log_("press"); }));
    }
    menu_->addItem(item);
  }
}

void TestExtraMenu::setWidth(double width) {
  if (menu_->numberOfItems() == 0) return;
  menu_->itemArray().front()->view()->setFrameSize({width, RowHeight});
}

void TestExtraMenu::setName(const std::string& name) {
  if (menu_->numberOfItems() > 0) menu_->itemArray().front()->setAccessibilityLabel(name);
}

void TestExtraMenu::menuWillOpen(NSMenu&) { log_("open"); }

void TestExtraMenu::menuDidClose(NSMenu&) { log_("close"); }

void TestExtraMenu::menuWillHighlightItem(NSMenu& menu, NSMenuItem* item) {
  log_("light:" + (item != nullptr ? item->title() : "-"));
  for (const auto& row : menu.itemArray())
    row->view()->setNeedsDisplay(true);
}
