#pragma once

#include "Platform/AppKit/Events/NSApplication.h"
#include "Targets/Shared/ZEVMenuExtra.h"

/// The Time extra: the bundle's principal class, with one module.
class VelmoraTime : public ZEVMenuExtra_Time {
 public:
  std::string extraName() const override { return "time"; }
  std::string title() const override { return "Velmora Time"; }
  std::string AXTitle() const override { return "Velmora Time"; }
  std::string AXDescription() const override { return "Velmora Time"; }
  void initWithBundle(const NSBundle& bundle) override;
  void loadModules() override;
  void cleanup() override;

  /// Menus are laid out as their language is read.
  static NSUserInterfaceLayoutDirection layoutDirection();
};
