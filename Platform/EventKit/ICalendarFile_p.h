#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/EventKit/ICalendarReader_p.h"
#include "Platform/EventKit/ICalendarZone_p.h"
#include "Platform/EventKit/StoredCalendar_p.h"

class ZoneNames;

/// What files that are read together share.
struct ReadingTables {
  RuleTable rules;
  ZoneTable zones;
  /// By their names: zones that no file defines for itself.
  std::map<std::vector<std::string>, std::shared_ptr<const std::vector<EventZone>>> zoneLists;
  /// How many more bytes may be kept, about.
  int64_t room = 40 << 20;
};

/// Turns the text of one calendar into what is kept of it. What cannot be used is left out, and the
/// log is told of the first few.
class ICalendarFile : private ICalendarReader::Sink {
 public:
  /// `name` is what the log calls it. `tables` must outlive this.
  ICalendarFile(std::string name, ReadingTables& tables);
  ~ICalendarFile() override;

  void feed(std::string_view block) { reader_.feed(block); }
  /// At the end of the text; nothing is fed any more.
  StoredCalendar finish();

 private:
  void event(const std::string& component) override;
  void zone(const std::string& component) override;
  void property(std::string_view name, std::string_view value) override;
  void fault(std::string_view reason, const std::string& component) override;
  void report(std::string_view text);
  std::shared_ptr<const std::vector<EventZone>> zones();

  const std::string name_;
  ReadingTables& tables_;
  ICalendarReader reader_;
  ZoneTable::Definitions definitions_;
  std::unique_ptr<ZoneNames> zoneNames_;
  StoredCalendar calendar_;
  int64_t faults_ = 0;
};
