#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Targets/Shared/Views/ZEVMenuExtraContentView.h"
#include "Targets/Shared/ZEVMenuExtra.h"
#include "Tests/Targets/SimulatedTime.h"

/// What happens to the fakes, in order: "a setup", "b theme", …
using Journal = std::vector<std::string>;

/// Content of a fixed width that notes where and how it was drawn.
class FakeContent : public ZEVMenuExtraContentView_Time {
 public:
  int64_t drawAtOffset(int64_t offset) override {
    drawnAt = offset;
    wasMenuDown = isMenuDown();
    return offset + width;
  }
  using ZEVMenuExtraContentView_Time::addTextConfig;

  int64_t width = 0;
  int64_t drawnAt = -1;
  bool wasMenuDown = false;
};

class FakeModule : public ZEVModule_Time {
 public:
  FakeModule(std::string name, Journal& journal) : name_(std::move(name)), journal_(journal) {}

  std::string moduleName() const override { return name_; }
  void loadViewWithExtra(ZEVModularExtra&) override { setView(content); }
  void setup() override { note("setup"); }
  void loadNotifications() override { note("notifications"); }
  void willUnload() override { note("unload"); }
  void skinChange(const NSNotification&) override { note("skin"); }
  void themeChange() override { note("theme"); }
  void rebuildMenu() override { note("rebuild"); }
  void globalPreferencesChange(const NSNotification&) override { note("global"); }
  std::shared_ptr<NSMenu> menu() override {
    note("menu");
    return ZEVModule_Time::menu();
  }
  std::shared_ptr<ZEVMenuItem_Time> combinedItem() override { return row; }
  using ZEVModule_Time::delegates;

  /// What to do when something of that name happens, for faults.
  std::function<void(const std::string& event)> onEvent;
  std::shared_ptr<ZEVMenuItem_Time> row;
  std::shared_ptr<FakeContent> content = std::make_shared<FakeContent>();

 private:
  void note(const std::string& event) {
    journal_.push_back(name_ + " " + event);
    if (onEvent) onEvent(event);
  }

  std::string name_;
  Journal& journal_;
};

/// An extra whose modules a test makes beforehand.
class FakeExtra : public ZEVMenuExtra_Time {
 public:
  std::string extraName() const override { return "fake"; }
  bool isCombinedExtra() const override { return isCombined; }
  void cleanup() override { ++cleanups; }
  void loadModules() override {
    for (const auto& module : prepared) {
      module->init(*this);
      addModule(module);
    }
  }

  bool isCombined = false;
  int cleanups = 0;
  std::vector<std::shared_ptr<FakeModule>> prepared;
};

/// A slot that notes the widths that its extra asks for.
class FakeSlot : public NSMenuBarSlot {
 public:
  void lengthChanged(double length) override {
    lengths.push_back(length);
    NSMenuBarSlot::lengthChanged(length);
  }
  void needsDisplay() override { ++redraws; }

  std::vector<double> lengths;
  int redraws = 0;
};

/// An extra in a slot, started by simulated time.
class FakeExtraTest : public testing::Test {
 protected:
  FakeModule& add(const std::string& name) {
    extra->prepared.push_back(std::make_shared<FakeModule>(name, journal));
    return *extra->prepared.back();
  }
  FakeModule& module(size_t index) { return *extra->prepared[index]; }

  void begin() {
    slot.setExtra(extra);
    extra->init(slot, NSBundle());
  }
  void start() {
    begin();
    time.loop.runPending();
    journal.clear();
    slot.lengths.clear();
  }

  SimulatedTime time;
  Journal journal;
  FakeSlot slot;
  std::shared_ptr<FakeExtra> extra = std::make_shared<FakeExtra>();
};
