#include "Targets/VelmoraTime/Calendar/HiddenCalendars.h"

#include <string_view>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"

namespace {

constexpr std::string_view Domain = "com.apple.iCal";
constexpr std::string_view Key = "DisabledCalendars";
constexpr const char* List = "MainWindow";

const PropertyList* entry(const PropertyList& calendars) {
  const auto* lists = calendars.dictionary();
  if (lists == nullptr) return nullptr;
  const auto found = lists->find(List);
  return found != lists->end() && found->second.array() != nullptr ? &found->second : nullptr;
}

}  // namespace

void prepareHiddenCalendars() {
  PropertyList calendars = CFPreferencesCopyAppValue(Key, Domain);
  if (entry(calendars) != nullptr) return;
  PropertyList::Dictionary lists;
  if (calendars.dictionary() != nullptr) lists = *calendars.dictionary();
  lists.insert_or_assign(List, PropertyList::Array{});
  CFPreferencesSetAppValue(Key, lists, Domain);
  CFPreferencesAppSynchronize(Domain);
}

std::optional<std::vector<std::string>> hiddenCalendars() {
  CFPreferencesAppSynchronize(Domain);
  const PropertyList calendars = CFPreferencesCopyAppValue(Key, Domain);
  const PropertyList* list = entry(calendars);
  if (list == nullptr) return std::nullopt;
  auto hidden = CalendarStatCollector::sharedCalendarCollector()->hiddenCalendarIdentifiers();
  for (const PropertyList& identifier : *list->array()) {
    if (identifier.string() != nullptr) hidden.push_back(*identifier.string());
  }
  return hidden;
}
