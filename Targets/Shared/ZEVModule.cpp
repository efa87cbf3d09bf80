#include "Targets/Shared/ZEVModule.h"

#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/Views/ZEVMenuExtraContentView.h"
#include "Targets/Shared/ZEVModularExtra.h"
#include "Targets/Shared/ZEVPreferences.h"

ZEVModule_Time::~ZEVModule_Time() {
  if (menu_) menu_->setDelegate(nullptr);
}

void ZEVModule_Time::init(ZEVModularExtra& extra) {
  extra_ = &extra;
  menu_ = createMenu();
  menu_->setDelegate(this);
  extraRegistration_ = addDelegate(extra);
  loadViewWithExtra(extra);
}

std::shared_ptr<NSMenu> ZEVModule_Time::menu() { return menu_; }

void ZEVModule_Time::setView(std::shared_ptr<ZEVMenuExtraContentView_Time> view) {
  view_ = std::move(view);
}

void ZEVModule_Time::menubarThemeChanged() {
  if (!view_) return;
  view_->resetTextConfig();
  view_->setNeedsDisplay(true);
}

double ZEVModule_Time::width() const { return view_ ? view_->size() : 0; }

void ZEVModule_Time::removeDelegate(ZEVModuleDelegate& delegate) {
  delegates_.remove(delegate);
  if (&delegate == extra_) extra_ = nullptr;
}

bool ZEVModule_Time::collectorShouldUpdateStateForSequence(const StatCollector&,
                                                           int64_t sequence) const {
  if (sequence == -1) return true;
  switch (ZEVIntegerForKey("TimerFrequency")) {
    case 2:
      return true;
    case 1:
      return sequence % 2 == 0;
    case 0:
      return sequence % 3 == 0;
    default:
      return false;
  }
}

std::filesystem::path ZEVModule_Time::databasePath(std::string_view name,
                                                   const ZEVModularExtra* extra) {
  const auto directory = resolvedPath("~/Library/Application Support/Velmora/databases");
  std::error_code error;
  if (!std::filesystem::exists(directory, error)) {
    std::filesystem::create_directories(directory, error);
  }
  const bool isCombined = extra != nullptr && extra->isCombinedExtra();
  return directory / ((isCombined ? "combined_" : "") + std::string(name) + ".db");
}

std::filesystem::path ZEVModule_Time::databasePath(std::string_view name) const {
  return databasePath(name, extra_);
}
