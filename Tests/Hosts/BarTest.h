#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/DisplayServers.h"
#include "Tests/Support/TestBus.h"

/// The program under test.
std::filesystem::path menuBarProgram();

/// The bundle of `TestExtra`.
std::filesystem::path testBundle();

/// The colours of the bar and of the item `TestExtra`.
namespace colors {
constexpr uint32_t LightBar = 0xEFF0F2;
constexpr uint32_t DarkBar = 0x252629;
constexpr uint32_t Body = 0x808080;
constexpr uint32_t Selected = 0x2873DE;
}  // namespace colors

/// Where an item is looked for in a picture of one monitor.
struct ExpectedItem {
  int width = 60;
  int scale = 1;
  uint32_t bar = colors::LightBar;
  uint32_t body = colors::Body;
};

/// The first difference between the monitor's upper edge and a bar with `TestExtra` at its right
/// end, 8 points from the edge; empty if there is none.
std::string itemFault(const ScreenPicture& monitor, const ExpectedItem& expected);

/// Runs the bar with `TestExtra` on a screen of the test's own.
class BarTest : public testing::Test {
 protected:
  BarTest();

  /// Starts the program on a screen, with further arguments and variables.
  void start(const DisplayServer& screen, const std::vector<std::string>& arguments = {},
             const Environment& environment = {});
  ChildProcess& bar() { return *bar_; }

  /// Sends "TestExtraCommand" to the item.
  static void command(const PropertyList::Dictionary& command);

  /// The lines that the item has written.
  std::vector<std::string> itemLog() const;

  /// Waits until the screen shows the item. `picture` gives the monitor.
  template <typename Picture>
  static void expectItem(const Picture& picture, const ExpectedItem& expected) {
    std::string fault;
    EXPECT_TRUE(waitUntil([&] {
      fault = itemFault(picture(), expected);
      return fault.empty();
    })) << fault;
  }

 private:
  TestBus bus_{"DBUS_SESSION_BUS_ADDRESS"};
  std::filesystem::path itemLog_;
  std::unique_ptr<ChildProcess> bar_;
};

/// The same on a screen that the parameter names: "X11" or "Wayland", and "AtScale2" behind it.
class DesktopTest : public BarTest, public testing::WithParamInterface<const char*> {
 protected:
  /// The screen's size, in pixels.
  DesktopTest(int width, int height);

  void startBar(const std::vector<std::string>& arguments = {}, Environment environment = {});

  const int scale_;
  const Environment environment_;  ///< What tells an X11 desktop's scale.
  const std::unique_ptr<DisplayServer> screen_;
};
