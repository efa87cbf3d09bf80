#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/EventKit/CalendarFiles_p.h"
#include "Platform/EventKit/CalendarSource_p.h"
#include "Platform/EventKit/FolderWatch_p.h"

/// Calendars in folders of iCalendar files, in the vdir convention: each folder in one of the given
/// ones is a calendar, and .ics files directly in one are a calendar, too. Folders below are not
/// looked at. Only files that have changed are read again.
class CalendarFolders : public CalendarSource {
 public:
  /// `changed` is called on the main thread.
  CalendarFolders(std::vector<std::filesystem::path> folders, std::function<void()> changed);
  /// Gives the memory of what was read back to the system.
  ~CalendarFolders() override;

  Calendars calendars() override;
  std::vector<std::shared_ptr<const EKEvent>> events(
      const TimeSpan& span, const std::unordered_set<std::string>& calendars,
      const AddressSet& userAddresses) override;

 private:
  /// A folder that is a calendar.
  struct Folder {
    std::shared_ptr<const EKCalendar> calendar;
    std::map<std::string, ReadFile> files;  ///< By their names.
  };
  /// What a look into a folder finds.
  struct Listing;

  static Listing list(const std::filesystem::path& folder);
  void look(const std::filesystem::path& path, const Listing& listing, ReadingTables& tables,
            std::map<std::filesystem::path, Folder>& present);
  static std::string freeIdentifier(const std::filesystem::path& path,
                                    const std::map<std::filesystem::path, Folder>& present);

  const std::vector<std::filesystem::path> roots_;
  FolderWatch watch_;
  std::map<std::filesystem::path, Folder> folders_;
  std::vector<std::shared_ptr<const EKCalendar>> order_;
};
