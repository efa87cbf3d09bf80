#include "Shared/Collectors/CityStatCollector.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Text/ObjectDescription.h"
#include "Shared/External/fmdb/FMDatabase.h"

namespace {

constexpr const char* DatabasePath = "/Library/Application Support/Velmora 5/cities.db";
constexpr size_t MaximumRows = 1000;

/// Ways to spell a saint's name: what the text begins with, and what else to look for.
struct SaintForm {
  std::string_view prefix;
  std::array<std::string_view, 2> expansions;
};

// To the letter: "st. lucia" also finds "Saint lucia", but "St  lucia" with two blanks.
constexpr SaintForm SaintForms[] = {
    {"st ", {"Saint ", "St. "}},
    {"st.", {"Saint", "St "}},
    {"saint ", {"St. ", "St "}},
};

std::string selection(const std::vector<std::string_view>& columns, std::string_view text) {
  std::string query = "SELECT * FROM cities WHERE ";
  std::string_view separator;
  for (const std::string_view column : columns) {
    query.append(separator).append(column).append(" LIKE '").append(text).append("%'");
    separator = " OR ";
  }
  return query + " LIMIT " + std::to_string(MaximumRows);
}

std::vector<CityRecord> rows(FMDatabase_Time& database, const std::string& query) {
  std::vector<CityRecord> records;
  const auto cursor = database.executeQuery(query);
  while (cursor && cursor->next()) {
    if (const auto row = cursor->resultDictionary()) records.push_back(cityRecordFromRow(*row));
  }
  return records;
}

void append(std::vector<CityRecord>& cities, std::vector<CityRecord> more) {
  cities.insert(cities.end(), std::make_move_iterator(more.begin()),
                std::make_move_iterator(more.end()));
}

}  // namespace

CityStatCollector_Time& CityStatCollector_Time::sharedCityStatCollector() {
  // Never destroyed: its queue may be at work while the process ends.
  static auto* const shared = std::make_unique<SharedInstance<CityStatCollector_Time>>().release();
  return *shared->get([] { return std::make_shared<CityStatCollector_Time>(); });
}

CityStatCollector_Time::CityStatCollector_Time()
    : queue_(dispatch_queue_create(objectDescription("CityStatCollector_Time", this))) {}

void CityStatCollector_Time::addDelegate(
    const std::shared_ptr<CityStatCollectorDelegate>& delegate) {
  const std::lock_guard guard(mutex_);
  const bool isKnown =
      std::ranges::any_of(delegates_, [&](const auto& known) { return known.lock() == delegate; });
  if (!isKnown) delegates_.push_back(delegate);
}

void CityStatCollector_Time::removeDelegate(const CityStatCollectorDelegate& delegate) {
  const std::lock_guard guard(mutex_);
  std::erase_if(delegates_, [&](const auto& known) {
    const auto living = known.lock();
    return !living || living.get() == &delegate;
  });
}

void CityStatCollector_Time::tellDelegates(
    const std::function<void(CityStatCollectorDelegate&)>& message) const {
  std::vector<std::shared_ptr<CityStatCollectorDelegate>> living;
  {
    const std::lock_guard guard(mutex_);
    for (const auto& delegate : delegates_) {
      if (auto kept = delegate.lock()) living.push_back(std::move(kept));
    }
  }
  for (const auto& delegate : living)
    message(*delegate);
  // Whom everybody else has let go of meanwhile ends where it lives.
  dispatch_async(dispatch_get_main_queue(), [living = std::move(living)] {});
}

std::shared_ptr<FMDatabase_Time> CityStatCollector_Time::database() const {
  const std::lock_guard guard(mutex_);
  // One that could not be opened would say so at each lookup.
  return database_ && database_->db() != nullptr ? database_ : nullptr;
}

void CityStatCollector_Time::loadDatabase() {
  dispatch_async(queue_, [self = shared_from_this()] {
    const auto database = FMDatabase_Time::databaseWithPath(DatabasePath);
    database->setWaitsForTurn(true);
    database->openWithFlags(FMOpenReadOnly);
    {
      const std::lock_guard guard(self->mutex_);
      self->database_ = database;
    }
    self->tellDelegates(
        [](CityStatCollectorDelegate& delegate) { delegate.cityCollectorFinishedLoading(); });
  });
}

std::shared_ptr<FMDatabase_Time> CityStatCollector_Time::databaseForSearch() const {
  if (!database()) return nullptr;
  auto own = FMDatabase_Time::databaseWithPath(DatabasePath);
  return own->openWithFlags(FMOpenReadOnly) ? own : nullptr;
}

std::optional<CityRecord> CityStatCollector_Time::cityWithIdentifier(
    const PropertyList& identifier) {
  const std::string key = identifier.string() != nullptr
                              ? *identifier.string()
                              : std::to_string(identifier.integerValue());
  const auto database = this->database();
  const auto cursor =
      database ? database->executeQuery("SELECT * FROM cities WHERE identifier = '" + key + "'")
               : nullptr;
  const auto row = cursor && cursor->next() ? cursor->resultDictionary() : std::nullopt;
  return row ? std::optional(cityRecordFromRow(*row)) : std::nullopt;
}

void CityStatCollector_Time::searchWithString(std::string_view text) {
  searchQueue_.clear();
  if (text.empty()) return;
  searchQueue_.emplace_back(text);
  if (!busy_) runSearchQueue();
}

void CityStatCollector_Time::runSearchQueue() {
  busy_ = !searchQueue_.empty();
  if (!busy_) return;
  const std::string match = std::move(searchQueue_.front());
  searchQueue_.erase(searchQueue_.begin());
  dispatch_async(queue_, [self = shared_from_this(), match] {
    const auto cities = self->citiesWithMatch(match);
    self->tellDelegates([&](CityStatCollectorDelegate& delegate) {
      delegate.cityCollectorGotSearchResults(cities, match);
    });
    dispatch_async(dispatch_get_main_queue(), [self] { self->runSearchQueue(); });
  });
}

std::vector<CityRecord> CityStatCollector_Time::citiesWithMatch(std::string_view text) {
  const auto database = databaseForSearch();
  if (!database) return {};
  auto cities = rows(*database, selection({"city", "city_plain", "state"}, text));
  if (cities.size() < MaximumRows) append(cities, rows(*database, selection({"country"}, text)));
  const std::string lowered = lowercaseString(text);
  for (const SaintForm& form : SaintForms) {
    if (!lowered.starts_with(form.prefix)) continue;
    for (const std::string_view expansion : form.expansions) {
      const std::string expanded = std::string(expansion).append(text.substr(form.prefix.size()));
      append(cities, rows(*database, selection({"city", "city_plain"}, expanded)));
    }
  }
  return cities;
}

std::vector<CityRecord> CityStatCollector_Time::citiesWithStateMatch(std::string_view text) {
  const auto database = databaseForSearch();
  return database ? rows(*database, selection({"state"}, text)) : std::vector<CityRecord>();
}
