#include "Platform/EventKit/CalendarFolders_p.h"

#include <malloc.h>

#include <algorithm>
#include <utility>

#include "Platform/EventKit/CalendarColor_p.h"
#include "Platform/EventKit/EventExpansion_p.h"
#include "Platform/Foundation/Files/FileContents_p.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"

namespace fs = std::filesystem;

namespace {

constexpr size_t MostEntries = 200'000;  ///< Of a folder.
constexpr size_t MostCalendars = 500;
constexpr int64_t WorkPerFetch = 50'000'000;
constexpr size_t LongestName = 500;

/// The one line that a file such as "displayname" holds; empty if there is none.
std::string lineOfFile(const fs::path& path) {
  if (!regularFileState(path)) return {};
  const std::string text = contentsOfRegularFile(path).bytes.value_or("");
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  const size_t end = std::min(text.find_first_of("\r\n", first), text.size());
  const size_t last = text.find_last_not_of(" \t", end - 1);
  return validUtf8(text.substr(first, std::min(last - first + 1, LongestName)));
}

}  // namespace

struct CalendarFolders::Listing {
  std::vector<std::string> files;  ///< Names of calendar files, in order.
  std::vector<fs::path> folders;   ///< Those in it that are not hidden, in order.
};

CalendarFolders::CalendarFolders(std::vector<fs::path> folders, std::function<void()> changed)
    : roots_(std::move(folders)), watch_(std::move(changed)) {}

CalendarFolders::~CalendarFolders() {
  folders_.clear();
  malloc_trim(0);
}

CalendarFolders::Listing CalendarFolders::list(const fs::path& folder) {
  Listing listing;
  std::error_code error;
  size_t count = 0;
  fs::directory_iterator each(folder, fs::directory_options::skip_permission_denied, error);
  for (; !error && each != fs::directory_iterator() && count < MostEntries; each.increment(error)) {
    ++count;
    const std::string name = each->path().filename().string();
    if (name.starts_with('.')) continue;
    std::error_code unknown;
    if (isCalendarFileName(name)) {
      listing.files.push_back(name);
    } else if (each->is_directory(unknown)) {
      listing.folders.push_back(each->path());
    }
  }
  std::sort(listing.files.begin(), listing.files.end());
  std::sort(listing.folders.begin(), listing.folders.end());
  return listing;
}

CalendarSource::Calendars CalendarFolders::calendars() {
  ReadingTables tables;
  std::map<fs::path, Folder> present;
  order_.clear();
  for (const fs::path& root : roots_) {
    watch_.add(root);
    const Listing listing = list(root);
    if (!listing.files.empty()) look(root, listing, tables, present);
    for (const fs::path& folder : listing.folders) {
      if (order_.size() >= MostCalendars) break;
      watch_.add(folder);
      look(folder, list(folder), tables, present);
    }
  }
  folders_ = std::move(present);
  return {order_, {}, {}};
}

void CalendarFolders::look(const fs::path& path, const Listing& listing, ReadingTables& tables,
                           std::map<fs::path, Folder>& present) {
  if (present.contains(path)) return;  // Two of the given folders are the same.
  Folder folder;
  std::map<std::string, ReadFile> before;
  if (const auto known = folders_.find(path); known != folders_.end()) {
    before.swap(known->second.files);
  }
  for (const std::string& name : listing.files) {
    const auto state = regularFileState(path / name);
    if (!state) continue;
    const auto known = before.find(name);
    if (known != before.end() && known->second.state == *state) {
      tables.room -= known->second.calendar.size;
      folder.files.insert(before.extract(known));
    } else {
      // What cannot be read is told of once, and is tried again when it has changed.
      auto read = readCalendarFile(path / name, tables);
      folder.files.emplace(name, read ? *std::move(read) : ReadFile{*state, {}});
    }
  }
  std::string title = lineOfFile(path / DisplayNameFile);
  std::string color = lineOfFile(path / ColorFile);
  if (!folder.files.empty()) {
    if (const auto& first = folder.files.begin()->second.calendar.appearance) {
      if (title.empty()) title = first->title;
      if (color.empty()) color = first->color;
    }
  }
  const std::string identifier = freeIdentifier(path, present);
  if (title.empty()) title = identifier;
  const auto parsed = calendarColor(color);
  folder.calendar = std::make_shared<const EKCalendar>(identifier, title, color, parsed);
  order_.push_back(folder.calendar);
  present.emplace(path, std::move(folder));
}

/// The folder's name, or its path where another folder has that name already.
std::string CalendarFolders::freeIdentifier(const fs::path& path,
                                            const std::map<fs::path, Folder>& present) {
  std::string name = validUtf8(path.filename().string());
  const bool isTaken =
      name.empty() || std::any_of(present.begin(), present.end(), [&](const auto& entry) {
        return entry.second.calendar->calendarIdentifier() == name;
      });
  return isTaken ? validUtf8(path.string()) : name;
}

std::vector<std::shared_ptr<const EKEvent>> CalendarFolders::events(
    const TimeSpan& span, const std::unordered_set<std::string>& calendars,
    const AddressSet& userAddresses) {
  std::vector<std::shared_ptr<const EKEvent>> events;
  WorkBudget budget(WorkPerFetch);
  const NSTimeZone wallZone = NSTimeZone::systemTimeZone();
  for (const ExpansionPass pass : ExpansionPasses) {
    for (const auto& [path, folder] : folders_) {
      const std::string& identifier = folder.calendar->calendarIdentifier();
      if (!calendars.contains(identifier)) continue;
      for (const auto& [name, file] : folder.files) {
        const std::string prefix = identifier + "/" + validUtf8(name) + "/";
        expandEvents(file.calendar, pass, {span, wallZone, folder.calendar, userAddresses, prefix},
                     budget, events);
      }
    }
  }
  if (budget.isSpent())
    NSLog("calendar: the folders hold more than is looked at; not all is shown");
  return events;
}
