#include "Platform/Foundation/Zones/NSTimeZone.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>

#include "Platform/Foundation/Zones/TimeZoneRules.h"

namespace fs = std::filesystem;

namespace {

/// Guards everything below: zones are asked for from the collectors' queues, too.
std::recursive_mutex zoneMutex;

std::optional<NSTimeZone> cachedSystemZone;
std::optional<NSTimeZone> installedZone;

/// Files change only with the system's tzdata package; a long-lived process keeps what it read
/// until the zone is reset.
std::map<std::string, std::weak_ptr<const TimeZoneRules>, std::less<>> knownRules;

bool isZoneName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name.find("..") != std::string_view::npos)
    return false;
  return name.find_first_not_of(
             "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
             "/_+-") == std::string_view::npos;
}

std::shared_ptr<const TimeZoneRules> rulesNamed(std::string_view name) {
  const auto found = knownRules.find(name);
  if (found != knownRules.end()) {
    if (auto rules = found->second.lock()) return rules;
  }
  std::error_code error;
  const fs::path path = timeZoneFolder() / name;
  if (!isZoneName(name) || !fs::is_regular_file(path, error)) return nullptr;
  auto rules = TimeZoneRules::fromFile(path);
  if (rules) knownRules.insert_or_assign(std::string(name), rules);
  return rules;
}

}  // namespace

fs::path timeZoneFolder() {
  const char* directory = std::getenv("TZDIR");
  return directory != nullptr && *directory == '/' ? directory : "/usr/share/zoneinfo";
}

fs::path localTimeFile() {
  const char* file = std::getenv("VELMORA_LOCALTIME_FILE");
  return file != nullptr && *file == '/' ? file : "/etc/localtime";
}

std::optional<NSTimeZone> NSTimeZone::timeZoneWithName(std::string_view name) {
  const std::lock_guard guard(zoneMutex);
  auto rules = rulesNamed(name);
  if (!rules && (name == "UTC" || name == "GMT")) rules = TimeZoneRules::fixed(0, name);
  if (!rules) return std::nullopt;
  return NSTimeZone(name, std::move(rules));
}

std::optional<NSTimeZone> NSTimeZone::timeZoneWithAbbreviation(std::string_view abbreviation) {
  if (abbreviation != "UTC" && abbreviation != "GMT") return std::nullopt;
  return timeZoneWithName(abbreviation);
}

NSTimeZone NSTimeZone::findSystemTimeZone() {
  if (const char* variable = std::getenv("TZ"); variable != nullptr) {
    std::string_view value = variable;
    if (value.starts_with(':')) value.remove_prefix(1);
    // Sessions are told ":/etc/localtime", which saves the C library a look at the file each time.
    if (value.starts_with('/')) return zoneOfFile(value);
    if (auto zone = timeZoneWithName(value)) return *zone;
    if (auto rules = TimeZoneRules::fromPosixRule(value)) return NSTimeZone(value, rules);
    return *timeZoneWithName("UTC");
  }
  return zoneOfFile(localTimeFile());
}

NSTimeZone NSTimeZone::zoneOfFile(const fs::path& file) {
  // A link's target names the zone; a copied file has rules but no name.
  std::error_code error;
  const std::string target = fs::canonical(file, error).string();
  const std::string_view marker = "/zoneinfo/";
  if (const size_t position = target.find(marker); position != std::string::npos) {
    std::string_view name = std::string_view(target).substr(position + marker.size());
    for (const std::string_view variant : {"posix/", "right/"}) {
      if (name.starts_with(variant)) name.remove_prefix(variant.size());
    }
    if (auto zone = timeZoneWithName(name)) return *zone;
  }
  if (auto rules = TimeZoneRules::fromFile(file)) return NSTimeZone("Local", rules);
  return *timeZoneWithName("UTC");
}

NSTimeZone NSTimeZone::systemTimeZone() {
  const std::lock_guard guard(zoneMutex);
  if (installedZone) return *installedZone;
  if (!cachedSystemZone) cachedSystemZone = findSystemTimeZone();
  return *cachedSystemZone;
}

void NSTimeZone::resetSystemTimeZone() {
  const std::lock_guard guard(zoneMutex);
  cachedSystemZone.reset();
  knownRules.clear();
}

void NSTimeZone::setSystemTimeZone(std::optional<NSTimeZone> zone) {
  const std::lock_guard guard(zoneMutex);
  installedZone = std::move(zone);
}

int NSTimeZone::secondsFromGMT() const { return secondsFromGMTForDate(NSDate::date()); }

int NSTimeZone::secondsFromGMTForDate(const NSDate& date) const {
  constexpr double Furthest = 9e15;
  const double seconds = std::floor(date.timeIntervalSince1970());
  if (!(std::abs(seconds) < Furthest)) return rules_->periodAt(0).offset;
  return rules_->periodAt(static_cast<int64_t>(seconds)).offset;
}
