// The plug-in's source: the calendars that are enabled in Evolution Data Server.
//
// | what happens                                          | seen here |
// |-------------------------------------------------------|----------------------------------------|
// | a calendar or a mail account is added, removed,       | yes, by the registry of sources | |
// enabled, disabled, renamed, checked, coloured         |                                        |
// | an event is added, changed, removed                   | yes, by a view of all events | | the
// service ends and is started again                 | at the next question                   | |
// the service is not installed or the bus has none      | no calendars; asked again each time    |

#include <libecal/libecal.h>

#include <map>
#include <utility>

#include "Platform/EventKit/CalendarColor_p.h"
#include "Platform/EventKit/DesktopCalendars_p.h"
#include "Platform/EventKit/EventExpansion_p.h"
#include "Platform/EventKit/Evolution/EvolutionCalendar.h"
#include "Platform/EventKit/MailAddress_p.h"

namespace {

using Text = LibraryHandle<char, g_free>;

constexpr int64_t WorkPerFetch = 50'000'000;

std::string textOf(char* owned) {
  const Text text(owned);
  return text ? text.get() : "";
}

class EvolutionCalendars : public CalendarSource {
 public:
  explicit EvolutionCalendars(std::function<void()> changed) : changed_(std::move(changed)) {}

  Calendars calendars() override {
    Calendars found;
    if (!registry_ && !connect()) return found;
    std::map<std::string, Entry> present;
    for (const auto& source : enabledSources(E_SOURCE_EXTENSION_CALENDAR)) {
      Entry entry = entryOf(source.get());
      found.all.push_back(entry.calendar);
      auto* selectable =
          E_SOURCE_SELECTABLE(e_source_get_extension(source.get(), E_SOURCE_EXTENSION_CALENDAR));
      const std::string& identifier = entry.calendar->calendarIdentifier();
      if (e_source_selectable_get_selected(selectable) == FALSE) found.hidden.push_back(identifier);
      present.emplace(identifier, std::move(entry));
    }
    entries_ = std::move(present);
    found.userAddresses = userAddresses();
    return found;
  }

  std::vector<std::shared_ptr<const EKEvent>> events(
      const TimeSpan& span, const std::unordered_set<std::string>& calendars,
      const AddressSet& addresses) override {
    std::vector<std::shared_ptr<const EKEvent>> events;
    WorkBudget budget(WorkPerFetch);
    ReadingTables tables;
    const NSTimeZone wallZone = NSTimeZone::systemTimeZone();
    for (const ExpansionPass pass : ExpansionPasses) {
      for (const auto& [identifier, entry] : entries_) {
        if (!calendars.contains(identifier)) continue;
        const StoredCalendar* stored = entry.source->events(tables);
        if (stored == nullptr) continue;
        const std::string prefix = identifier + "/";
        expandEvents(*stored, pass, {span, wallZone, entry.calendar, addresses, prefix}, budget,
                     events);
      }
    }
    return events;
  }

 private:
  struct Entry {
    std::shared_ptr<const EKCalendar> calendar;
    std::shared_ptr<EvolutionCalendar> source;
  };

  bool connect() {
    registry_.reset(e_source_registry_new_sync(nullptr, nullptr));
    if (!registry_) return false;
    signals_ = std::make_unique<EvolutionSignals>(changed_);
    for (const char* signal :
         {"source-added", "source-changed", "source-disabled", "source-enabled", "source-removed"})
      signals_->connect(registry_.get(), signal, 1);
    return true;
  }

  std::vector<ObjectHandle<ESource>> enabledSources(const char* extension) const {
    std::vector<ObjectHandle<ESource>> sources;
    GList* list = e_source_registry_list_enabled(registry_.get(), extension);
    for (const GList* each = list; each != nullptr; each = each->next)
      sources.emplace_back(E_SOURCE(each->data));
    g_list_free(list);
    return sources;
  }

  Entry entryOf(ESource* source) {
    const std::string identifier = e_source_get_uid(source);
    auto* selectable =
        E_SOURCE_SELECTABLE(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR));
    const std::string color = textOf(e_source_selectable_dup_color(selectable));
    Entry entry;
    entry.calendar = std::make_shared<const EKCalendar>(
        identifier, textOf(e_source_dup_display_name(source)), color, calendarColor(color));
    const auto known = entries_.find(identifier);
    entry.source = known != entries_.end() ? known->second.source
                                           : std::make_shared<EvolutionCalendar>(source, changed_);
    return entry;
  }

  AddressSet userAddresses() const {
    AddressSet addresses;
    for (const auto& source : enabledSources(E_SOURCE_EXTENSION_MAIL_IDENTITY)) {
      auto* identity = E_SOURCE_MAIL_IDENTITY(
          e_source_get_extension(source.get(), E_SOURCE_EXTENSION_MAIL_IDENTITY));
      const std::string address = mailAddress(textOf(e_source_mail_identity_dup_address(identity)));
      if (!address.empty()) addresses.insert(address);
      const LibraryHandle<GHashTable, g_hash_table_unref> aliases(
          e_source_mail_identity_get_aliases_as_hash_table(identity));
      if (!aliases) continue;
      GHashTableIter each;
      gpointer alias = nullptr;
      g_hash_table_iter_init(&each, aliases.get());
      while (g_hash_table_iter_next(&each, &alias, nullptr) != FALSE)
        addresses.insert(mailAddress(static_cast<const char*>(alias)));
    }
    return addresses;
  }

  std::function<void()> changed_;
  ObjectHandle<ESourceRegistry> registry_;
  std::map<std::string, Entry> entries_;
  std::unique_ptr<EvolutionSignals> signals_;
};

}  // namespace

extern "C" void VelmoraMakeDesktopCalendars(std::function<void()> changed,
                                            std::unique_ptr<CalendarSource>& made) {
  made = std::make_unique<EvolutionCalendars>(std::move(changed));
}
