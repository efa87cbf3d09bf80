#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Targets/Shared/ZEVModularExtra.h"
#include "Targets/Shared/ZEVModule.h"

class DDFileLogger_Time;
class ZEVMenu_Time;
class ZEVMenuExtraView_Time;

/// The shell around a slot in the bar: starts and stops the modules of one extra and passes on what
/// concerns them all. Main thread only.
///
/// `initWithBundle` takes the slot and opens the log; the work begins in `run`, on the next pass of
/// the run loop, when the host has finished taking the object in. A module that fails to start
/// collapses the slot and leaves its reason in the log; the host goes on.
class ZEVMenuExtra_Time : public ZEVModularExtra, public NSMenuDelegate {
 public:
  /// A host may drop an extra without unloading it; its modules then lose their delegate.
  ~ZEVMenuExtra_Time() override;

  void initWithBundle(const NSBundle& bundle) override;

  virtual std::string extraName() const { return ""; }
  /// Starts the log in rolling files, in a folder of the extra's name among the user's logs.
  virtual void setupLog();
  virtual void skinChange() {}
  virtual void cleanup() {}
  virtual void loadModules() {}
  virtual void displayChange(const NSNotification& notification);
  virtual void menubarThemeChanged();

  /// That of a lone module, or the combined one; null for a menu without rows.
  std::shared_ptr<NSMenu> menu() override;
  /// What the modules have to say, under a title each, in the order of the settings.
  void rebuildCombinedMenu();
  void run();
  /// The first call counts: an extra that collapsed has done it already.
  void willUnload() override;

  void refreshSetting(const std::string& key) override;

  // The combined menu is open or closed, or another row of it is highlighted.
  void menuWillOpen(NSMenu& menu) override;
  void menuDidClose(NSMenu& menu) override;
  void menuWillHighlightItem(NSMenu& menu, NSMenuItem* item) override;

  void update() override;
  void updateSize() override {}

  /// Draws the slot's changes of width without the step through zero.
  void disableZero();

  const Modules* modules() const override { return modules_ ? &*modules_ : nullptr; }
  std::shared_ptr<ZEVModule_Time> moduleWithKey(int64_t key) const override;

 protected:
  void addModule(std::shared_ptr<ZEVModule_Time> module);

 private:
  void start(std::string& stage);
  void collapse(const std::string& stage, const std::string& reason);
  void dropdownThemeChanged();
  void dropCombinedMenu();
  static void updateCombinedMenu(const NSMenu& menu);

  std::optional<Modules> modules_;
  std::shared_ptr<ZEVMenu_Time> combinedMenu_;
  bool isContrastRaised_ = false;
  bool isUnloaded_ = false;
  std::shared_ptr<DDFileLogger_Time> fileLogger_;
  std::shared_ptr<ZEVMenuExtraView_Time> hostView_;
  NSObservation displayObservation_;
  NSObservation themeObservation_;
};
