#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"

#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/Shared/ZEVPreferences.h"

void VelmoraTimeMenuExtraView::init(NSRect frame, ZEVModularExtra& extra) {
  setFrame(frame);
  moon_.setSize(16);
  moon_.setRange(22);
  moon_.setIllumination(0);
  moon_.setLight("menubar-moon-light");
  moon_.setDark("menubar-moon-dark");
  setExtra(&extra);
  loadConfig();
}

void VelmoraTimeMenuExtraView::loadConfig() {
  addTextConfig("text", {"Time_TextSize", "Time_TextColor", "Time_TextShadowColor"});
}

void VelmoraTimeMenuExtraView::update() {
  time_ = NSDate::date().timeIntervalSince1970();
  flashState_ = flashState_ == 0 ? 1 : 0;
}

int64_t VelmoraTimeMenuExtraView::drawAtOffset(int64_t offset) {
  constexpr std::string_view Key = "Time_MenubarFormat";
  return drawTimeAtOffset(offset, time_, flashState_,
                          clockElementsFromSetting(ZEVObjectForKey(Key), Key));
}
