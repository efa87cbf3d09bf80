#include "Tests/Hosts/TestExtra/TestExtra.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"

namespace {

class TestExtraView : public NSMenuExtraView {
 public:
  using NSMenuExtraView::NSMenuExtraView;
  void drawRect(NSRect) override { static_cast<TestExtra&>(menuExtra()).drawItem(); }
};

void log(const std::string& line) {
  if (const char* path = std::getenv("TEST_EXTRA_LOG")) {
    std::ofstream(path, std::ios::app) << line << std::endl;
  }
}

void fill(const NSColor& color, double x, double y, double width, double height) {
  color.setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(x, y, width, height)).fill();
}

}  // namespace

void TestExtra::initWithBundle(const NSBundle& bundle) {
  NSMenuExtra::initWithBundle(bundle);
  setView(std::make_shared<TestExtraView>(NSMakeRect(0, 0, wantedLength_, Height), *this));
  setLength(wantedLength_);
  if (const char* rows = std::getenv("TEST_EXTRA_MENU")) {
    menu_ = std::make_unique<TestExtraMenu>(std::atoi(rows), log);
  }
  commands_ = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "TestExtraCommand", [this](const NSNotification& command) { obey(command.userInfo); });
}

std::shared_ptr<NSMenu> TestExtra::menu() {
  log("menu");
  return menu_ ? menu_->menu() : nullptr;
}

void TestExtra::willUnload() { log("willUnload"); }

void TestExtra::obey(const PropertyList::Dictionary& command) {
  for (const auto& [name, value] : command) {
    if (name == "length") wantedLength_ = value.doubleValue();
    if (name == "failure") failure_ = *value.string();
    if (name == "mark") mark_ = *value.string();
    if (!menu_) continue;
    if (name == "rows") menu_->setRows(static_cast<int>(value.doubleValue()));
    if (name == "name") menu_->setName(*value.string());
    if (name == "width") menu_->setWidth(value.doubleValue());
  }
  view()->setNeedsDisplay(true);
}

void TestExtra::drawItem() {
  const double width = wantedLength_;
  view()->setFrameSize({width, Height});
  if (isMenuDown()) {
    drawMenuBackground(true);
  } else {
    fill(NSColor::colorWithDeviceWhite(0.5, 1), 0, 0, width, Height);
  }
  fill(NSColor::colorWithDeviceRed(0, 0, 1, 1), 0, Height - 1, width, 1);
  fill(NSColor::colorWithDeviceRed(1, 1, 0, 1), 0, 0, width, 1);
  fill(NSColor::colorWithDeviceRed(1, 0, 0, 1), 0, 0, 1, Height);
  fill(NSColor::colorWithDeviceRed(0, 1, 0, 1), width - 1, 0, 1, Height);
  for (int line = 0; line < 16; ++line) {
    fill(NSColor::colorWithDeviceWhite(line % 2, 1), 4 + line * 0.5, 6, 0.5, 10);
  }
  if (!mark_.empty()) log(std::exchange(mark_, ""));
  if (!failure_.empty()) {
    log("failure");
    throw std::runtime_error(failure_);
  }
  if (length() != width) setLength(width);
}

extern "C" void NSMakePrincipalClass(std::shared_ptr<NSMenuExtra>& extra) {
  if (std::getenv("TEST_EXTRA_IS_MISSING") == nullptr) extra = std::make_shared<TestExtra>();
}
