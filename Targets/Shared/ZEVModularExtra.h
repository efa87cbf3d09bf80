#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/SystemUIPlugin/NSMenuExtra.h"
#include "Targets/Shared/ZEVModuleDelegate.h"

class ZEVModule_Time;

/// An extra made of modules, as these and the view that draws them see it.
class ZEVModularExtra : public NSMenuExtra, public ZEVModuleDelegate {
 public:
  struct Modules : NSMenuExtraModules, std::vector<std::shared_ptr<ZEVModule_Time>> {};

  virtual bool isCombinedExtra() const { return false; }

  /// The modules in load order; null before they are loaded and after unload.
  const Modules* modules() const override = 0;
  /// Null if there is none with that number.
  virtual std::shared_ptr<ZEVModule_Time> moduleWithKey(int64_t key) const = 0;

  /// Takes over a setting that another process has changed. Nothing outlives a new language, in
  /// which all texts and formats were made: the extra is loaded anew.
  virtual void refreshSetting(const std::string& key) = 0;
};
