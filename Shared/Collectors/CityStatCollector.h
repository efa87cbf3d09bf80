#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Shared/Collectors/CityRecord.h"

class FMDatabase_Time;

/// Who waits for cities. Told on the collector's own queue, not on the main thread.
class CityStatCollectorDelegate {
 public:
  virtual ~CityStatCollectorDelegate() = default;

  /// The database has been opened, or could not be.
  virtual void cityCollectorFinishedLoading() = 0;

  /// What was found for `search`, which may be an older text than the one asked for last.
  virtual void cityCollectorGotSearchResults(const std::vector<CityRecord>&,
                                             const std::string& /*search*/) {}
};

/// The cities of the world, from the read-only database that is installed beside the program. A
/// database that is missing or damaged has no cities; nothing is said about it.
///
/// `searchWithString` belongs to the main thread; everything else may be called from any. Lookups
/// share a connection and take turns, a matter of microseconds; each search has one of its own, so
/// that no lookup waits for it.
class CityStatCollector_Time : public std::enable_shared_from_this<CityStatCollector_Time> {
 public:
  /// Made at the first call and kept for the life of the process.
  static CityStatCollector_Time& sharedCityStatCollector();

  CityStatCollector_Time();

  /// Delegates are told in the order of adding, as long as they live.
  void addDelegate(const std::shared_ptr<CityStatCollectorDelegate>& delegate);
  void removeDelegate(const CityStatCollectorDelegate& delegate);

  /// Opens the database on the collector's queue, then tells the delegates.
  void loadDatabase();

  /// The record of a city, whose identifier may be a number or a text; null if there is none, or no
  /// database yet.
  std::optional<CityRecord> cityWithIdentifier(const PropertyList& identifier);

  /// Searches on the collector's queue and tells the delegates. Only the newest text waits while a
  /// search runs; an empty one clears what waits.
  void searchWithString(std::string_view text);

  /// The cities whose name or division begins with the text, then those of countries that do, then
  /// those under other spellings of a saint's name; 1000 at most of each. A city found in two ways
  /// is there twice. The text is part of an SQL pattern: "%" and "_" stand for anything, and a
  /// quote makes its queries fail.
  std::vector<CityRecord> citiesWithMatch(std::string_view text);

  /// The cities of divisions whose name begins with the text, 1000 at most.
  std::vector<CityRecord> citiesWithStateMatch(std::string_view text);

 private:
  /// The connection for lookups; null where there is no database.
  std::shared_ptr<FMDatabase_Time> database() const;
  void tellDelegates(const std::function<void(CityStatCollectorDelegate&)>& message) const;
  /// Null where there is no database to look into.
  std::shared_ptr<FMDatabase_Time> databaseForSearch() const;
  void runSearchQueue();

  const dispatch_queue_t queue_;

  mutable std::mutex mutex_;  ///< Guards what the collector's queue and the callers both touch.
  std::shared_ptr<FMDatabase_Time> database_;
  std::vector<std::weak_ptr<CityStatCollectorDelegate>> delegates_;

  // Of the main thread.
  std::vector<std::string> searchQueue_;
  bool busy_ = false;
};
