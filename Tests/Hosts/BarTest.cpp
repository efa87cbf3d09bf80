#include "Tests/Hosts/BarTest.h"

#include <fstream>
#include <iomanip>
#include <sstream>
#include <string_view>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

constexpr int Height = 22;
constexpr int RightMargin = 8;
constexpr uint32_t Red = 0xFF0000;
constexpr uint32_t Green = 0x00FF00;
constexpr uint32_t Blue = 0x0000FF;
constexpr uint32_t Yellow = 0xFFFF00;

struct Probe {
  const char* what;
  int column;
  int row;
  uint32_t color;
};

std::string difference(const ScreenPicture& picture, const Probe& probe) {
  const uint32_t found = picture.at(probe.column, probe.row);
  if (found == probe.color) return "";
  std::ostringstream text;
  text << probe.what << " at " << probe.column << ", " << probe.row << ": " << std::hex
       << std::setfill('0') << std::setw(6) << found << " and not " << std::setw(6) << probe.color;
  return text.str();
}

/// Lines of half a point: pixels of their own at scale 2, a grey between them at scale 1.
std::string hairlineFault(const ScreenPicture& picture, int left, int row, int scale) {
  for (int column = left + 4 * scale; column < left + 12 * scale; ++column) {
    const uint32_t found = picture.at(column, row) & 0xFF;
    const bool isSharp = found == ((column - left) % 2 == 0 ? 0x00U : 0xFFU);
    const bool isMixed = found >= 0x40 && found <= 0xC0;
    if (scale == 2 ? !isSharp : !isMixed) {
      return "hairlines: " + std::to_string(found) + " in column " + std::to_string(column);
    }
  }
  return "";
}

std::unique_ptr<DisplayServer> makeScreen(std::string_view name,
                                          const WaylandServer::Output& output) {
  if (name.starts_with("X11")) return std::make_unique<X11Server>(output.width, output.height);
  return std::make_unique<WaylandServer>(std::vector{output});
}

}  // namespace

fs::path menuBarProgram() { return fs::path(VELMORA_BINARY_DIR) / "bin" / "velmora-menubar"; }

fs::path testBundle() { return TEST_EXTRA_BUNDLE; }

std::string itemFault(const ScreenPicture& monitor, const ExpectedItem& expected) {
  const int scale = expected.scale;
  const int end = monitor.width - RightMargin * scale;
  const int left = end - expected.width * scale;
  if (left < 1 || monitor.height < Height * scale) return "the picture is too small";
  const int middle = 11 * scale;
  for (const Probe& probe : {
           Probe{"the item's left edge", left, middle, Red},
           Probe{"the item's right edge", end - 1, middle, Green},
           Probe{"the item's upper edge", left + 20 * scale, 0, Blue},
           Probe{"the item's lower edge", left + 20 * scale, Height * scale - 1, Yellow},
           Probe{"the item's body", left + 20 * scale, middle, expected.body},
           Probe{"the margin", end, middle, expected.bar},
           Probe{"the last point", monitor.width - 1, middle, expected.bar},
       }) {
    if (auto fault = difference(monitor, probe); !fault.empty()) return fault;
  }
  for (int column = 0; column < left; ++column) {
    if (auto fault = difference(monitor, {"the empty bar", column, middle, expected.bar});
        !fault.empty()) {
      return fault;
    }
  }
  const bool showsBelow = monitor.height > Height * scale;
  if (showsBelow && monitor.at(0, Height * scale) == expected.bar) return "the bar is too high";
  return hairlineFault(monitor, left, middle, scale);
}

BarTest::BarTest() : itemLog_(testFolder() / "item.log") {}

void BarTest::start(const DisplayServer& screen, const std::vector<std::string>& arguments,
                    const Environment& environment) {
  std::vector<std::string> command{menuBarProgram().string(), "--bundle", testBundle().string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  Environment variables = environment;
  variables.merge(screen.environment());
  variables.merge(Environment{
      {"TEST_EXTRA_LOG", itemLog_.string()}, {"NO_AT_BRIDGE", "1"}, {"GDK_SCALE", std::nullopt}});
  bar_.reset();  // One at a time.
  bar_ = std::make_unique<ChildProcess>(command, variables);
}

void BarTest::command(const PropertyList::Dictionary& command) {
  NSDistributedNotificationCenter::defaultCenter().postNotification("TestExtraCommand", command);
}

std::vector<std::string> BarTest::itemLog() const {
  std::vector<std::string> lines;
  std::ifstream file(itemLog_);
  for (std::string line; std::getline(file, line);)
    lines.push_back(line);
  return lines;
}

DesktopTest::DesktopTest(int width, int height)
    : scale_(std::string_view(GetParam()).ends_with("AtScale2") ? 2 : 1),
      environment_(scale_ == 2 ? Environment{{"GDK_SCALE", "2"}} : Environment{}),
      screen_(makeScreen(GetParam(), {.width = width, .height = height, .scale = scale_})) {}

void DesktopTest::startBar(const std::vector<std::string>& arguments, Environment environment) {
  environment.insert(environment_.begin(), environment_.end());
  start(*screen_, arguments, environment);
}
