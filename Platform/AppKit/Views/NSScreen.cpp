#include "Platform/AppKit/Views/NSScreen.h"

#include <utility>

namespace {

std::vector<NSScreen> knownScreens;

}  // namespace

const std::vector<NSScreen>& NSScreen::screens() { return knownScreens; }

void NSScreen::setScreens(std::vector<NSScreen> screens) { knownScreens = std::move(screens); }
