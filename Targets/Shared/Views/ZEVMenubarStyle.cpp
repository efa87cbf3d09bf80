#include "Targets/Shared/Views/ZEVMenubarStyle.h"

#include "Targets/Shared/ZEVPreferences.h"

namespace {

bool isMenubarDark() {
  const auto* const preferences = ZEVPreferences_Time::sharedPreferences();
  return preferences != nullptr && preferences->isMenubarDark();
}

}  // namespace

int64_t menubarTheme() { return isMenubarDark() ? 0 : ZEVIntegerForKey("MenubarTheme"); }

double menubarGraphOpacity() {
  if (isMenubarDark()) return ZEVDoubleForKey("MenubarGraphOpacity-DarkMode");
  return ZEVIntegerForKey("MenubarTheme") == 1 ? 1 : ZEVDoubleForKey("MenubarGraphOpacity");
}

int64_t menubarSkinColor() { return ZEVStyleForKey("MenubarSkinColor"); }
