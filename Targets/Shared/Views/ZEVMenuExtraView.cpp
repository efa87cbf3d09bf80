#include "Targets/Shared/Views/ZEVMenuExtraView.h"

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Views/NSScreen.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/Views/ZEVMenuExtraContentView.h"
#include "Targets/Shared/WENVersions.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/Shared/ZEVModularExtra.h"
#include "Targets/Shared/ZEVModule.h"
#include "Targets/Shared/ZEVPreferences.h"

namespace {

/// An item that draws nothing still keeps a place to be clicked.
constexpr int64_t EmptyWidth = 4;

/// With several screens the host takes a picture of the item for the bars that are not in use.
bool isSnapshotPass() {
  const auto* context = NSGraphicsContext::currentContext();
  return WENVersions_Time::sharedVersions().isYosemite() && NSScreen::screens().size() >= 2 &&
         context != nullptr && context->className() == "NSBitmapGraphicsContext";
}

}  // namespace

ZEVMenuExtraView_Time::ZEVMenuExtraView_Time(NSRect frame, ZEVModularExtra& extra)
    : NSMenuExtraView(frame, extra), extra_(extra) {}

void ZEVMenuExtraView_Time::drawRect(NSRect) {
  // Unloaded, or collapsed because it failed to start: that takes no room.
  if (extra_.modules() == nullptr) return;
  if (isSnapshotPass()) {
    isMenuDown_ = false;
    const auto image = NSImage::imageWithSize(frame().size);
    {
      const NSImageFocus focus = image->lockFocus();
      drawModules();
    }
    image->drawAtPoint({0, 0}, 0.5);
    return;
  }
  isMenuDown_ = extra_.isMenuDown();
  if (isMenuDown_) extra_.drawMenuBackground(true);
  fitSlot(drawModules());
}

int64_t ZEVMenuExtraView_Time::drawModules() {
  if (extra_.isCombinedExtra()) return drawCombinedModules();
  int64_t offset = 0;
  if (const auto* modules = extra_.modules()) {
    for (const auto& module : *modules)
      offset = drawModule(*module, offset);
  }
  return offset == 0 ? EmptyWidth : offset;
}

int64_t ZEVMenuExtraView_Time::drawCombinedModules() {
  constexpr int64_t Gap = 4;
  int64_t offset = 0;
  bool hasDrawn = false;
  const PropertyList mode = ZEVObjectForKey("CombinedMenubarDisplayMode");
  const std::string keys = mode.string() != nullptr ? *mode.string() : "";
  for (const auto& key : componentsSeparatedByString(keys, ",")) {
    const auto module = extra_.moduleWithKey(integerValue(key));
    if (!module || !module->isInMenubar()) continue;
    if (offset > 0) offset += Gap;
    offset = drawModule(*module, offset);
    hasDrawn = true;
  }
  if (hasDrawn) return offset;

  constexpr int64_t IconWidth = 20;
  const bool isOldAndWhite =
      !WENVersions_Time::sharedVersions().isYosemite() && ZEVIntegerForKey("MenubarSkinColor") == 8;
  const bool white =
      isMenuDown_ || isOldAndWhite || ZEVPreferences_Time::sharedPreferences()->isMenubarDark();
  const auto icon = ZEVImageNamed(white ? "menubar-combined-white" : "menubar-combined");
  if (icon) icon->drawAtPoint({4, 2});
  return IconWidth;
}

int64_t ZEVMenuExtraView_Time::drawModule(ZEVModule_Time& module, int64_t offset) {
  const auto& content = module.view();
  if (!content) return offset;
  content->setIsMenuDown(isMenuDown_);
  return content->drawAtOffset(offset);
}

void ZEVMenuExtraView_Time::fitSlot(int64_t width) {
  if (lastSize_ == width) return;
  if (zero_) extra_.setLength(0);
  lastSize_ = width;
  setFrameSize({static_cast<double>(width), NSMenuExtra::Height});
  extra_.setLength(static_cast<double>(width));
}
