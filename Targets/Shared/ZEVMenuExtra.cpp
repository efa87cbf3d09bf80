#include "Targets/Shared/ZEVMenuExtra.h"

#include <exception>
#include <map>
#include <utility>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Process/CallStack.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Shared/External/Logging/DDFileLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Targets/Shared/Dropdown/CombinedMenu.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/Views/ZEVMenuExtraView.h"
#include "Targets/Shared/ZEVPreferences.h"

namespace {

constexpr double PlaceholderLength = 20;

/// The logger of each folder, as long as the log has it. An extra that is loaded anew goes on in
/// its file: one more logger would write every line twice, and taking one out archives the file.
std::weak_ptr<DDFileLogger_Time>& fileLoggerOfFolder(const std::string& folder) {
  static std::map<std::string, std::weak_ptr<DDFileLogger_Time>> loggers;
  return loggers[folder];
}

}  // namespace

ZEVMenuExtra_Time::~ZEVMenuExtra_Time() {
  dropCombinedMenu();
  if (!modules_) return;
  for (const auto& module : *modules_)
    module->removeDelegate(*this);
}

void ZEVMenuExtra_Time::initWithBundle(const NSBundle& bundle) {
  NSMenuExtra::initWithBundle(bundle);
  view()->setFrameSize({PlaceholderLength, Height});
  setLength(PlaceholderLength);
  setupLog();
  performSelectorAfterDelay("run", 0, [this] { run(); });
}

void ZEVMenuExtra_Time::setupLog() {
  constexpr double ThirtyDays = 2'592'000;
  constexpr uint64_t FilesToKeep = 7;
  constexpr uint64_t FiveMebibytes = 5'242'880;
  const std::string folder = "~/Library/Logs/Velmora/" + extraName() + "/";
  auto& known = fileLoggerOfFolder(folder);
  fileLogger_ = known.lock();
  if (fileLogger_) return;
  const auto manager = std::make_shared<DDLogFileManagerDefault_Time>(folder);
  manager->setMaximumNumberOfLogFiles(FilesToKeep);
  fileLogger_ = std::make_shared<DDFileLogger_Time>(manager);
  known = fileLogger_;
  fileLogger_->setRollingFrequency(ThirtyDays);
  fileLogger_->setMaximumFileSize(FiveMebibytes);
  DDLog_Time::addLogger(fileLogger_);
}

std::shared_ptr<NSMenu> ZEVMenuExtra_Time::menu() {
  std::shared_ptr<NSMenu> menu = combinedMenu_;
  if (!isCombinedExtra()) {
    menu = modules_ && modules_->size() == 1 ? modules_->front()->menu() : nullptr;
  }
  // One without rows would open an empty window.
  return menu && menu->numberOfItems() > 0 ? menu : nullptr;
}

void ZEVMenuExtra_Time::run() {
  modules_.emplace();
  combinedMenu_ = createMenu();
  combinedMenu_->setDelegate(this);
  isContrastRaised_ = dropdownRaisesContrast();
  std::string stage = "initial load";
  try {
    start(stage);
  } catch (const std::exception& exception) {
    collapse(stage, exception.what());
    return;
  } catch (...) {
    collapse(stage, "an exception of an unknown kind");
    return;
  }
  displayObservation_ = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "VelmoraGlobalDisplayChange",
      [this](const NSNotification& notification) { displayChange(notification); });
  themeObservation_ = NSNotificationCenter::defaultCenter().addObserver(
      "VelmoraMenubarThemeChanged", [this](const NSNotification&) { menubarThemeChanged(); });
  if (isCombinedExtra()) rebuildCombinedMenu();
}

void ZEVMenuExtra_Time::start(std::string& stage) {
  NSLog("Velmora loading extra - " + extraName());
  stage = "loading base view";
  hostView_ = std::make_shared<ZEVMenuExtraView_Time>(view() ? view()->frame() : NSZeroRect, *this);
  hostView_->setZero(true);
  setView(hostView_);
  hostView_->setLastSize(0);
  stage = "loading modules";
  loadModules();
  if (!isCombinedExtra()) {
    for (const auto& module : *modules_) {
      stage = "setup module at index - " + module->moduleName();
      module->setup();
      // The stage's spelling is what log readers search for.
      stage = "notifictions module at index - " + module->moduleName();
      module->loadNotifications();
      module->setMenubar(true);
    }
  }
  stage = "modules loaded";
}

void ZEVMenuExtra_Time::collapse(const std::string& stage, const std::string& reason) {
  const std::string start = "Velmora exception in " + extraName() + " - ";
  const std::string report = NSDate::date().description() + "\n\n" + start + reason + "\n" + start +
                             stage + "\n\n" + callStackSymbolsOfException();
  NSLog(report);
  DDLogLine(report);
  if (view()) view()->setFrameSize({0, Height});
  setLength(0);
  willUnload();
}

void ZEVMenuExtra_Time::addModule(std::shared_ptr<ZEVModule_Time> module) {
  modules_->push_back(std::move(module));
}

std::shared_ptr<ZEVModule_Time> ZEVMenuExtra_Time::moduleWithKey(int64_t key) const {
  if (!modules_) return nullptr;
  for (const auto& module : *modules_) {
    if (module->key() == key) return module;
  }
  return nullptr;
}

void ZEVMenuExtra_Time::refreshSetting(const std::string& key) {
  ZEVRefreshKey(key);
  if (key == "language") reload();
}

void ZEVMenuExtra_Time::displayChange(const NSNotification& notification) {
  refreshSetting(notification.textForKey("key"));
  if (!modules_) return;
  const Modules modules = *modules_;
  for (const auto& module : modules)
    module->skinChange(notification);
  const std::string resetKey = notification.textForKey("resetKey");
  if (resetKey == "dropdown" || resetKey == "styles") dropdownThemeChanged();
  if (resetKey == "launcher") {
    for (const auto& module : modules)
      module->rebuildMenu();
  }
  for (const auto& module : modules)
    module->globalPreferencesChange(notification);
  update();
}

void ZEVMenuExtra_Time::menubarThemeChanged() {
  if (!modules_) return;
  for (const auto& module : *modules_)
    module->menubarThemeChanged();
  update();
  // The bar's theme is the dropdown's only then, but its contrast is always.
  const bool isContrastRaised = dropdownRaisesContrast();
  const bool isNewContrast = std::exchange(isContrastRaised_, isContrastRaised) != isContrastRaised;
  if (isNewContrast || ZEVBoolForKey("Theme-SeperateStyles")) dropdownThemeChanged();
}

void ZEVMenuExtra_Time::dropdownThemeChanged() {
  NSNotificationCenter::defaultCenter().postNotification("DropdownThemeChanged");
  for (const auto& module : *modules_)
    module->themeChange();
  if (combinedMenu_) updateCombinedMenu(*combinedMenu_);
}

// --- The combined menu --------------------------------------------------------------------------

void ZEVMenuExtra_Time::rebuildCombinedMenu() {
  if (combinedMenu_) fillCombinedMenu(*combinedMenu_, *this);
}

void ZEVMenuExtra_Time::dropCombinedMenu() {
  if (combinedMenu_) combinedMenu_->setDelegate(nullptr);
  combinedMenu_ = nullptr;
}

void ZEVMenuExtra_Time::menuWillOpen(NSMenu& menu) {
  if (&menu == combinedMenu_.get()) combinedMenu_->setVisible(true);
  NSNotificationCenter::defaultCenter().postNotification("ZEVMenuStateChanged");
}

void ZEVMenuExtra_Time::menuDidClose(NSMenu& menu) {
  if (&menu == combinedMenu_.get()) combinedMenu_->setVisible(false);
  NSNotificationCenter::defaultCenter().postNotification("ZEVMenuStateChanged");
  menuWillHighlightItem(menu, nullptr);
}

void ZEVMenuExtra_Time::menuWillHighlightItem(NSMenu& menu, NSMenuItem* item) {
  for (const auto& row : menu.itemArray()) {
    auto* view = dynamic_cast<StatInterfaceView_Time*>(row->view().get());
    if (view != nullptr && view->isHighlightable()) {
      view->setMenuItemHighlighted(row.get() == item);
    }
  }
}

void ZEVMenuExtra_Time::updateCombinedMenu(const NSMenu& menu) {
  for (const auto& item : menu.itemArray()) {
    if (item->view()) item->view()->setNeedsDisplay(true);
  }
}

// --- The end ------------------------------------------------------------------------------------

void ZEVMenuExtra_Time::update() {
  if (view()) view()->setNeedsDisplay(true);
}

void ZEVMenuExtra_Time::disableZero() {
  if (hostView_) hostView_->setZero(false);
  update();
}

void ZEVMenuExtra_Time::willUnload() {
  if (std::exchange(isUnloaded_, true)) return;
  DDLogLine("Unloading...");
  try {
    if (modules_) {
      for (const auto& module : *modules_) {
        NSLog("unloading module");
        module->willUnload();
      }
    }
  } catch (...) {
    // A module that fails to stop must not keep the rest from being cleaned up.
  }
  modules_.reset();
  cleanup();
  dropCombinedMenu();
  displayObservation_ = {};
  themeObservation_ = {};
  cancelPreviousPerformRequests("disableZero");
  NSDistributedNotificationCenter::defaultCenter().postNotification("VelmoraUnloadedExtra",
                                                                    {{"extra", extraName()}});
  NSMenuExtra::willUnload();
}
