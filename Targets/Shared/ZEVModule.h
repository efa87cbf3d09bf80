#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/AppKit/Menus/NSMenu.h"
#include "Platform/Foundation/Notifications/DelegateList.h"
#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/NSObject.h"
#include "Targets/Shared/StatCollector.h"
#include "Targets/Shared/ZEVModuleDelegate.h"

class ZEVMenu_Time;
class ZEVMenuExtraContentView_Time;
class ZEVMenuItem_Time;
class ZEVModularExtra;

/// A piece of functionality in a menu extra. Its operations are empty here unless told otherwise;
/// a module overrides what it needs. Main thread only.
class ZEVModule_Time : public NSObject, public NSMenuDelegate {
 public:
  ~ZEVModule_Time() override;

  /// `extra` owns the module and is its first delegate.
  virtual void init(ZEVModularExtra& extra);
  virtual void loadViewWithExtra(ZEVModularExtra&) {}

  virtual std::string moduleName() const { return ""; }
  /// The module's own menu, empty until it is filled; the module is its delegate.
  virtual std::shared_ptr<NSMenu> menu();
  /// The module's row in a combined menu; null if it has none.
  virtual std::shared_ptr<ZEVMenuItem_Time> combinedItem() { return nullptr; }
  virtual void menubarThemeChanged();
  virtual void globalPreferencesChange(const NSNotification&) {}
  virtual void skinChange(const NSNotification&) {}
  virtual void themeChange() {}
  virtual void rebuildMenu() {}
  virtual void setup() {}
  virtual void loadNotifications() {}
  virtual void willUnload() {}

  bool isInMenubar() const { return menubar_; }
  void setMenubar(bool isInMenubar) { menubar_ = isInMenubar; }
  int64_t key() const { return key_; }
  void setKey(int64_t key) { key_ = key; }
  const std::shared_ptr<ZEVMenuExtraContentView_Time>& view() const { return view_; }
  double width() const;

  /// Delegates are not owned; the handle removes one, too. Told in the order of adding. With the
  /// extra goes the module's way to it.
  Registration addDelegate(ZEVModuleDelegate& delegate) { return delegates_.add(delegate); }
  void removeDelegate(ZEVModuleDelegate& delegate);

  /// Whether a collector's run at this count should do the heavy part of its work: always for -1,
  /// else every time, every second or every third time, as "TimerFrequency" says.
  virtual bool collectorShouldUpdateStateForSequence(const StatCollector& collector,
                                                     int64_t sequence) const;

  /// The file of a database in the user's data folder, which is made if it is missing. A null extra
  /// counts as not combined.
  static std::filesystem::path databasePath(std::string_view name, const ZEVModularExtra* extra);
  std::filesystem::path databasePath(std::string_view name) const;

 protected:
  void setView(std::shared_ptr<ZEVMenuExtraContentView_Time> view);
  DelegateList<ZEVModuleDelegate>& delegates() { return delegates_; }
  /// Null before `init`, and when the extra has gone.
  ZEVModularExtra* extra() const { return extra_; }

 private:
  bool menubar_ = false;
  int64_t key_ = 0;
  std::shared_ptr<ZEVMenuExtraContentView_Time> view_;
  std::shared_ptr<ZEVMenu_Time> menu_;
  DelegateList<ZEVModuleDelegate> delegates_;
  ZEVModularExtra* extra_ = nullptr;
  Registration extraRegistration_;
};
