#include "Targets/VelmoraTime/Dropdown/StatInterfaceMoonPhaseRow.h"

#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"

// Name and date share a band, one from its beginning and the other from its end: which of them is
// the longer one is a matter of the language.
StatInterfaceMoonPhaseRow_Time::StatInterfaceMoonPhaseRow_Time()
    : view_(std::make_shared<StatInterfaceView_Time>(ZEVMakeRect(0, 0, 320, 23))),
      moon_(MoonPhaseView_Time::moonWithFrame(ZEVMakeRect(10, 3, 16, 16), 16, 22,
                                              "menubar-moon-light.tiff", "menubar-moon-dark.tiff")),
      name_(createLabelField(NSTextAlignment::Left, ZEVMakeRect(29, 4, 197, 15))),
      date_(createLabelField(NSTextAlignment::Right, ZEVMakeRect(116, 4, 196, 15))) {
  view_->addSubview(moon_);
  view_->addSubview(name_);
  view_->addSubview(date_);
}
