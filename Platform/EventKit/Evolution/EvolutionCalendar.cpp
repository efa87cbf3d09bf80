#include "Platform/EventKit/Evolution/EvolutionCalendar.h"

#include <cstdint>
#include <set>
#include <utility>

namespace {

using Text = LibraryHandle<char, g_free>;

/// The components that a question gives.
struct ComponentList {
  ComponentList() = default;
  ComponentList(const ComponentList&) = delete;
  ComponentList& operator=(const ComponentList&) = delete;
  ~ComponentList() { g_slist_free_full(first, g_object_unref); }

  GSList* first = nullptr;
};

void takeZoneName(ICalParameter* parameter, gpointer names) {
  if (const char* name = i_cal_parameter_get_tzid(parameter)) {
    static_cast<std::set<std::string>*>(names)->insert(name);
  }
}

void feed(ICalendarFile& file, ICalComponent* component) {
  const Text text(i_cal_component_as_ical_string(component));
  if (text) file.feed(text.get());
}

}  // namespace

EvolutionCalendar::EvolutionCalendar(ESource* source, std::function<void()> changed)
    : source_(E_SOURCE(g_object_ref(source))), changed_(std::move(changed)) {}

const StoredCalendar* EvolutionCalendar::events(ReadingTables& tables) {
  if (!client_ && !connect()) return nullptr;
  if (!isStale_->exchange(false)) {
    tables.room -= stored_.size;
    return &stored_;
  }
  if (read(tables)) return &stored_;
  // The service may have gone; the next question connects anew.
  isStale_->store(true);
  signals_.reset();
  view_.reset();
  client_.reset();
  return nullptr;
}

bool EvolutionCalendar::connect() {
  // A wait would be waited for whole, whatever answers.
  constexpr guint32 NoWait = UINT32_MAX;
  EClient* client = e_cal_client_connect_sync(source_.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                              NoWait, nullptr, nullptr);
  if (client == nullptr) return false;
  client_.reset(E_CAL_CLIENT(client));
  signals_ = std::make_unique<EvolutionSignals>([isStale = isStale_, changed = changed_] {
    isStale->store(true);
    changed();
  });
  signals_->connect(client_.get(), "backend-died", 0);
  ECalClientView* view = nullptr;
  if (e_cal_client_get_view_sync(client_.get(), "#t", &view, nullptr, nullptr) == FALSE)
    return true;
  view_.reset(view);
  for (const char* signal : {"objects-added", "objects-modified", "objects-removed"})
    signals_->connect(view, signal, 1);
  // Only what changes from now on is told, not what is there.
  e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, nullptr);
  e_cal_client_view_start(view, nullptr);
  return true;
}

bool EvolutionCalendar::read(ReadingTables& tables) {
  ComponentList components;
  if (e_cal_client_get_object_list_sync(client_.get(), "#t", &components.first, nullptr, nullptr) ==
      FALSE) {
    return false;
  }
  ICalendarFile file(e_source_get_display_name(source_.get()), tables);
  std::set<std::string> zones;
  for (const GSList* each = components.first; each != nullptr; each = each->next) {
    auto* component = I_CAL_COMPONENT(each->data);
    i_cal_component_foreach_tzid(component, takeZoneName, &zones);
    feed(file, component);
  }
  for (const std::string& name : zones) {
    ICalTimezone* zone = nullptr;
    if (e_cal_client_get_timezone_sync(client_.get(), name.c_str(), &zone, nullptr, nullptr) ==
            FALSE ||
        zone == nullptr) {
      continue;
    }
    const ObjectHandle<ICalComponent> component(i_cal_timezone_get_component(zone));
    if (component) feed(file, component.get());
  }
  stored_ = file.finish();
  return true;
}
