#include "Targets/Shared/Dropdown/CombinedMenu.h"

#include <string>

#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVMenuExtra.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"

namespace {

constexpr int64_t RowWidth = 225;
constexpr int64_t NoticeWidth = 260;

void addModule(ZEVMenu_Time& menu, const std::string& key, ZEVModule_Time& module) {
  const std::string name = module.moduleName();
  const std::string title = WENLocalizedString(name, "", "combined");
  const auto header = createHeaderItem(&menu, "header-" + key, title);
  const auto item = module.combinedItem();
  // A module may be listed twice, a row not stand twice.
  if (header->menu() != nullptr || (item && item->menu() != nullptr)) return;
  const auto view = header->view();
  view->setFrameSize(ZEVMakeSize(RowWidth, static_cast<int64_t>(view->frame().size.height)));
  menu.addItem(header);
  if (item) menu.addItem(item);
}

void addNotice(ZEVMenu_Time& menu) {
  const auto addFiller = [&](int64_t height) {
    menu.addItem(createFillerItem(nullptr, "", NoticeWidth, height));
  };
  const auto addLine = [&](std::string_view text) {
    menu.addItem(createCenteredLabel(text, NoticeWidth, 15));
  };
  addFiller(7);
  addLine("No dropdown items enabled");
  addFiller(6);
  addLine("Please enable some dropdown items in the");
  addLine("combined tab in the Velmora app");
  addFiller(7);
}

}  // namespace

void fillCombinedMenu(ZEVMenu_Time& menu, const ZEVMenuExtra_Time& extra) {
  menu.removeAllItems();
  menu.addItem(createFillerItem(&menu, "filler-top", RowWidth, 3));
  const PropertyList mode = ZEVObjectForKey("CombinedDropdownDisplayMode");
  const std::string keys = mode.string() != nullptr ? *mode.string() : "";
  DDLogLine("Dropdown keys - " + keys);
  for (const std::string& key : componentsSeparatedByString(keys, ",")) {
    const auto module = extra.moduleWithKey(integerValue(key));
    DDLogLine((module ? "Adding module - '" : "Module is missing - '") + key + "'");
    if (module) addModule(menu, key, *module);
  }
  if (menu.numberOfItems() == 1) addNotice(menu);
}
